#include "storage/index_row.h"

#include "base/nearest.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

Statement row_statement(Database& database, const Kind& kind, int16_t index) {
  database.join(Database::Part::Reading);
  const Cell of[]{cell(index)};
  return {database, kind.row_of_index, of};
}

}  // namespace

IndexRow::IndexRow(Database& database, const Kind& kind, int16_t index)
    : kind_(kind),
      statement_(row_statement(database, kind, index)),
      there_(statement_.step()),
      next_(statement_.hint()) {}

int IndexRow::place_of(std::string_view column) const {
  const int count = statement_.columns();
  for (int tried = 0; tried < count; ++tried) {
    const int place = (next_ + tried) % count;
    if (!same_word(statement_.column_name(place), column)) continue;
    if (statement_.hint() == 0) statement_.hint() = place;
    next_ = place + 1;
    return place;
  }
  fail(ErrorNumber::ItemNotFound,
       "There is no column " + std::string(column) + " in " + std::string(kind_.index_table) + ".");
}

std::string IndexRow::text(std::string_view column) const {
  const Cell found = statement_.column(place_of(column));
  const auto* text = std::get_if<std::string>(&found);
  return text ? *text : std::string();
}

}  // namespace tarn
