// The index database of a project that is checked, also where it cannot be opened.
#pragma once

#include "tarn/base/log.h"
#include "tarn/check.h"
#include "tarn/platform/database.h"

namespace tarn {

struct ProjectIndex {
  /// Error `DatabaseNotFound` where the project has no file at all, and those of a database in use.
  explicit ProjectIndex(COM_ProjectData& project);
  Ptr<Database> database;  // null where it cannot be opened
  CheckFinding failure;    // why
};

/// What loads tell of single entities is a finding here, told once and in its own words.
class QuietLog final : public Log {
 public:
  QuietLog() : before_(set_log(this)) {}
  ~QuietLog() override { set_log(before_); }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;
  void message(std::string_view) override {}
  void error(std::string_view, std::string_view, std::string_view, std::string_view) override {}

 private:
  Log* before_;
};

}  // namespace tarn
