// A gbXML file of 100,000 surfaces into a project. Floor: the XML parser alone, three times, plus the saves of the same
// spaces.
#include "tarn/gbxml.h"

#include <fstream>
#include <pugixml.hpp>

#include "platform/host.h"
#include "project/defaults.h"
#include "report.h"
#include "tarn/construction.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/space.h"

namespace tarn::bench {
namespace {

constexpr int kSpaces = 10'000, kParses = 3;

std::string loop(double x, double y, double u, double v, double low, double high) {
  std::string text = "<PlanarGeometry><PolyLoop>";
  const double points[4][3]{{x, y, low}, {u, v, low}, {u, v, high}, {x, y, high}};
  for (const auto& point : points) {
    text += "<CartesianPoint>";
    for (const double coordinate : point) text += "<Coordinate>" + std::to_string(coordinate) + "</Coordinate>";
    text += "</CartesianPoint>";
  }
  return text + "</PolyLoop></PlanarGeometry>";
}

/// Each space has ten walls: two on each side but for the west, and four there.
std::string building() {
  std::string spaces, surfaces;
  for (int space = 0; space < kSpaces; ++space) {
    const std::string id = "sp-" + std::to_string(space);
    spaces += "<Space id=\"" + id + "\"><Name>Room " + std::to_string(space) +
              "</Name><Area>100</Area><Volume>900</Volume><LightPowerPerArea "
              "unit=\"WattPerSquareFoot\">1</LightPowerPerArea></Space>\n";
    for (int wall = 0; wall < 10; ++wall) {
      constexpr double kSides[4][4]{{0, 0, 10, 0}, {10, 0, 10, 10}, {10, 10, 0, 10}, {0, 10, 0, 0}};
      const auto& side = kSides[wall % 4];
      surfaces += "<Surface id=\"su-" + std::to_string(space) + "-" + std::to_string(wall) +
                  "\" surfaceType=\"ExteriorWall\" constructionIdRef=\"con\"><AdjacentSpaceId spaceIdRef=\"" + id +
                  "\"/>" + loop(side[0], side[1], side[2], side[3], 0, 9) + "</Surface>\n";
    }
  }
  return "<gbXML lengthUnit=\"Feet\" areaUnit=\"SquareFeet\" volumeUnit=\"CubicFeet\" temperatureUnit=\"F\"><Campus "
         "id=\"c\"><Building id=\"b\">" +
         spaces + "</Building>" + surfaces +
         "</Campus><Construction id=\"con\"><U-value unit=\"BtuPerHourSquareFtF\">0.1</U-value></Construction></gbXML>";
}

struct Target {
  explicit Target(const std::string& path, const char* prefix) {
    project.SetWorkPath(path);
    project.FilePrefix = prefix;
  }
  void clear() {
    for (const char* ending : {"INX.MDB", "SPC.DAT", "WAL.DAT", "GBXML.JSON"})
      host().files->remove(project.WorkPath() + "/" + project.FilePrefix + ending);
    create_project(project);
  }
  COM_ProjectData project;
};

void save_spaces(COM_ProjectData& project) {
  Transaction transaction;
  const auto wall = project.NewWall();
  wall->CreateDefault();
  wall->Save();
  for (int number = 0; number < kSpaces; ++number) {
    const auto space = project.NewSpace();
    space->CreateDefault();
    space->Reset(true);
    space->SetName("Room " + std::to_string(number));
    for (int16_t side = 1; side <= 4; ++side) {
      space->GetWall(side)->Exposure = side;
      space->GetWall(side)->GrossArea = 225;
      space->GetWall(side)->WallType = 1;
    }
    space->Save();
  }
  transaction.commit();
}

}  // namespace

void gbxml_cases(Report& report, const std::string& folder) {
  const std::string path = folder + "/building.xml", text = building();
  std::ofstream(path, std::ios::binary) << text;
  Target ours(folder, "OURS"), floor(folder, "FLOOR");
  size_t surfaces = 0;
  report.compare(
      {"import gbXML of 100,000 surfaces", 10 * kSpaces, 1.0, 3},
      {.run = [&] { surfaces += import_gbxml(ours.project, path, {}).made; }, .before = [&] { ours.clear(); }},
      {.run =
           [&] {
             for (int parse = 0; parse < kParses; ++parse) {
               pugi::xml_document document;
               surfaces += document.load_buffer(text.data(), text.size()) ? 1 : 0;
             }
             save_spaces(floor.project);
           },
       .before = [&] { floor.clear(); }});
}

}  // namespace tarn::bench
