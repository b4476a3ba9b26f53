// What a transaction, or a committed save, has still to do to one file.
#pragma once

#include <string>
#include <utility>

#include "platform/extents.h"

namespace tarn {

struct FileChange {
  bool emptied = false;     // what the file held before is gone
  bool removed = false;     // and so is the file
  std::string replacement;  // a whole new file, by its name in the folder, that takes the file's place
  Extents extents;          // written over all of that

  /// Takes over a newer change.
  void merge(FileChange&& newer) {
    removed = newer.removed;
    if (newer.emptied) *this = FileChange{true, newer.removed, std::move(newer.replacement), {}};
    extents.merge(std::move(newer.extents));
  }
};

}  // namespace tarn
