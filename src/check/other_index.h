// An index database that is made beside a project's own, whose place it takes when it is complete.
#pragma once

#include <vector>

#include "platform/host.h"
#include "tarn/check.h"
#include "tarn/platform/database.h"

namespace tarn {

/// While it lives, the thread's index database is another one.
class OtherIndex {
 public:
  explicit OtherIndex(Ptr<Database> database) : before_(host().database) {
    host().database = [database = std::move(database)](const std::string&) { return database; };
  }
  ~OtherIndex() { host().database = before_; }
  OtherIndex(const OtherIndex&) = delete;
  OtherIndex& operator=(const OtherIndex&) = delete;

 private:
  std::function<Ptr<Database>(const std::string&)> before_;
};

/// Rows and link rows from every record, into tables without rows.
void fill_index(COM_ProjectData& project, const Ptr<Database>& database);

struct Settled {
  std::vector<CheckFinding> settled;  // the index says now what the record says
  std::vector<CheckFinding> left;     // what else is wrong
};

/// Where a row and its record differ, the record stands. No record file is written.
Settled settle_by_records(COM_ProjectData& project, const Ptr<Database>& database);

}  // namespace tarn
