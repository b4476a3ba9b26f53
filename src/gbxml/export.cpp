#include <sstream>

#include "gbxml/writing.h"
#include "platform/host.h"
#include "tarn/gbxml.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/weather.h"

namespace tarn {
namespace {

void write_root(Element root) {
  for (const auto& [name, value] :
       {std::pair("xmlns", "http://www.gbxml.org/schema"), std::pair("version", "6.01"),
        std::pair("useSIUnitsForResults", "false"), std::pair("temperatureUnit", "F"), std::pair("lengthUnit", "Feet"),
        std::pair("areaUnit", "SquareFeet"), std::pair("volumeUnit", "CubicFeet")})
    set(root, name, value);
}

void write_site(Writing& writing) {
  const auto weather = writing.project.NewWeather();
  weather->Load();
  Element location = add(writing.campus, "Location");
  const std::string city = weather->DesCityName.trimmed(), state = weather->DesStateName.trimmed();
  add_text(location, "Name", state.empty() ? city : city + ", " + state);
  add_text(location, "ZipcodeOrPostalCode", "00000");  // which the schema wants and a project has not
  add_value(location, "Longitude", weather->DesLongitude);
  add_value(location, "Latitude", weather->DesLatitude);
  add_value(location, "Elevation", weather->DesElevation, "Feet");
  add_value(location, "CADModelAzimuth", 0);
  if (weather->SummerDB <= weather->WinterDB) return;
  Element design = add(writing.root, "Weather");
  set(design, "id", "design-weather");
  Element place = add(design, "Location");
  add_text(place, "ZipcodeOrPostalCode", "00000");
  add_value(design, "DDDBCool", weather->SummerDB, "F");
  add_value(design, "DDWBCool", weather->SummerWB, "F");
  add_value(design, "DDDBRangeCool", weather->DailyRange, "F");
  add_value(design, "DDDBHeat", weather->WinterDB, "F");
  add_value(design, "DDWBHeat", weather->WinterWB, "F");
}

}  // namespace

GbxmlText export_gbxml(COM_ProjectData& project, const Progress& progress) {
  const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
  Transaction reading(Transaction::Purpose::Reading);
  pugi::xml_document document;
  Element declaration = document.append_child(pugi::node_declaration);
  set(declaration, "version", "1.0");
  set(declaration, "encoding", "UTF-8");
  Writing writing{project, document.append_child("gbXML"), {}, {}, {}, {}};
  write_root(writing.root);
  writing.campus = add(writing.root, "Campus");
  set(writing.campus, "id", "campus-" + project.FilePrefix);
  write_site(writing);
  writing.building = add(writing.campus, "Building");
  set(writing.building, "id", "building");
  set(writing.building, "buildingType", "Unknown");
  write_constructions(writing);
  write_windows(writing);
  write_schedules(writing);
  write_spaces(writing, progress);
  write_systems(writing);
  std::ostringstream text;
  document.save(text, " ", pugi::format_indent, pugi::encoding_utf8);
  return {text.str(), {writing.notes.begin(), writing.notes.end()}};
}

}  // namespace tarn
