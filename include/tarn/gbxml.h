// Building models in gbXML, the form in which drawing programs hand over a building: in, with an account of what was
// taken and what was not, and out. docs/gbxml.md tells what becomes what.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tarn/base/progress.h"
#include "tarn/project.h"

namespace tarn {

/// What an import took, and what it left. Areas in ft2, conductances in Btu/(hr.F).
struct GbxmlAccount {
  /// "Surface", "Space/PeopleNumber": how many the file has, and how many came in.
  struct Elements {
    std::string element;
    size_t found = 0, taken = 0;
  };
  /// Elements that were left out for one reason; `line` is that of the first.
  struct Left {
    std::string element, reason;
    size_t count = 0;
    double area = 0;
    size_t line = 0;
  };
  /// Of the spaces as they are saved: "wall", "window", "door", "roof", "skylight", "floor", "below-grade wall",
  /// "partition". Walls and roofs with their openings; conductance is that of the area without them.
  struct Areas {
    std::string kind;
    std::string exposure;  // "N" to "NNW", "horizontal"; of a floor or a partition its kind
    size_t count = 0;
    double area = 0, conductance = 0;
  };
  /// Of the file, by `surfaceType` of its surfaces and `openingType` of their openings.
  struct Drawn {
    std::string type;
    size_t count = 0;
    double area = 0;
  };

  std::vector<Elements> elements;
  std::vector<Left> left;
  std::vector<Areas> areas;
  std::vector<Drawn> drawn;
  std::vector<std::string> notes;               // a line each, "line 12, Surface su-3: ..."
  double floor_area = 0;                        // of the spaces
  double conductance = 0;                       // of what lies between conditioned spaces and the outdoor air
  size_t made = 0, updated = 0, unchanged = 0;  // entities
};

/// Brings a building in, in one transaction: spaces with their envelope and loads, constructions, windows, doors,
/// shades, schedules, air systems, plants and, where the project has none, the site and its design weather. A file that
/// is imported again, changed or not, updates what came from it before: the project remembers ids in
/// `<prefix>GBXML.JSON`. Errors `FileNotFound`, and `UnknownFormat` with file, line and reason; nothing is imported
/// then.
GbxmlAccount import_gbxml(COM_ProjectData& project, const std::string& path, const Progress& progress);

/// As a person reads it, in inch-pound or SI units.
enum class UnitSystem : uint8_t;
std::string account_text(const GbxmlAccount& account, UnitSystem units);
/// As a JSON object, in inch-pound units.
std::string account_json(const GbxmlAccount& account);

/// A project as gbXML of the schema 6.01. Surfaces are rectangles of the areas and directions that the project has; it
/// knows no coordinates. `notes` says what has no place in gbXML, a line each.
struct GbxmlText {
  std::string text;
  std::vector<std::string> notes;
};
GbxmlText export_gbxml(COM_ProjectData& project, const Progress& progress);

}  // namespace tarn
