// Names of files that belong to one entity.
#pragma once

#include <string>

namespace tarn {

/// The file of an object that has one of its own: two hexadecimal digits at least, "JOBA0A.DAT"; empty without a
/// prefix.
std::string object_file_name(const std::string& prefix, int index);

}  // namespace tarn
