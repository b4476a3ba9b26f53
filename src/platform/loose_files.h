// Writes to files that no open database keeps: preferences, defaults and results beside a closed project, files in
// other folders. Each whole file is made beside the old one and renamed, so that a crash leaves one of the two.
#pragma once

#include <string>
#include <vector>

#include "platform/file_change.h"

namespace tarn {

using LooseWrites = std::vector<std::pair<std::string, FileChange*>>;  // by path

/// All are written and on the disk, or an error is thrown and the old bytes are back.
void write_loose_files(const LooseWrites& writes);

}  // namespace tarn
