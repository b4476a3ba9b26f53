// Chiller performance maps in the JSON form of ASHRAE Standard 205, representation RS0001.
#pragma once

#include <string>
#include <vector>

namespace tarn {

class CHL_Chiller;

/// Fills the cooling mode of a chiller, and what else the file tells; returns what a person should know of the result,
/// a line each: full load and IPLV with their distance from the stated rating, the correction for other leaving water,
/// and in one line all that was not carried over. Rows of the map are entering temperatures of the condenser, columns
/// the compressor's stages, at 44 F leaving water; full load is at 95 F air or 85 F water. Tons and kW. Errors
/// `FileNotFound`, and `UnknownFormat` for a file that is no such map; the chiller stays as it was.
std::vector<std::string> import_chiller(CHL_Chiller& chiller, const std::string& path);

}  // namespace tarn
