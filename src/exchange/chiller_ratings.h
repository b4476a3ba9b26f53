// What a chiller file by ASHRAE 205 states of its machine, beside what its map gives.
#pragma once

#include "exchange/cooling_grid.h"
#include "tarn/chiller.h"

namespace tarn {

inline constexpr double kKWPerTon = 3.51685284207;

/// 0 where the file does not state it. Capacity, power and COP from its rating by AHRI 550/590, IPLV from that or from
/// the one by AHRI 551/591; COP and IPLV else from the words of its description ("2.96 COP, 4.02 IPLV").
struct StatedRating {
  double tons = 0, kilowatts = 0, cop = 0, iplv = 0;
  std::string iplv_from;
};
/// Error `UnknownFormat` for a rating that is no number above 0.
StatedRating stated_by(const Json& text);

/// Says full load by the map, and how far in per cent it lies from what is stated.
void tell_full_load(const CHL_OperatingMode& mode, const StatedRating& stated, std::vector<std::string>& said);

/// Sets the IPLV: the stated one, else that of the chiller's map by AHRI 550/590, and says which.
void fill_iplv(CHL_Chiller& chiller, const Json& performance, const StatedRating& stated,
               std::vector<std::string>& said, NotCarriedOver& left);

}  // namespace tarn
