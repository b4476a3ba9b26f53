// Spaces, walls and roofs, windows with doors and shades, schedules.
#include <cmath>

#include "report/sections.h"
#include "tarn/construction.h"
#include "tarn/pictures.h"
#include "tarn/schedule.h"
#include "tarn/space.h"
#include "tarn/window.h"

namespace tarn::report {
namespace {

// ---- spaces

double roof_area(SPC_Space& space) {
  double sum = 0;
  for (int16_t number = 1; number <= SPC_Space::kRoofs; ++number) {
    if (const auto roof = space.GetRoof(number); roof->Exposure != 0) sum += roof->GrossArea;
  }
  return sum;
}

double wall_area(SPC_Space& space) {
  double sum = 0;
  for (int16_t number = 1; number <= SPC_Space::kWalls; ++number) {
    if (const auto wall = space.GetWall(number); wall->Exposure != 0) sum += wall->GrossArea;
  }
  return sum;
}

/// "2 of South 4x5, 1 of Strip".
std::string openings_text(const Source& source, const SPC_WallWindow& wall) {
  std::string text;
  for (int i = 1; i <= 2; ++i) {
    const std::string name = value_text(source, wall, "WindowType", std::span<const int>(&i, 1));
    if (!name.empty()) text += (text.empty() ? "" : ", ") + std::to_string(wall.WindowQty(i)) + " of " + name;
  }
  return text;
}

void add_surfaces(const Source& source, SPC_Space& space, html::Table& table) {
  const auto area = [&](double value) { return source.in.figure(value, "ft2"); };
  for (int16_t number = 1; number <= SPC_Space::kWalls; ++number) {
    const auto wall = space.GetWall(number);
    if (wall->Exposure != 0)
      table.rows.push_back({space.Name(), "wall", value_text(source, *wall, "Exposure"), area(wall->GrossArea),
                            value_text(source, *wall, "WallType"), openings_text(source, *wall)});
  }
  for (int16_t number = 1; number <= SPC_Space::kRoofs; ++number) {
    const auto roof = space.GetRoof(number);
    if (roof->Exposure == 0) continue;
    const std::string skylight = value_text(source, *roof, "SkylightType");
    table.rows.push_back({space.Name(), "roof", value_text(source, *roof, "Exposure"), area(roof->GrossArea),
                          value_text(source, *roof, "RoofType"),
                          skylight.empty() ? "" : std::to_string(roof->SkylightQty) + " of " + skylight});
  }
}

}  // namespace

std::string spaces_section(const Source& source) {
  const Measures& in = source.in;
  const std::string square(in.unit("ft2")), power(in.unit("Btu/hr"));
  html::Table spaces{"Spaces with areas and internal loads",
                     {{"space"},
                      {"floor", square, true},
                      {"height", std::string(in.unit("ft")), true},
                      {"walls", square, true},
                      {"roofs", square, true},
                      {"people", "", true},
                      {"overhead lights", "", true},
                      {"task lights", "", true},
                      {"equipment", "", true},
                      {"other sensible", power, true},
                      {"other latent", power, true}},
                     {}};
  html::Table surfaces{"Walls and roofs of the spaces",
                       {{"space"}, {"surface"}, {"exposure"}, {"gross area", square, true}, {"type"}, {"openings"}},
                       {}};
  double floor = 0;
  const std::string troubles = source.for_each("spaces", [&](StoredEntity& entity) {
    auto& space = as<SPC_Space>(entity);
    const auto general = space.GetSpace();
    const auto light = space.GetLight();
    const auto other = space.GetOtherLoads();
    floor += general->FloorArea;
    spaces.rows.push_back({space.Name(), in.figure(general->FloorArea, "ft2"), in.figure(general->AvgHeight, "ft"),
                           in.figure(wall_area(space), "ft2"), in.figure(roof_area(space), "ft2"),
                           six_digits(space.GetMaxOccupancy()), measure_text(source, *light, "OverheadWatt"),
                           measure_text(source, *light, "TaskWatt"), measure_text(source, *other, "ElecEqptHeatGain"),
                           in.figure(other->MiscSensibleHeat, "Btu/hr"), in.figure(other->MiscLatentHeat, "Btu/hr")});
    add_surfaces(source, space, surfaces);
  });
  return troubles + html::paragraph("Floor area of all spaces: " + in.measure(floor, "ft2") + ".") +
         spaces.html("There are no spaces yet.") + surfaces.html("The spaces have no walls and roofs.");
}

// ---- envelope

namespace {

/// In per cent, to a ten-thousandth of one.
std::string per_cent(double share) { return share < 1e-6 ? "below 0.0001" : six_digits(std::round(share * 1e6) / 1e4); }

/// How far the coefficients are off, and what a person should know of them.
struct AccuracyText {
  std::string step, day, remark;

  explicit AccuracyText(const CA_ConstructionAssly& construction) {
    try {
      const Accuracy accuracy = construction.coefficient_accuracy();
      step = per_cent(accuracy.step);
      day = per_cent(accuracy.day);
      remark = construction.coefficients_are_stale() ? "stale: not those of the layers; save it"
                                                     : construction.told(accuracy);
    } catch (const Error& error) {
      remark = error.description();
    }
  }
};

std::string constructions(const Source& source, const std::string& group) {
  html::Table table{"Performance of the " + group,
                    {{"name"},
                     {"U-value", std::string(source.in.unit("Btu/(hr.ft2.F)")), true},
                     {"weight", std::string(source.in.unit("lb/ft2")), true},
                     {"thickness", std::string(source.in.unit("in")), true},
                     {"coefficients off at a step", "%", true},
                     {"off on a day", "%", true},
                     {"remark"}},
                    {}};
  std::string folds;
  const std::string troubles = source.for_each(group, [&](StoredEntity& entity) {
    auto& construction = as<CA_ConstructionAssly>(entity);
    const AccuracyText accuracy(construction);
    table.rows.push_back({construction.Name.trimmed(), source.in.figure(construction.OverallUValue, "Btu/(hr.ft2.F)"),
                          source.in.figure(construction.OverallWeight, "lb/ft2"),
                          source.in.figure(construction.GetTotalThickness(), "in"), accuracy.step, accuracy.day,
                          accuracy.remark});
    folds += html::fold(heading_of(entity),
                        html::picture(wall_picture(construction, source.in.system()),
                                      construction.Name.trimmed() + ": section and response"),
                        table.rows.size() <= kShownOpen);
  });
  return troubles + table.html("There are no " + group + " yet.") + folds;
}

}  // namespace

std::string envelope_section(const Source& source) {
  return constructions(source, "walls") + constructions(source, "roofs");
}

std::string windows_section(const Source& source) {
  const bool metric = source.in.system() == UnitSystem::SI;
  html::Table windows{"Performance of the windows", {{"name"}}, {}};
  constexpr std::pair<std::string_view, const char*> kColumns[]{
      {"Height", "height"},         {"Width", "width"},
      {"OverallUValue", "U-value"}, {"OverallShadeCo", "shade coefficient"},
      {"FrameType", "frame"},       {"ShadeType", "internal shade"}};
  const WIN_Window sample;
  for (const auto& [property, title] : kColumns)
    windows.heads.push_back(head_of(source, sample.info(), property, title));
  windows.heads.push_back({"glass, outside first"});
  std::string troubles = source.for_each("windows", [&](StoredEntity& entity) {
    auto& row = windows.rows.emplace_back();
    row.push_back(entity.stored_name());
    for (const auto& [property, title] : kColumns) row.push_back(value_text(source, entity, property));
    std::string glass;
    for (int layer = 1; layer <= 3; ++layer) {
      const std::string name =
          value_text(source, entity, metric ? "GlassNameMetric" : "GlassNameEnglish", std::span<const int>(&layer, 1));
      if (as<WIN_Window>(entity).GlassTypeID(layer) >= 1) glass += (glass.empty() ? "" : " | ") + name;
    }
    row.push_back(glass);
  });
  std::string rest;
  for (const char* group : {"doors", "shades"}) {
    troubles += source.for_each(group, [&](StoredEntity& entity) {
      rest += html::fold(heading_of(entity), fields_table(source, entity, entity.stored_name()), false);
    });
  }
  return troubles + windows.html("There are no windows yet.") + rest;
}

std::string schedules_section(const Source& source) {
  std::string folds;
  size_t shown = 0;
  const std::string troubles = source.for_each("schedules", [&](StoredEntity& entity) {
    folds += html::fold(heading_of(entity),
                        html::picture(schedule_picture(as<SCH_Schedule>(entity)), entity.stored_name() + ": schedule"),
                        ++shown <= kShownOpen);
  });
  return troubles + (folds.empty() ? html::paragraph("There are no schedules yet.") : folds);
}

}  // namespace tarn::report
