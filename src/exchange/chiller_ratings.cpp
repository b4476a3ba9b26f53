#include "exchange/chiller_ratings.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/decimals.h"
#include "plant/chiller_map.h"
#include "reflect/json_text.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

constexpr double kBtuhPerTon = 12000, kEerPerCop = 3.412142;

/// "+0.6 %", "0.0 %": how far the map lies from what is stated.
std::string deviation(double map, double stated) {
  const std::string percent = decimal_text(100 * (map / stated - 1), 1);
  return (percent.starts_with('-') || percent == "0.0" ? "" : "+") + percent + " %";
}

double positive_at(const Json& group, const char* key) {
  if (!group.contains(key)) return 0;
  const Json& value = group.at(key);
  if (!value.is_number() || !(value.get<double>() > 0))
    fail(ErrorNumber::UnknownFormat,
         std::string(key) + " is " + json_text(value).substr(0, 40) + "; allowed are numbers above 0");
  return value.get<double>();
}

/// The number before a word: "2.96 COP", "4.02 IPLV"; 0 where there is none.
double number_before(const std::string& text, const std::string& word) {
  size_t end = text.find(" " + word);
  while (end != std::string::npos && std::isalnum(static_cast<unsigned char>((text + " ")[end + 1 + word.size()]))) {
    end = text.find(" " + word, end + 1);
  }
  if (end == std::string::npos) return 0;
  size_t begin = end;
  while (begin > 0 && (std::isdigit(static_cast<unsigned char>(text[begin - 1])) || text[begin - 1] == '.')) --begin;
  double number = 0;
  std::from_chars(text.data() + begin, text.data() + end, number);
  return number;
}

/// A rating stands as COP, Btu/Wh or kW/ton, and its file does not say which: the one nearest to the map.
double as_cop(double stated, double map, std::string& read_as) {
  const struct {
    double cop;
    const char* read_as;
  } readings[]{{stated, ""}, {stated / kEerPerCop, ", read as Btu/Wh"}, {kKWPerTon / stated, ", read as kW/ton"}};
  const auto nearest = std::min_element(std::begin(readings), std::end(readings), [map](const auto& a, const auto& b) {
    return std::abs(std::log(a.cop / map)) < std::abs(std::log(b.cop / map));
  });
  read_as = nearest->read_as;
  return nearest->cop;
}

}  // namespace

StatedRating stated_by(const Json& text) {
  const Json description = optional_group(text, "description");
  const Json ip = optional_group(description, "rating_ahri_550_590"),
             si = optional_group(description, "rating_ahri_551_591");
  const std::string words = text_at(group_at(text, "metadata"), "description").substr(0, 1000);
  StatedRating stated{positive_at(ip, "net_refrigerating_capacity") / kBtuhPerTon, positive_at(ip, "input_power"),
                      positive_at(ip, "cop"), positive_at(ip, "iplv_ip"), "iplv_ip"};
  if (stated.cop == 0) stated.cop = number_before(words, "COP");
  if (stated.iplv == 0) stated.iplv = positive_at(si, "iplv_si"), stated.iplv_from = "iplv_si";
  if (stated.iplv == 0) stated.iplv = number_before(words, "IPLV"), stated.iplv_from = "the description";
  return stated;
}

void tell_full_load(const CHL_OperatingMode& mode, const StatedRating& stated, std::vector<std::string>& said) {
  const double cop = mode.FLCapacity * kKWPerTon / mode.FLPower;
  std::string line = "Full load by the map: " + fixed(mode.FLCapacity, 1) + " tons, " + fixed(mode.FLPower, 1) +
                     " kW, COP " + fixed(cop, 3);
  const auto compare = [&line](const char* what, double map, double rating) {
    if (rating > 0)
      line +=
          "; the stated " + std::string(what) + " is " + short_number(rating) + " (map " + deviation(map, rating) + ")";
  };
  compare("capacity in tons", mode.FLCapacity, stated.tons);
  compare("power in kW", mode.FLPower, stated.kilowatts);
  compare("COP", cop, stated.cop);
  said.push_back(line + ".");
}

void fill_iplv(CHL_Chiller& chiller, const Json& performance, const StatedRating& stated,
               std::vector<std::string>& said, NotCarriedOver& left) {
  const double cycling = performance.contains("cycling_degradation_coefficient") &&
                                 performance.at("cycling_degradation_coefficient").is_number()
                             ? performance.at("cycling_degradation_coefficient").get<double>()
                             : Unloading{}.cycling_loss;
  if (!(cycling >= 0 && cycling <= 1))
    fail(ErrorNumber::UnknownFormat, "cycling_degradation_coefficient is not between 0 and 1");
  const Unloading unloading{text_at(performance, "compressor_speed_control_type") == "DISCRETE", cycling};
  std::optional<double> map;  // the rating's wet bulbs are not on the axes of an evaporative condenser
  if (text_at(performance, "condenser_type") != "EVAPORATIVE")
    map = integrated_part_load(chiller.CoolingMode, CHL_SourceFluids{chiller.SourceFluid}, 0, unloading);
  if (stated.iplv > 0) {
    std::string read_as;
    const double map_cop = map ? kKWPerTon / *map : 0, cop = map ? as_cop(stated.iplv, map_cop, read_as) : stated.iplv;
    chiller.IPLV = static_cast<float>(kKWPerTon / cop);
    said.push_back(
        "IPLV: " + fixed(chiller.IPLV, 4) + " kW/ton, from " + stated.iplv_from + ": " + short_number(stated.iplv) +
        read_as +
        (map ? "; the map gives a COP of " + fixed(map_cop, 3) + " (" + deviation(map_cop, cop) + ")." : "."));
  } else if (map) {
    chiller.IPLV = static_cast<float>(*map);
    said.push_back("IPLV: " + fixed(*map, 4) + " kW/ton (COP " + fixed(kKWPerTon / *map, 3) +
                   "), computed from the map by AHRI 550/590; the file states none.");
  } else {
    left.push_back("IPLV (the file states none, and its map does not have the temperatures to compute one)");
  }
}

}  // namespace tarn
