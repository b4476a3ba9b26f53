// What the tests share: a folder of their own with a fresh project, a log that remembers, files that fail on demand.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/file_store.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/project.h"
#include "tarn/reflect/members.h"
#include "tarn/window.h"

namespace tarn::test {

class RecordingLog final : public Log {
 public:
  RecordingLog() : before_(set_log(this)) {}
  ~RecordingLog() override { set_log(before_); }
  void message(std::string_view text) override { messages.emplace_back(text); }
  void error(std::string_view component, std::string_view class_name, std::string_view procedure,
             std::string_view detail) override {
    errors.push_back(std::string(component) + "|" + std::string(class_name) + "|" + std::string(procedure));
    details.emplace_back(detail);
  }
  std::vector<std::string> messages, errors, details;

 private:
  Log* before_;
};

class TempFolder {
 public:
  TempFolder() {
    std::string shape = (std::filesystem::temp_directory_path() / "tarn-test-XXXXXX").string();
    path = mkdtemp(shape.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path); }
  std::string operator/(const std::string& name) const { return path + "/" + name; }
  std::string path;
};

inline std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// As another program does it, so that nothing of ours is pending.
inline void write_bytes(const std::string& path, const std::string& bytes) {
  files().settle();
  std::ofstream(path, std::ios::binary) << bytes;
}

inline void remove_file(const std::string& path) {
  files().settle();
  std::filesystem::remove(path);
}

/// A fresh project with prefix JOB, its index database open.
class ProjectTest : public testing::Test {
 protected:
  void SetUp() override {
    project.SetWorkPath(folder.path);
    project.FilePrefix = "JOB";
    create_index(project.IndexDBName());
    database = host().database(project.IndexDBName());
  }

  Ptr<WIN_Window> saved_window(const std::string& name) {
    auto window = project.NewWindow();
    window->Name = name;
    window->Save();
    return window;
  }
  /// A system 4, plant 5 and building 6 without a change yet.
  void add_dependants() {
    database->Execute("INSERT INTO AirSystemIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (4, 0, 0)");
    database->Execute("INSERT INTO PlantIndex (nIndex, bDesHasChanged, bSimHasChanged) VALUES (5, 0, 0)");
    database->Execute("INSERT INTO BuildingIndex (nIndex, bHasChanged) VALUES (6, 0)");
  }
  /// "INSERT INTO" in front of each row: "Space_Wall_Links (9, 1); ...".
  void link(const std::string& rows) {
    for (size_t at = 0; at < rows.size();) {
      const size_t end = std::min(rows.find("; ", at), rows.size());
      const std::string row = rows.substr(at, end - at);
      database->Execute("INSERT INTO " + row.substr(0, row.find(' ')) + " VALUES " + row.substr(row.find(' ')));
      at = end + 2;
    }
  }
  /// Which of the dependants are marked: "SPB"; in small letters where only the simulation is: "spB".
  std::string marked() {
    std::string text;
    for (const auto& [table, letter] : {std::pair("AirSystemIndex", 'S'), std::pair("PlantIndex", 'P')}) {
      const std::string simulation = std::string(table) + " WHERE bSimHasChanged = -1 AND bDesHasChanged = ";
      if (count(simulation + "-1") == 1) text += letter;
      if (count(simulation + "0") == 1) text += static_cast<char>(std::tolower(letter));
    }
    if (count("BuildingIndex WHERE bHasChanged = -1") == 1) text += "B";
    return text;
  }
  /// Saves, then deletes the entity with some link rows there, and says what each marked: "SPB SPB".
  std::string marks(StoredEntity& entity, const std::string& links) {
    std::string all;
    for (const bool deletes : {false, true}) {
      Transaction undone;
      add_dependants();
      link(links);
      if (deletes)
        entity.Delete(entity.Index());
      else
        entity.Save();
      all += (deletes ? " " : "") + marked();
    }
    return all;
  }
  int64_t count(const std::string& from) {
    return database->OpenRecordset("SELECT COUNT(*) AS CNT FROM " + from).Fields("CNT").integer();
  }
  /// All rows of a table as one text.
  std::string rows(const std::string& table) {
    std::string text;
    auto all = database->OpenRecordset("SELECT * FROM " + table);
    for (; !all.AtEof(); all.MoveNext()) {
      for (const std::string& column : all.columns()) {
        const auto field = all.Fields(column);
        text += field.text() + "/" + std::to_string(field.real()) + " ";
      }
      text += "\n";
    }
    return text;
  }

  TempFolder folder;
  RecordingLog log;
  COM_ProjectData project;
  Ptr<Database> database;
};

/// The system's files, until the n-th operation that changes something: there `at_fault` is called.
class FaultyFiles final : public FileService {
 public:
  explicit FaultyFiles(
      int operations, std::function<void()> at_fault = [] { fail(ErrorNumber::DeviceError, "the disk is full"); })
      : left(operations), fault(std::move(at_fault)) {
    host().files = this;
  }
  ~FaultyFiles() override { host().files = &system_files(); }

  bool exists(const std::string& path) override { return system_files().exists(path); }
  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
    if (mode == OpenMode::Create) step();
    auto file = system_files().open(path, mode);
    return file ? std::make_unique<Faulty>(*this, std::move(file)) : nullptr;
  }
  void remove(const std::string& path) override {
    step();
    system_files().remove(path);
  }
  void rename(const std::string& from, const std::string& to) override {
    step();
    system_files().rename(from, to);
  }
  void sync_folder(const std::string& path) override { system_files().sync_folder(path); }

  void step() {
    if (left-- == 0) fault();
  }
  int left;
  std::function<void()> fault;

 private:
  struct Faulty final : File {
    Faulty(FaultyFiles& files, std::unique_ptr<File> file) : owner(files), real(std::move(file)) {}
    size_t read(uint64_t offset, std::span<std::byte> into) override { return real->read(offset, into); }
    void write(uint64_t offset, std::span<const std::byte> bytes) override {
      const size_t half = bytes.size() / 2;
      if (owner.left == 0) real->write(offset, bytes.first(half));
      owner.step();
      real->write(offset, bytes);
    }
    uint64_t size() override { return real->size(); }
    void truncate(uint64_t size) override {
      owner.step();
      real->truncate(size);
    }
    void sync() override { owner.step(); }
    std::optional<uint64_t> size_if_current() override { return real->size_if_current(); }
    FaultyFiles& owner;
    std::unique_ptr<File> real;
  };
};

/// The number of the error that an action throws, 0 for none.
template <typename F>
int error_number(F action) {
  try {
    action();
    return 0;
  } catch (const Error& error) {
    return error.number();
  }
}

/// The text of the error that an action throws.
inline std::string what_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return "no error";
}

/// "Name@offset+size ..." of the stored members, in interface order.
inline std::string layout(const ClassInfo& info) {
  std::string text;
  for (const Member& m : info.members) {
    if (m.stored())
      text +=
          std::string(m.name) + "@" + std::to_string(m.field()->offset()) + "+" + std::to_string(m.field()->size) + " ";
  }
  return text;
}

inline int number(ErrorNumber n) { return static_cast<int>(n); }

}  // namespace tarn::test
