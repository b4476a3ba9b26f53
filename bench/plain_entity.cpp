#include "plain_entity.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace tarn::bench {
PlainEntity::PlainEntity(const std::string& folder, const std::string& file, const std::string& table,
                         const std::vector<std::string>& link_queries, const Reach& reach, const std::string& flag)
    : database_(opened(folder + "/JOBINX.MDB"), &sqlite3_close),
      path_(folder + "/" + file),
      bytes_(std::filesystem::file_size(path_), '\0'),
      begin_(database_.get(), "BEGIN"),
      commit_(database_.get(), "COMMIT"),
      find_(database_.get(), ("SELECT rowid, * FROM " + table + " WHERE nIndex = ?").c_str()),
      same_name_(database_.get(), ("SELECT rowid, * FROM " + table + " WHERE (szName = ? AND nIndex <> ?)").c_str()),
      update_(database_.get(), ("UPDATE " + table + " SET " + flag + " = ? WHERE rowid = ?").c_str()) {
  for (const std::string& query : link_queries) links_.emplace_back(database_.get(), query.c_str());
  for (const std::string& statement : reach.statements()) {
    if (!statement.empty() && statement.find("temp.") == std::string::npos)
      marks_.emplace_back(database_.get(), statement.c_str());
  }
}

void PlainEntity::load() { load(bytes_.size(), true); }

void PlainEntity::load(size_t length, bool with_links) {
  begin_.run();
  find();
  const int file = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  if (::pread(file, bytes_.data(), length, 0) != static_cast<ssize_t>(length))
    throw std::runtime_error("The floor failed: " + path_);
  ::close(file);
  if (with_links) walk(links_);
  commit_.run();
}

void PlainEntity::save(const std::string& name, int64_t changed) {
  begin_.run();
  find();
  if (!name.empty()) {
    same_name_.bind(1, std::string_view(name));
    same_name_.bind(2, int64_t{1});
    same_name_.run();
  }
  update_.bind(1, changed);
  update_.bind(2, int64_t{1});
  update_.run();
  walk(links_);
  for (PlainStatement& mark : marks_) {
    mark.bind(1, int64_t{1});
    mark.run();
  }
  const int file = ::open(path_.c_str(), O_RDWR | O_TRUNC | O_CLOEXEC);
  const bool written = ::pwrite(file, bytes_.data(), bytes_.size(), 0) == static_cast<ssize_t>(bytes_.size());
  if (!written || ::fsync(file) != 0) throw std::runtime_error("The floor failed: " + path_);
  ::close(file);
  commit_.run();
}

void PlainEntity::find() {
  find_.bind(1, int64_t{1});
  if (!find_.step()) throw std::runtime_error("The floor failed: no entity");
  find_.reset();
}

void PlainEntity::walk(std::vector<PlainStatement>& statements) {
  for (PlainStatement& statement : statements) {
    statement.bind(1, int64_t{1});
    while (statement.step()) last_ = sqlite3_column_int64(statement.get(), 0);
    statement.reset();
  }
}

}  // namespace tarn::bench
