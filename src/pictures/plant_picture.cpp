// A plant as a schematic: for cooling and for heating, from left to right, what rejects or supplies heat, the
// equipment, the loops with their pumps, and the air systems that are served.
#include <algorithm>

#include "base/measures.h"
#include "pictures/index_name.h"
#include "pictures/svg.h"
#include "storage/links.h"
#include "tarn/pictures.h"
#include "tarn/plant.h"
#include "tarn/platform/database.h"
#include "tarn/staleness.h"

namespace tarn {

std::string index_name(Database& database, std::string_view kind, int16_t index) {
  auto rows = database.OpenRecordset("SELECT szName FROM " + index_table_of(kind) + " WHERE nIndex = ?", {cell(index)});
  return rows.AtEof() ? "(missing)" : rows.Fields("szName").text();
}

namespace {

using svg::label;
using svg::number;
using svg::path;

constexpr double kSourceLeft = 30, kEquipmentLeft = 270, kPrimaryLeft = 550, kSecondaryLeft = 740, kSystemsLeft = 930,
                 kPlantBoxWide = 150, kEquipmentWide = 220, kPlantBoxHigh = 34, kPlantRow = 44, kPlantTop = 90,
                 kPlantBandGap = 34, kPlantWide = kSystemsLeft + kEquipmentWide + 30;
constexpr int kMostSystems = 8;  // that have a box each; the others are counted

/// One side of the plant.
struct Side {
  std::string name, color;
  PLT_EquipmentList& equipment;
  PLT_PumpLoop *primary, *secondary;
  PLT_Configuration* config;
};

std::string box(double x, double y, double wide, const std::string& text, const std::string& more,
                const std::string& color) {
  const auto letters = static_cast<size_t>(wide / 6.6), small_letters = static_cast<size_t>(wide / 5.4);
  return "<rect x=\"" + number(x) + "\" y=\"" + number(y) + "\" width=\"" + number(wide) + "\" height=\"" +
         number(kPlantBoxHigh) + "\" rx=\"3\" fill=\"#f4f6f8\" stroke=\"" + color + "\"/>\n" +
         label(x + 8, y + 14, svg::escaped(svg::shortened(text, letters))) +
         label(x + 8, y + 28, svg::escaped(svg::shortened(more, small_letters)), "font-size=\"10\" fill=\"#555\"");
}

std::string pipe(const std::string& way, const std::string& color) {
  return path(way, "fill=\"none\" stroke-width=\"3\" stroke=\"" + color + "\"");
}

std::string code_text(Object& object, std::string_view field) {
  const Member& member = object.info().find(field);
  Value value;
  member.get(object, {}, value);
  return std::string(text_of(member.labels_of(object), std::get<int16_t>(value)));
}

/// Boxes below each other, each joined to an upright header at `header`; from the one side, or the other.
std::string joined(const std::vector<std::string>& boxes, double edge, double header, double top,
                   const std::string& color) {
  std::string out;
  for (const std::string& each : boxes) out += each;
  double last = top;
  for (size_t i = 0; i < boxes.size(); ++i) {
    last = top + static_cast<double>(i) * kPlantRow + kPlantBoxHigh / 2;
    out += pipe("M" + number(edge) + " " + number(last) + "H" + number(header), color);
  }
  return out + pipe("M" + number(header) + " " + number(top + kPlantBoxHigh / 2) + "V" + number(last), color);
}

std::string pumps_text(const PLT_PumpLoop& loop) {
  return std::to_string(loop.NumPumps()) + (loop.NumPumps() == 1 ? " pump" : " pumps");
}

struct Drawing {
  PLT_Plant& plant;
  Database& database;
  const Measures& in;

  std::string loop(PLT_PumpLoop& of, const std::string& what, double x, double y, const std::string& color) const {
    return box(x, y, kPlantBoxWide, what + ", " + pumps_text(of), code_text(of, "PumpControl"), color);
  }

  /// Air systems with their multipliers; the last box counts those without one.
  std::vector<std::string> systems(double top, const std::string& color) const {
    std::vector<std::string> names, boxes;
    for (int i = 1; i <= kPlantSystems; ++i) {
      const int16_t id = plant.SystemSelect.SystemID(i);
      if (id == 0) continue;
      const int times = std::max<int>(1, plant.SystemSelect.SystemMultiplier(i));
      names.push_back(index_name(database, "System", id) + (times > 1 ? ", " + std::to_string(times) + " times" : ""));
    }
    const auto drawn = std::min<size_t>(names.size(), kMostSystems);
    for (size_t i = 0; i < drawn; ++i)
      boxes.push_back(
          box(kSystemsLeft, top + static_cast<double>(i) * kPlantRow, kEquipmentWide, names[i], "air system", color));
    if (names.size() > drawn)
      boxes.push_back(box(kSystemsLeft, top + static_cast<double>(drawn) * kPlantRow, kEquipmentWide,
                          "and " + std::to_string(names.size() - drawn) + " more", "air systems", color));
    return boxes;
  }

  bool shares_a_tower() const {
    return plant.Details.TowerConfig == PLT_TowerConfigTypes::CTC_ONE_TOWER_SHARED_BY_CW_CHILLER_IN_PLANT;
  }

  std::vector<std::string> pieces(PLT_EquipmentList& list, double top, const std::string& color) const {
    std::vector<std::string> boxes;
    for (int i = 1; i <= list.NumEquipment(); ++i) {
      PLT_Equipment& piece = list.Equipment(i);
      const std::string_view kind = PLT_Equipment::kind_of(piece);
      const std::string more = std::string(kind) + ", number " + std::to_string(piece.Sequence) + ", " +
                               number(piece.SizingShare, 0) + " % of capacity";
      boxes.push_back(box(kEquipmentLeft, top + (i - 1) * kPlantRow, kEquipmentWide,
                          kind.empty() ? "unknown equipment" : index_name(database, kind, piece.EquipmentID), more,
                          color));
      if (piece.TowerID != 0 && !shares_a_tower())
        boxes.back() += source(top + (i - 1) * kPlantRow, "Tower", piece.TowerID, "its own tower");
    }
    return boxes;
  }

  /// What the equipment rejects its heat to, with the condenser water between.
  std::string source(double y, std::string_view kind, int16_t index, const std::string& what) const {
    constexpr const char* kCondenser = "#3a8f6b";
    return box(kSourceLeft, y, kPlantBoxWide, index_name(database, kind, index), what, kCondenser) +
           pipe("M" + number(kSourceLeft + kPlantBoxWide) + " " + number(y + kPlantBoxHigh / 2) + "H" +
                    number(kEquipmentLeft),
                kCondenser);
  }

  std::string heading(const Side& side, double y) const {
    std::string text = side.name;
    if (side.config && side.config->DesignLWT != 0)
      text += ": water leaves at " + in.measure(side.config->DesignLWT, "F") + ", temperature difference " +
              in.figure(side.config->DesignDeltaT, "delta F") + (in.system() == UnitSystem::SI ? " K" : " F");
    if (side.config) text += "; control: " + code_text(*side.config, "ControlType");
    return label(kSourceLeft, y, svg::escaped(text), "font-weight=\"bold\" fill=\"" + side.color + "\"");
  }

  /// A side, and its height; nothing where it has neither equipment nor a loop in use.
  std::string side(const Side& of, double top, double& high) const {
    const bool loops = (of.primary && of.primary->Used) || (of.secondary && of.secondary->Used);
    if (of.equipment.NumEquipment() == 0 && !loops) return {};
    const double first = top + 16, line = first + kPlantBoxHigh / 2, header = kEquipmentLeft + kEquipmentWide + 30;
    const auto equipment = pieces(of.equipment, first, of.color), served = systems(first, of.color);
    std::string out = heading(of, top) + joined(equipment, kEquipmentLeft + kEquipmentWide, header, first, of.color) +
                      pipe("M" + number(header) + " " + number(line) + "H" + number(kSystemsLeft - 20), of.color) +
                      joined(served, kSystemsLeft, kSystemsLeft - 20, first, of.color);
    if (of.primary && of.primary->Used) out += loop(*of.primary, "primary loop", kPrimaryLeft, first, of.color);
    if (of.secondary && of.secondary->Used)
      out += loop(*of.secondary, "secondary loop", kSecondaryLeft, first, of.color);
    if (&of.equipment == &plant.Details.CoolingEqpt && plant.Details.TowerID != 0 && shares_a_tower())
      out += source(first, "Tower", plant.Details.TowerID, "shared by the chillers");
    if (&of.equipment == &plant.Details.CoolingEqpt && plant.Details.CondenserWaterLoop.Used)
      out += label(kSourceLeft, first + kPlantRow + 8,
                   "condenser water, " + pumps_text(plant.Details.CondenserWaterLoop), "fill=\"#3a8f6b\"");
    high = static_cast<double>(std::max<size_t>({equipment.size(), served.size(), 2})) * kPlantRow + kPlantBandGap;
    return out;
  }
};

std::string why_stale(const PLT_Plant& plant) {
  for (const StaleResult& mark : stale_marks(plant)) {
    if (mark.calculated)
      return (mark.edited ? mark.edited->text() + " changed at " + mark.since + " UTC, after the "
                          : std::string("the plant, or what it uses, has changed since the ")) +
             mark.results + " calculation; run it again";
  }
  return {};
}

}  // namespace

std::string plant_picture(PLT_Plant& plant, UnitSystem units) {
  if (!plant.GetDBHandle())
    fail(ErrorNumber::InvalidCall,
         "The plant belongs to no project, which has the names of what it uses; load it from one.");
  const Measures in(units);
  const Drawing drawing{plant, *plant.GetDBHandle(), in};
  PLT_Details& details = plant.Details;
  const Side sides[]{{"Cooling", "#1f6fb2", details.CoolingEqpt, &details.ChilledWaterPrimaryLoop,
                      &details.ChilledWaterSecondaryLoop, &details.ConfigCooling},
                     {"Heating", "#b3410f", details.HeatingEqpt, &details.HotWaterPrimaryLoop,
                      &details.HotWaterSecondaryLoop, &details.ConfigHeating},
                     {"Heat recovery", "#7a4fa3", details.HeatRecEqpt, nullptr, nullptr, nullptr}};
  std::string content;
  double top = kPlantTop;
  for (const Side& side : sides) {
    double high = 0;
    content += drawing.side(side, top, high);
    top += high;
  }
  if (content.empty()) {
    content = label(kSourceLeft, top, "no equipment and no loops yet", "fill=\"#666\"");
    top += kPlantRow;
  }
  const std::string name = plant.General.Name.trimmed();
  return svg::page(kPlantWide, top, kSourceLeft, name + ": schematic", name, code_text(plant.General, "PlantType"),
                   content, why_stale(plant));
}

}  // namespace tarn
