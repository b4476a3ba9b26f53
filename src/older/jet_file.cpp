#include "older/jet_file.h"

#include <glib.h>  // before mdbtools.h, which would take it as C
#include <mdbtools.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>

#include "older/jet_values.h"

namespace tarn::older {
namespace {

using Json = nlohmann::json;

constexpr int kDeleted = 0x8000, kMoved = 0x4000, kPlace = 0x1FFF;  // of a row, in the list at the page's head
constexpr unsigned kCatalogPage = 2;
constexpr int kMostMoves = 8;

[[noreturn]] void unreadable(const std::string& why) { throw std::runtime_error(why); }

using File = std::unique_ptr<MdbHandle, decltype(&mdb_close)>;
using Fields = std::vector<std::optional<std::string>>;  // bytes; none for NULL, and for a Yes/No that is no

class JetTable {
 public:
  JetTable(MdbHandle& file, unsigned page) : file_(file), page_(page), definition_(nullptr, &mdb_free_tabledef) {
    entry_.mdb = &file;
    entry_.object_type = MDB_TABLE;
    entry_.table_pg = page;
    definition_.reset(mdb_read_table(&entry_));
    // libmdb follows a map without bytes through a null pointer.
    if (!definition_ || definition_->map_sz == 0 || !mdb_read_columns(definition_.get()))
      unreadable("its definition is damaged");
    for (unsigned i = 0; i < definition_->num_cols; ++i) {
      if (column(i).name[0] == '\0') unreadable("a column has no name");
    }
  }

  unsigned count() const { return definition_->num_cols; }
  const MdbColumn& column(unsigned i) const {
    return *static_cast<const MdbColumn*>(g_ptr_array_index(definition_->columns, i));
  }
  /// Every live row; the fields are copies, as what is done with them may read other pages.
  void for_each_row(const std::function<void(const Fields&)>& use);

 private:
  struct Place {
    int at;  // with the flags
    size_t size;
  };
  int rows_of_page() const { return mdb_get_int16(file_.pg_buf, file_.fmt->row_count_offset); }
  Place place(int row) const;
  Place follow(Place place) const;
  Fields fields(Place place);

  MdbHandle& file_;
  unsigned page_;
  MdbCatalogEntry entry_{};
  std::unique_ptr<MdbTableDef, decltype(&mdb_free_tabledef)> definition_;
};

JetTable::Place JetTable::place(int row) const {
  const int rows = rows_of_page(), first = file_.fmt->row_count_offset + 2 + 2 * rows;
  Place found{};
  const bool there =
      row < rows && first <= file_.fmt->pg_size && mdb_find_row(&file_, row, &found.at, &found.size) == 0;
  if (!there || (found.at & kPlace) < first || (found.size == 0 && (found.at & kDeleted) == 0))
    unreadable("a row is not where its page says");
  return found;
}

/// A moved row has its new place, a row and a page, where it was.
JetTable::Place JetTable::follow(Place from) const {
  for (int moves = 0; (from.at & kMoved) != 0; ++moves) {
    const auto to = static_cast<unsigned>(mdb_get_int32(file_.pg_buf, from.at & kPlace));
    const bool known = from.size >= 4 && moves <= kMostMoves && mdb_read_pg(&file_, to >> 8) != 0 &&
                       file_.pg_buf[0] == MDB_PAGE_DATA && mdb_get_int32(file_.pg_buf, 4) == static_cast<long>(page_);
    if (!known) unreadable("a moved row is lost");
    from = place(static_cast<int>(to & 255));
  }
  return from;
}

Fields JetTable::fields(Place at) {
  std::vector<MdbField> found(count());
  if (mdb_crack_row(definition_.get(), at.at & kPlace, at.size, found.data()) < 0) unreadable("a row is damaged");
  Fields copies;
  for (const MdbField& field : found) {
    if (field.is_null) {
      copies.emplace_back();
      continue;
    }
    if (field.siz < 0 || field.start < 0 || field.start + field.siz > file_.fmt->pg_size)
      unreadable("a field ends beyond its row");
    copies.emplace_back(std::in_place, reinterpret_cast<const char*>(file_.pg_buf) + field.start,
                        static_cast<size_t>(field.siz));
  }
  return copies;
}

void JetTable::for_each_row(const std::function<void(const Fields&)>& use) {
  unsigned found = 0;
  for (mdb_rewind_table(definition_.get()); mdb_read_next_dpg(definition_.get()) != 0;) {
    const auto page = file_.cur_pg;
    const int rows = rows_of_page();
    for (int row = 0; row < rows; ++row) {
      mdb_read_pg(&file_, page);
      Place at = place(row);
      if ((at.at & kDeleted) != 0) continue;  // also a moved row's new place
      at = follow(at);
      use(fields(at));
      ++found;
    }
  }
  if (found < definition_->num_rows) {
    unreadable(std::to_string(found) + " of " + std::to_string(definition_->num_rows) + " rows are found");
  }
}

/// What a row has of a Memo or OLE column leads to pages of its own.
std::string long_value(MdbHandle& file, const std::string& head, size_t file_size) {
  constexpr uint32_t kInRow = 0x80000000, kOnePage = 0x40000000, kLength = 0x3FFFFFFF;
  constexpr size_t kHead = 12;
  if (head.size() < kHead) unreadable("a long text is damaged");
  const auto word = number_at<uint32_t>(head, 0);
  const size_t length = word & kLength;
  if (length > file_size) unreadable("a long text is longer than the file");
  if ((word & kInRow) != 0) {
    if (head.size() - kHead < length) unreadable("a long text is cut");
    return head.substr(kHead, length);
  }
  std::string text;
  std::set<uint32_t> seen;
  auto next = number_at<uint32_t>(head, 4);  // row in the low byte, then the page
  while (text.size() < length) {
    void* page = nullptr;
    int at = 0;
    size_t size = 0;
    const bool there = seen.insert(next).second && (next >> 8) != 0 &&
                       mdb_find_pg_row(&file, static_cast<int>(next), &page, &at, &size) == 0;
    at &= kPlace;
    if (!there || size < 4 || at + size > static_cast<size_t>(file.fmt->pg_size)) unreadable("a long text is damaged");
    const std::string piece(static_cast<const char*>(page) + at, size);
    const bool whole = (word & kOnePage) != 0;
    if (whole && piece.size() < length) unreadable("a long text is cut");
    text += whole ? piece : piece.substr(4);
    next = number_at<uint32_t>(piece, 0);
  }
  text.resize(length);
  return text;
}

/// One file that is being told.
struct Teller {
  MdbHandle& file;
  size_t size;
  std::FILE* to;

  void line(const Json& json) const {
    std::fprintf(to, "%s\n", json.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
  }
  Json value(const MdbColumn& column, const std::optional<std::string>& bytes) const {
    if (column.col_type == MDB_BOOL) return bytes.has_value();
    if (!bytes) return nullptr;
    const Texts texts = file.f->jet_version == MDB_VER_JET3 ? Texts::OneByte : Texts::Utf16;
    if (column.col_type == MDB_MEMO) return text_of(long_value(file, *bytes, size), texts);
    if (column.col_type == MDB_OLE) return hex_of(long_value(file, *bytes, size));
    return value_of(column.col_type, column.col_scale, *bytes, texts);
  }
  void table(const std::string& name, unsigned page) const {
    try {
      JetTable table(file, page);
      Json columns = Json::array();
      for (unsigned i = 0; i < table.count(); ++i)
        columns.push_back({{"name", table.column(i).name}, {"type", type_name(table.column(i).col_type)}});
      line({{"table", name}, {"columns", columns}});
      table.for_each_row([&](const Fields& fields) {
        Json row = Json::array();
        for (unsigned i = 0; i < table.count(); ++i) row.push_back(value(table.column(i), fields[i]));
        line({{"row", row}});
      });
    } catch (const std::exception& failure) {
      line({{"unreadable", name}, {"why", failure.what()}});
    }
  }
};

struct Listed {
  std::string name;
  int64_t type;
  unsigned page;
};

/// The tables that are not the engine's own.
std::vector<Listed> catalog(const Teller& teller) {
  constexpr uint32_t kSystem = 0x80000002;
  JetTable objects(teller.file, kCatalogPage);
  const auto place = [&](const char* name) {
    for (unsigned i = 0; i < objects.count(); ++i) {
      if (std::strcmp(objects.column(i).name, name) == 0) return i;
    }
    unreadable("a column is missing");
  };
  const unsigned id = place("Id"), name = place("Name"), type = place("Type"), flags = place("Flags");
  std::vector<Listed> tables;
  objects.for_each_row([&](const Fields& fields) {
    const auto value = [&](unsigned column) { return teller.value(objects.column(column), fields[column]); };
    const Json of = value(type), is = value(flags);
    if (!of.is_number() || (is.is_number() && (static_cast<uint32_t>(is.get<int64_t>()) & kSystem) != 0)) return;
    const auto page = static_cast<unsigned>(value(id).get<int64_t>() & 0xFFFFFF);
    if (const auto kind = of.get<int64_t>(); kind == 1 || kind == 4 || kind == 6)
      tables.push_back({value(name).get<std::string>(), kind, page});
  });
  return tables;
}

void tell_file(const Teller& teller) {
  constexpr unsigned kWestern = 1252;
  const bool jet3 = teller.file.f->jet_version == MDB_VER_JET3;
  teller.line({{"format", jet3 ? "Jet 3" : teller.file.f->jet_version == MDB_VER_JET4 ? "Jet 4" : "a later Jet"}});
  if (teller.size % static_cast<size_t>(teller.file.fmt->pg_size) != 0)
    teller.line({{"unreadable", ""}, {"why", "it is cut inside a page"}});
  if (const unsigned page = teller.file.f->code_page; jet3 && page != kWestern && page != 0) {
    teller.line({{"note", "Its texts are of code page " + std::to_string(page) +
                              "; they are read as 1252, as the record files are."}});
  }
  for (const Listed& each : catalog(teller)) {
    if (each.type == 1)
      teller.table(each.name, each.page);
    else
      teller.line({{"note", "The table " + each.name + " is linked from another database; its rows are not here."}});
  }
}

}  // namespace

void tell_tables(const std::string& path, std::FILE* to) {
  for (const char* name : {"MDB_JET3_CHARSET", "MDBICONV", "MDBOPTS", "MDBPATH"}) ::unsetenv(name);
  const File file(mdb_open(path.c_str(), MDB_NOFLAGS), &mdb_close);
  if (!file) return;
  std::FILE* bytes = std::fopen(path.c_str(), "rb");
  size_t size = 0;
  if (bytes) {
    std::fseek(bytes, 0, SEEK_END);
    size = static_cast<size_t>(std::ftell(bytes));
    std::fclose(bytes);
  }
  const Teller teller{*file, size, to};
  try {
    tell_file(teller);
  } catch (const std::exception& failure) {
    teller.line({{"unreadable", ""}, {"why", std::string("its list of tables: ") + failure.what()}});
  }
  teller.line({{"end", true}});
}

}  // namespace tarn::older
