#include "platform/host.h"

#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <optional>
#include <unordered_map>

#include "tarn/platform/database.h"

namespace tarn {
namespace {

/// A path as drive-letter systems write it ("C:\Jobs"): kept apart from '/' paths, so that its names come out in its
/// own form.
bool has_drive(const std::string& path) { return path.size() > 1 && path[1] == ':'; }

std::string without_trailing(std::string path, char separator) {
  while (path.size() > 1 && path.back() == separator) path.pop_back();
  return path;
}

std::string normalise(const std::string& path) {
  if (path.empty()) return path;
  if (has_drive(path)) return without_trailing(path, '\\');
  return without_trailing(std::filesystem::absolute(path).lexically_normal().string(), '/');
}

std::string directory(const std::string& path) {
  if (path.empty()) return path;
  const char separator = has_drive(path) ? '\\' : '/';
  std::string bare = without_trailing(path, separator);
  if (bare.back() != separator) bare += separator;
  return bare;
}

/// A file as the operating system knows it, by whatever name: the device and the number on it.
using FileIdentity = std::pair<dev_t, ino_t>;
std::optional<FileIdentity> identity_of(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) return std::nullopt;
  return FileIdentity{info.st_dev, info.st_ino};
}

Ptr<Database> database_by_one_name(const std::string& path) {
  thread_local std::unordered_map<std::string, std::weak_ptr<Database>> open;
  std::error_code unreadable;  // a folder on the way: the database says so when it is opened
  const std::string one_name = std::filesystem::weakly_canonical(path, unreadable).string();
  auto& entry = open[unreadable ? path : one_name];
  auto handle = entry.lock();
  if (!handle) entry = handle = Database::open(path);
  return handle;
}

std::string utc_now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  char text[32];
  gmtime_r(&now, &parts);
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

/// The last one asked for comes again without a look at each folder on its way, as long as the name leads to its file.
Ptr<Database> shared_database(const std::string& path) {
  struct Last {
    std::string path;
    FileIdentity file;
    std::weak_ptr<Database> handle;
  };
  thread_local Last last;
  const auto file = identity_of(path);
  if (file && path == last.path && *file == last.file) {
    if (auto handle = last.handle.lock()) return handle;
  }
  auto handle = database_by_one_name(path);
  if (const auto opened = identity_of(path)) last = {path, *opened, handle};
  return handle;
}

}  // namespace

Host standard_host() {
  return {normalise, directory, shared_database, [](const std::string& name) { return "Copy of " + name; }, utc_now};
}

Host& host() {
  thread_local Host services = standard_host();
  return services;
}

}  // namespace tarn
