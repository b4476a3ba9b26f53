// Chiller performance maps in the JSON form of ASHRAE Standard 205, representation RS0001.
#pragma once

#include <string>
#include <vector>

namespace tarn {

class CHL_Chiller;

/// Fills the cooling mode of a chiller, and whatever else the file tells, from a file. Returns what was not carried
/// over, one line for each. Rows of the map are entering temperatures of the condenser, columns the stages of
/// unloading, at 44 F leaving water; full load is at 95 F air or 85 F water. Tons and kW. Errors `FileNotFound`, and
/// `UnknownFormat` for another representation, a map that lacks a variable or does not reach these temperatures; the
/// chiller stays as it was.
std::vector<std::string> import_chiller(CHL_Chiller& chiller, const std::string& path);

}  // namespace tarn
