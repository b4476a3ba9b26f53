#include "gbxml/site.h"

#include <cmath>

#include "tarn/weather.h"

namespace tarn {
namespace {

constexpr double kDegreesPerHour = 15;

/// psia at so many ft, of the standard atmosphere: ASHRAE Handbook of Fundamentals 2005, chapter 6, equation 3.
double standard_psia(double feet) { return 14.696 * std::pow(1 - 6.8754e-6 * feet, 5.2559); }

void fill_design(WTH_Weather& weather, Element design, const GbxmlDocument& document) {
  const auto set = [&](R4& field, const char* name, std::string_view unit) {
    if (const auto value = document.child_value(design, name, unit)) field = static_cast<float>(*value);
  };
  set(weather.SummerDB, "DDDBCool", "F");
  set(weather.SummerWB, "DDWBCool", "F");
  set(weather.DailyRange, "DDDBRangeCool", "delta F");
  set(weather.WinterDB, "DDDBHeat", "F");
  set(weather.WinterWB, "DDWBHeat", "F");
}

}  // namespace

void fill_site(Filling& filling) {
  const GbxmlDocument& document = filling.document;
  const Element location = document.first("Location");
  if (!location) return;
  filling.tally.found("Location");
  const auto weather = filling.project.NewWeather();
  weather->Load();
  const std::string city = weather->DesCityName.trimmed();
  if (!city.empty())
    return filling.tally.left(document, location, "Location", "the project has the weather of " + city + " already");
  const std::string_view name = child_text(location, "Name");
  const size_t comma = name.find(',');
  weather->DesCityName = fitted(name.substr(0, comma), 20).text;
  weather->DesStateName = comma == std::string_view::npos ? std::string{} : fitted(name.substr(comma + 1), 20).text;
  const auto number = [&](const char* child_name) {
    const Element found = child(location, child_name);
    return found && !text_of(found).empty() ? document.number(found) : 0;
  };
  const double longitude = number("Longitude"),
               elevation = document.child_value(location, "Elevation", "ft").value_or(0);
  weather->DesLatitude = static_cast<float>(number("Latitude"));
  weather->DesLongitude = static_cast<float>(longitude);
  weather->DesElevation = static_cast<float>(elevation);
  weather->DesTZMeridian = static_cast<float>(std::round(longitude / kDegreesPerHour) * kDegreesPerHour);
  weather->DesBaromPress = static_cast<float>(standard_psia(elevation));
  weather->AtmosClear = 1;
  weather->FirstDesMonth = 1;
  weather->LastDesMonth = 12;
  filling.tally.note(document, location,
                     "the time zone's meridian is the multiple of 15 degrees that is nearest to the longitude");
  const Element design = document.first("Weather");
  if (design) {
    fill_design(*weather, design, document);
    filling.tally.taken("Weather");
  } else {
    filling.tally.note("the file has no design weather; set it before loads are calculated");
  }
  weather->Save();
  filling.tally.taken("Location");
}

}  // namespace tarn
