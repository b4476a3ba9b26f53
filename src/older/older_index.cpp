#include "older/older_index.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bit>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "older/jet_file.h"
#include "tarn/base/error.h"

namespace tarn::older {
namespace {

using Json = nlohmann::json;

constexpr rlim_t kSeconds = 60;             // a file of 100,000 rows takes half of one
constexpr rlim_t kMemory = 256UL << 20;     // bytes
constexpr size_t kMostText = 1024UL << 20;  // bytes of what is told

/// What the reading process does. It ends by itself, or at its limits.
[[noreturn]] void read_apart(const std::string& path, int to) {
  const rlimit seconds{kSeconds, kSeconds};
  ::setrlimit(RLIMIT_CPU, &seconds);
#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of addresses
  const rlimit memory{kMemory, kMemory};
  ::setrlimit(RLIMIT_AS, &memory);
#endif
  const int nowhere = ::open("/dev/null", O_WRONLY);
  ::dup2(nowhere, STDERR_FILENO);
  std::FILE* out = ::fdopen(to, "w");
  try {
    if (out) tell_tables(path, out);
  } catch (...) {  // out of memory: what was told stands
  }
  if (out) std::fflush(out);
  ::_exit(0);
}

Cell cell_of(const Json& value) {
  if (value.is_boolean()) return cell(value.get<bool>());
  if (value.is_number()) return value.get<int64_t>();
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_object()) return {};
  if (value.contains("f")) return cell(static_cast<double>(std::bit_cast<float>(value["f"].get<uint32_t>())));
  return cell(std::bit_cast<double>(value["d"].get<uint64_t>()));
}

struct Told {
  Index index;
  bool any = false, end = false;
  std::string table;  // the one that was told last

  void take(const Json& line) {
    any = true;
    if (line.contains("row")) {
      auto& row = index.tables.back().rows.emplace_back();
      for (const Json& value : line["row"]) row.push_back(cell_of(value));
    } else if (line.contains("table")) {
      table = line["table"];
      index.tables.push_back({table, {}, {}});
      for (const Json& column : line["columns"])
        index.tables.back().columns.push_back({column["name"], column["type"]});
    } else if (line.contains("unreadable")) {
      index.unreadable.emplace_back(line["unreadable"], line["why"]);
    } else if (line.contains("note")) {
      index.notes.push_back(line["note"]);
    } else if (line.contains("format")) {
      index.format = line["format"];
    } else {
      end = true;
    }
  }
};

Told read_lines(int from) {
  Told told;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> in(::fdopen(from, "r"), &std::fclose);
  size_t size = 0;
  std::string line;
  for (int c = std::fgetc(in.get()); c != EOF && size < kMostText; c = std::fgetc(in.get()), ++size) {
    if (c != '\n') {
      line += static_cast<char>(c);
      continue;
    }
    told.take(Json::parse(line));
    line.clear();
  }
  return told;
}

}  // namespace

Index read_index(const std::string& path) {
  if (!std::filesystem::is_regular_file(path))
    fail(ErrorNumber::FileNotFound, "There is no index database " + path + ".");
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) fail(ErrorNumber::DeviceError, "The system gives no pipe to read " + path + ".");
  const pid_t reader = ::fork();
  if (reader < 0) {
    ::close(ends[0]);
    ::close(ends[1]);
    fail(ErrorNumber::DeviceError, "The system gives no process to read " + path + ".");
  }
  if (reader == 0) {
    ::close(ends[0]);
    read_apart(path, ends[1]);
  }
  ::close(ends[1]);
  Told told = read_lines(ends[0]);
  int status = 0;
  ::waitpid(reader, &status, 0);
  if (told.index.format.empty() && !told.any)
    fail(ErrorNumber::UnknownFormat, path + " is no database of the older engine.");
  if (!told.end) {
    told.index.unreadable.emplace_back(
        "", "reading it came to no end" +
                (told.table.empty() ? std::string() : ", at the table " + told.table + " or after it"));
  }
  return std::move(told.index);
}

}  // namespace tarn::older
