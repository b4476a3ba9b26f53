// The row of an entity in its index table, to read: while it is looked at, and not after the transaction.
#pragma once

#include <string>
#include <string_view>

#include "storage/kind.h"
#include "tarn/platform/statement.h"

namespace tarn {

class IndexRow {
 public:
  IndexRow(Database& database, const Kind& kind, int16_t index);
  /// False where the table has no row of the entity; nothing else is asked then.
  bool there() const { return there_; }
  bool flag(std::string_view column) const { return statement_.integer(place_of(column)) != 0; }
  std::string text(std::string_view column) const;

 private:
  /// Error `ItemNotFound` for a table without the column.
  int place_of(std::string_view column) const;

  const Kind& kind_;
  Statement statement_;
  bool there_;
  mutable int next_;  // place after the column that was asked for last: flags stand side by side
};

}  // namespace tarn
