// Data files that the product ships: chillers.dat, a record for each chiller type, and plant.dat, the default plant.
#pragma once

#include <string>
#include <string_view>

namespace tarn {

/// Full path of one of them. They lie in the folder that TARN_SHARE names; else in share/tarn beside or above the
/// folder of the program or library, then in that of the prefix for which the library was built. Error `FileNotFound`.
std::string shipped_file(std::string_view name);

}  // namespace tarn
