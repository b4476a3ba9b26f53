// Files that are one record from end to end.
#pragma once

#include <string>

#include "platform/file_store.h"
#include "tarn/base/log.h"
#include "tarn/base/wire.h"

namespace tarn {

/// Reads a file's record. What a short file lacks reads as zeros; this is logged, except for an empty file and one that
/// is not there. False for those two.
template <typename R>
bool read_record(R& record, const std::string& file) {
  const size_t got = files().read(file, 0, record_bytes(record));
  if (got > 0 && got < sizeof(R)) {
    log().message(file + " is cut short: " + std::to_string(got) + " of " + std::to_string(sizeof(R)) +
                  " bytes; the rest reads as zeros.");
  }
  return got > 0;
}

}  // namespace tarn
