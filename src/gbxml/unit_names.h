// Units as gbXML names them.
#pragma once

#include <optional>
#include <string_view>

namespace tarn {

/// A value in a unit by its gbXML name ("SquareMeters", "WPerSquareMeterK"), in a unit of this product ("ft2"). Nothing
/// for a name that gbXML does not have, or that is of something else.
std::optional<double> from_gbxml_unit(double value, std::string_view name, std::string_view unit);

}  // namespace tarn
