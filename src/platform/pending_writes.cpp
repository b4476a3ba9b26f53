#include "platform/pending_writes.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "base/nearest.h"
#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

enum Form : int64_t { InPlace, Whole, Removed };

constexpr size_t kSmall = 65'536;  // bytes; a larger whole file is made as a file of its own
constexpr int64_t kMostRows = 64;  // before they are settled
constexpr size_t kMostBytes = 262'144;
constexpr uint64_t kFarthest = 1ULL << 31;  // byte of a record file
constexpr std::string_view kNew = "-new";   // of a replacement, before its row's number

/// A statement of this table, for one use.
class Step {
 public:
  Step(sqlite3* handle, const char* sql) : handle_(handle), statement_(nullptr, &sqlite3_finalize) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr));
    statement_.reset(statement);
  }
  sqlite3_stmt* get() const { return statement_.get(); }
  void bind(int place, int64_t value) { check(sqlite3_bind_int64(get(), place, value)); }
  void bind(int place, std::string_view text) {
    check(sqlite3_bind_text(get(), place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC));
  }
  void bind_bytes(int place, std::string_view bytes) {
    check(sqlite3_bind_blob64(get(), place, bytes.data(), bytes.size(), SQLITE_STATIC));
  }
  bool row() {
    const int result = sqlite3_step(get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) check(result);
    return result == SQLITE_ROW;
  }
  int64_t integer(int column) const { return sqlite3_column_int64(get(), column); }
  std::string_view bytes(int column) const {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(get(), column));
    return {data ? data : "", static_cast<size_t>(sqlite3_column_bytes(get(), column))};
  }

 private:
  void check(int result) const {
    if (result == SQLITE_OK) return;
    fail(ErrorNumber::DatabaseFailure,
         "The pending record bytes of a save could not be kept: " + std::string(sqlite3_errmsg(handle_)) + ".");
  }
  sqlite3* handle_;
  std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement_;
};

void put_number(std::string& out, uint64_t n) { out.append(reinterpret_cast<const char*>(&n), sizeof n); }
uint64_t take_number(std::string_view& from) {
  uint64_t n = 0;
  std::memcpy(&n, from.data(), sizeof n);
  from.remove_prefix(sizeof n);
  return n;
}

/// Each run of bytes with its place and size before it, in 64 bits.
std::string packed(const Extents& extents) {
  std::string out;
  out.reserve(extents.size() + 2 * sizeof(uint64_t));
  extents.for_each_run([&](uint64_t offset, std::span<const std::byte> bytes) {
    put_number(out, offset);
    put_number(out, bytes.size());
    out.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  });
  return out;
}

/// False for bytes that `packed` has not made.
bool unpack(std::string_view packed, Extents& extents) {
  while (!packed.empty()) {
    if (packed.size() < 2 * sizeof(uint64_t)) return false;
    const uint64_t offset = take_number(packed), size = take_number(packed);
    if (offset > kFarthest || size > packed.size() || offset + size > kFarthest) return false;
    const auto bytes = std::as_bytes(std::span(packed.substr(0, size)));
    extents.write(offset, {bytes.begin(), bytes.end()});
    packed.remove_prefix(size);
  }
  return true;
}

std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

}  // namespace

PendingWrites::PendingWrites(sqlite3* handle, std::string database)
    : handle_(handle), database_(std::move(database)), folder_(folder_of(database_)) {
  constexpr std::string_view kIndex = "INX.MDB";
  const std::string name = database_.substr(folder_.size());
  if (name.size() >= kIndex.size() && same_word(name.substr(name.size() - kIndex.size()), kIndex))
    prefix_ = name.substr(0, name.size() - kIndex.size());
}

std::string_view PendingWrites::name_of(const std::string& path) const {
  constexpr std::string_view kEnding = ".DAT";
  const size_t head = folder_.size();
  const bool beside = path.size() > head + prefix_.size() + kEnding.size() && path.starts_with(folder_) &&
                      path.find('/', head) == std::string::npos && path.compare(head, prefix_.size(), prefix_) == 0;
  if (!beside || !same_word(std::string_view(path).substr(path.size() - kEnding.size()), kEnding)) return {};
  return std::string_view(path).substr(head);
}

void PendingWrites::refresh(int64_t version) {
  if (version == version_) return;
  version_ = -1;
  changes_.clear();
  unapplied_.clear();
  last_ = 0;
  rows_ = 0;
  bytes_ = 0;
  has_table_ = has_table();
  if (has_table_) read_rows();
  for (const auto& [name, change] : changes_) unapplied_.insert(name);
  version_ = version;
}

namespace {
constexpr const char* kRows = "SELECT nOrder, szFile, nForm, szReplacement, abBytes FROM PendingWrites ORDER BY nOrder";
}  // namespace

bool PendingWrites::has_table() const {
  return Step(handle_, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'PendingWrites'").row();
}

void PendingWrites::read_rows() {
  Step rows(handle_, kRows);
  while (rows.row()) {
    last_ = rows.integer(0);
    ++rows_;
    bytes_ += rows.bytes(4).size();
    take_row(std::string(rows.bytes(1)), rows.integer(2), std::string(rows.bytes(3)), rows.bytes(4));
  }
}

std::vector<int64_t> PendingWrites::foreign_rows() {
  std::vector<int64_t> foreign;
  if (!has_table()) return foreign;
  Step rows(handle_, kRows);
  while (rows.row()) {
    Extents extents;
    if (!is_own(rows.integer(0), std::string(rows.bytes(1)), rows.integer(2), std::string(rows.bytes(3))) ||
        !unpack(rows.bytes(4), extents))
      foreign.push_back(rows.integer(0));
  }
  return foreign;
}

/// Whether a row names a file of the project, and a new form of it under the row's own number.
bool PendingWrites::is_own(int64_t order, const std::string& name, int64_t form, const std::string& by) const {
  const std::string path = folder_ + name;
  const bool named = name_of(path) == name;
  return named && form >= InPlace && form <= Removed &&
         (by.empty() || by == name + std::string(kNew) + std::to_string(order));
}

void PendingWrites::take_row(std::string name, int64_t form, std::string replacement, std::string_view bytes) {
  FileChange change{form != InPlace, form == Removed, std::move(replacement), {}};
  if (!is_own(last_, name, form, change.replacement) || !unpack(bytes, change.extents)) {
    fail(ErrorNumber::UnknownFormat, "The index database " + database_ + " has a row " + std::to_string(last_) +
                                         " of pending record bytes that no save has written. 'tarn project " +
                                         "repair' removes it.");
  }
  changes_[std::move(name)].merge(std::move(change));
}

const FileChange* PendingWrites::find(std::string_view name) const {
  const auto found = changes_.find(name);
  return found == changes_.end() ? nullptr : &found->second;
}

// ---- with the write lock

void PendingWrites::add(const Changes& changes) {
  if (!has_table_) Step(handle_, kPendingTable).row();
  if (rows_ >= kMostRows || bytes_ >= kMostBytes) settle();
  int64_t order = last_;
  for (const auto& [name, change] : changes) {
    FileChange stored = std::move(*change);
    if (!stored.removed && stored.emptied && stored.extents.end() > kSmall && !host().files->is_link(path_of(name))) {
      stored.replacement = make_replacement(++order, name, stored);
      stored.extents = {};
    } else {
      ++order;
    }
    add_row(order, name, stored);
    added_[name].merge(std::move(stored));
  }
  if (!made_.empty()) host().files->sync_folder(folder_);
}

std::string PendingWrites::make_replacement(int64_t order, const std::string& name, const FileChange& change) {
  const std::string replacement = name + std::string(kNew) + std::to_string(order), path = path_of(replacement);
  made_.push_back(path);
  host().files->remove(path);  // of a program that died before its commit
  const auto file = host().files->open(path, OpenMode::Create);
  host().files->copy_owner(path_of(name), path);
  change.extents.write_to(*file);
  file->sync();
  return replacement;
}

void PendingWrites::add_row(int64_t order, const std::string& name, const FileChange& change) {
  Step row(handle_, "INSERT INTO PendingWrites VALUES (?, ?, ?, ?, ?)");
  const std::string bytes = packed(change.extents);
  row.bind(1, order);
  row.bind(2, name);
  row.bind(3, change.removed ? Removed : change.emptied ? Whole : InPlace);
  row.bind(4, change.replacement);
  row.bind_bytes(5, bytes);
  row.row();
}

void PendingWrites::apply(const std::string& name, const FileChange& change) const {
  FileService& files = *host().files;
  const std::string path = path_of(name);
  if (change.removed) return files.remove(path);
  if (const std::string by = path_of(change.replacement); !change.replacement.empty() && files.exists(by))
    files.rename(by, path);
  const bool shortened = change.emptied && change.replacement.empty();
  if (!shortened && change.extents.empty()) return;
  const auto file = files.open(path, OpenMode::Create);
  if (shortened) file->truncate(change.extents.end());
  change.extents.write_to(*file);
}

void PendingWrites::apply() {
  try {
    while (!unapplied_.empty()) {
      const std::string& name = *unapplied_.begin();
      apply(name, changes_.at(name));
      unapplied_.erase(unapplied_.begin());
    }
  } catch (const Error& refused) {
    log().message(refused.description() + " The save is complete in " + database_ +
                  "; its record bytes follow when the file can be written.");
  }
}

void PendingWrites::settle() {
  FileService& files = *host().files;
  for (const auto& [name, change] : changes_) {
    apply(name, change);
    if (const auto file = change.removed ? nullptr : files.open(path_of(name), OpenMode::Write)) file->sync();
  }
  if (!changes_.empty()) files.sync_folder(folder_);
  Step(handle_, "DELETE FROM PendingWrites").row();
  settled_ = true;  // numbers go on: readers, and a rollback, still have the rows and their new files
}

std::vector<std::string> PendingWrites::new_files() const {
  std::vector<std::string> found;
  const std::string in_the_making = database_.substr(folder_.size()) + std::string(kNew);
  for (std::string& name : host().files->names(folder_)) {
    const size_t end = name.rfind(kNew);
    if (end == std::string::npos) continue;
    const bool numbered =
        end + kNew.size() < name.size() && name.find_first_not_of("0123456789", end + kNew.size()) == std::string::npos;
    if ((numbered && !name_of(folder_ + name.substr(0, end)).empty()) || name == in_the_making ||
        name == in_the_making + "-journal")
      found.push_back(std::move(name));
  }
  return found;
}

void PendingWrites::remove_leftovers(const std::vector<std::string>& new_files) const {
  for (const std::string& name : new_files) {
    const bool named =
        std::ranges::any_of(changes_, [&](const auto& change) { return change.second.replacement == name; });
    if (!named) host().files->remove(folder_ + name);
  }
}

void PendingWrites::committed() {
  if (std::exchange(settled_, false)) {
    changes_.clear();
    unapplied_.clear();
    rows_ = 0;
    bytes_ = 0;
  }
  has_table_ = has_table_ || !added_.empty();
  last_ += static_cast<int64_t>(added_.size());
  rows_ += static_cast<int64_t>(added_.size());
  for (auto& [name, change] : std::exchange(added_, {})) {
    bytes_ += change.extents.size();
    unapplied_.insert(name);
    changes_[name].merge(std::move(change));
  }
  made_.clear();
}

void PendingWrites::rolled_back() {
  for (const std::string& path : std::exchange(made_, {})) {
    try {
      host().files->remove(path);
    } catch (const Error& refused) {
      log().message(refused.description() + " It is no longer needed.");
    }
  }
  if (settled_ || !added_.empty()) version_ = -1;
  settled_ = false;
  added_.clear();
}

}  // namespace tarn
