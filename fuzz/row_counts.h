// The number of rows of every table of a database, to see that a failure leaves none.
#pragma once

#include <string>

#include "tarn/platform/database.h"
#include "tarn/platform/recordset.h"

namespace tarn::fuzz {

inline std::string row_counts(Database& database) {
  static const std::string query = [&] {
    std::string terms;
    auto all = database.OpenRecordset("SELECT name FROM sqlite_master WHERE type = 'table'");
    for (; !all.AtEof(); all.MoveNext())
      terms += (terms.empty() ? "SELECT COUNT(*) AS n FROM " : " UNION ALL SELECT COUNT(*) FROM ") +
               all.Fields("name").text();
    return terms;
  }();
  std::string text;
  for (auto rows = database.OpenRecordset(query); !rows.AtEof(); rows.MoveNext()) text += rows.Fields("n").text() + " ";
  return text;
}

}  // namespace tarn::fuzz
