#include "cli/command.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/file_store.h"
#include "platform/host.h"
#include "reflect/json_text.h"
#include "tarn/base/error.h"
#include "tarn/platform/workspace.h"

namespace tarn::cli {
namespace {

namespace fs = std::filesystem;
constexpr std::string_view kIndexSuffix = "INX.MDB";

}  // namespace

std::vector<std::string> projects_in(const std::filesystem::path& folder) {
  std::vector<std::string> prefixes;
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(folder, failed)) {
    const std::string name = entry.path().filename().string();
    if (name.size() > kIndexSuffix.size() && name.ends_with(kIndexSuffix)) {
      prefixes.push_back(name.substr(0, name.size() - kIndexSuffix.size()));
    }
  }
  if (failed) throw UsageError("The folder " + folder.string() + " cannot be read: " + failed.message() + ".");
  std::sort(prefixes.begin(), prefixes.end());
  return prefixes;
}

void place_project(COM_ProjectData& project, const Call& call) {
  const fs::path path = call.project.empty() ? fs::path(".") : fs::path(call.project);
  std::error_code unreadable;
  if (!fs::is_directory(path, unreadable)) {
    project.SetWorkPath(path.has_parent_path() ? path.parent_path().string() : ".");
    project.FilePrefix = path.filename().string();
    return;
  }
  project.SetWorkPath(path.string());
  const auto prefixes = projects_in(path);
  if (prefixes.size() == 1) {
    project.FilePrefix = prefixes.front();
    return;
  }
  std::string found;
  for (const std::string& prefix : prefixes) found += (found.empty() ? " " : ", ") + prefix;
  throw UsageError("The folder " + path.string() + " holds " +
                   (prefixes.empty() ? "no project" : "several projects:" + found) +
                   "; name one with -p FOLDER/PREFIX.");
}

void place_new_project(COM_ProjectData& project, const std::string& word, const std::string& prefix) {
  const fs::path path(word);
  std::error_code unreadable;
  if (!word.ends_with('/') && !fs::is_directory(path, unreadable) && path.has_parent_path()) {
    project.SetWorkPath(path.parent_path().string());
    project.FilePrefix = path.filename().string();
    return;
  }
  project.SetWorkPath(word);
  const fs::path folder = fs::absolute(path / "").lexically_normal().parent_path();
  project.FilePrefix = prefix.empty() ? folder.filename().string() : prefix;
}

namespace {

/// Error `FileNotFound` that says how to make the project.
void check_exists(const COM_ProjectData& project, const std::string& word) {
  std::error_code unreadable;
  if (fs::exists(project.IndexDBName(), unreadable) || unreadable) return;
  const bool alone = !fs::path(word).has_parent_path();
  fail(ErrorNumber::FileNotFound, "There is no project " + word + ": " +
                                      (alone ? "there is neither a folder " + word + " nor " : "there is no ") +
                                      project.IndexDBName() + ". tarn -p " + word + " project new makes it.");
}

}  // namespace

Ptr<Database> open_project(COM_ProjectData& project, const Call& call, Use use) {
  place_project(project, call);
  check_exists(project, call.project);
  const auto access = use == Use::Reading ? Database::Access::ReadOnly : Database::Access::ReadWrite;
  const auto database = Database::open(project.IndexDBName(), access);
  host().database = [database](const std::string&) { return database; };
  return database;
}

std::string shown(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_number_float()) return json_text(value);
  return six_digits(value.get<double>());
}

namespace {

/// Columns that a terminal uses for UTF-8 text of the code page: one a character.
size_t columns_of(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

void print_cell(const std::string& text, size_t width, bool right) {
  const std::string fill(width - columns_of(text), ' ');
  std::cout << (right ? fill + text : text + fill);
}

}  // namespace

void print_table(const std::vector<std::string>& heads, const std::vector<std::vector<Json>>& rows,
                 std::string_view sides) {
  std::vector<size_t> widths;
  for (const std::string& head : heads) widths.push_back(columns_of(head));
  for (const auto& row : rows) {
    for (size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], columns_of(shown(row[c])));
  }
  const auto& sample = rows.empty() ? std::vector<Json>(heads.size()) : rows.front();
  const auto right = [&](size_t c) { return sides.empty() ? sample[c].is_number() : sides[c] == 'r'; };
  const auto line = [&](const auto& cells) {
    for (size_t c = 0; c < cells.size(); ++c) {
      print_cell(cells[c], widths[c], right(c));
      std::cout << (c + 1 < cells.size() ? "  " : "\n");
    }
  };
  line(heads);
  for (const auto& row : rows) {
    std::vector<std::string> cells;
    for (const Json& value : row) cells.push_back(shown(value));
    line(cells);
  }
}

void print_notes(const std::string& what, const std::vector<std::string>& notes) {
  const auto said = [](const std::string& note) {  // "line 5: the same as in line 9" counts as the same
    const bool has_line = note.starts_with("line ") && note.find(": ") != std::string::npos;
    return has_line ? note.substr(note.find(": ") + 2) : note;
  };
  for (auto note = notes.begin(); note != notes.end(); ++note) {
    const auto same = [&](const std::string& other) { return said(other) == said(*note); };
    if (std::any_of(notes.begin(), note, same)) continue;
    const auto times = std::count_if(note, notes.end(), same);
    std::cerr << what << (what.empty() ? "" : ": ") << *note
              << (times > 1 ? " (" + std::to_string(times) + " times)" : "") << '\n';
  }
}

void put_out(const Call& call, const std::string& text) {
  if (call.output.empty()) {
    std::cout << text;
  } else if (!fs::exists(call.output) || fs::is_regular_file(call.output)) {
    Transaction whole;
    const auto bytes = std::as_bytes(std::span(text));
    files().replace(call.output, {bytes.begin(), bytes.end()}, nullptr);
    whole.commit();
  } else if (!(std::ofstream(call.output, std::ios::binary) << text).flush()) {  // a pipe, or a device
    fail(ErrorNumber::DeviceError, "Cannot write " + call.output + ".");
  }
}

void print_json(const Json& json) { std::cout << json_text(json, 2) << '\n'; }

void save_picture(const Call& call, const std::string& picture) {
  std::ofstream out(call.svg, std::ios::binary);
  if (!(out << picture).flush()) fail(ErrorNumber::DeviceError, "Cannot write " + call.svg + ".");
  if (!call.json) std::cout << "\nmade " << call.svg << '\n';
}

std::optional<int64_t> nearest_index(Database& database, const std::string& table, int index) {
  auto nearest = database.OpenRecordset(
      "SELECT nIndex FROM " + table + " WHERE nIndex BETWEEN 1 AND 32767 ORDER BY abs(nIndex - ?) LIMIT 1",
      {cell(index)});
  if (nearest.AtEof()) return std::nullopt;
  return nearest.Fields("nIndex").integer();
}

int number_of(const std::string& word) {
  int number = 0;
  const auto [end, failed] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (failed != std::errc() || end != word.data() + word.size()) throw UsageError("\"" + word + "\" is not a number.");
  return number;
}

}  // namespace tarn::cli
