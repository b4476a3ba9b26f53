// The account of an import as text and JSON.
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "reflect/json_text.h"
#include "tarn/base/units.h"
#include "tarn/gbxml.h"

namespace tarn {
namespace {

struct Shown {
  UnitSystem system;
  std::string number(double value, std::string_view unit) const {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f", convert(value, unit, unit_in(system, unit)));
    return text;
  }
  std::string unit(std::string_view unit) const { return std::string(unit_in(system, unit)); }
};

constexpr std::string_view kArea = "ft2", kConductance = "Btu/(hr.F)";

std::string counted(size_t count) { return std::to_string(count); }

/// Texts in columns; the first to the left, the others to the right.
class Table {
 public:
  explicit Table(std::vector<std::string> heads) { add(std::move(heads)); }
  void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
  std::string text() const {
    std::vector<size_t> widths(rows_.front().size());
    for (const auto& row : rows_) {
      for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    std::string out;
    for (const auto& row : rows_) {
      for (size_t i = 0; i < row.size(); ++i) {
        const std::string blanks(widths[i] - row[i].size(), ' ');
        out += (i == 0 ? "  " + row[i] + blanks : "  " + blanks + row[i]);
      }
      out += '\n';
    }
    return out;
  }

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace

std::string account_text(const GbxmlAccount& account, UnitSystem units) {
  const Shown shown{units};
  std::string out = "made " + counted(account.made) + ", updated " + counted(account.updated) + ", unchanged " +
                    counted(account.unchanged) + " entities\n";
  Table elements({"element", "in the file", "taken"});
  for (const auto& row : account.elements) elements.add({row.element, counted(row.found), counted(row.taken)});
  out += "elements:\n" + elements.text();
  Table drawn({"surfaces of the file", "count", shown.unit(kArea)});
  for (const auto& row : account.drawn) drawn.add({row.type, counted(row.count), shown.number(row.area, kArea)});
  out += drawn.text();
  Table areas({"in the project", "", "count", shown.unit(kArea), shown.unit(kConductance)});
  for (const auto& row : account.areas)
    areas.add({row.kind, row.exposure, counted(row.count), shown.number(row.area, kArea),
               shown.number(row.conductance, kConductance)});
  out += areas.text();
  out += "floor area " + shown.number(account.floor_area, kArea) + " " + shown.unit(kArea) +
         ", conductance to the outdoor air " + shown.number(account.conductance, kConductance) + " " +
         shown.unit(kConductance) + "\n";
  if (!account.left.empty()) out += "left out:\n";
  for (const auto& row : account.left) {
    out += "  " + counted(row.count) + " " + row.element;
    if (row.area > 0) out += ", " + shown.number(row.area, kArea) + " " + shown.unit(kArea);
    out += ": " + row.reason + " (the first on line " + counted(row.line) + ")\n";
  }
  return out;
}

std::string account_json(const GbxmlAccount& account) {
  Json out{{"made", account.made},
           {"updated", account.updated},
           {"unchanged", account.unchanged},
           {"floor_area", account.floor_area},
           {"conductance", account.conductance},
           {"elements", Json::array()},
           {"drawn", Json::array()},
           {"areas", Json::array()},
           {"left", Json::array()},
           {"notes", account.notes}};
  for (const auto& row : account.elements)
    out["elements"].push_back({{"element", row.element}, {"found", row.found}, {"taken", row.taken}});
  for (const auto& row : account.drawn)
    out["drawn"].push_back({{"type", row.type}, {"count", row.count}, {"area", row.area}});
  for (const auto& row : account.areas)
    out["areas"].push_back({{"kind", row.kind},
                            {"exposure", row.exposure},
                            {"count", row.count},
                            {"area", row.area},
                            {"conductance", row.conductance}});
  for (const auto& row : account.left)
    out["left"].push_back({{"element", row.element},
                           {"reason", row.reason},
                           {"count", row.count},
                           {"area", row.area},
                           {"line", row.line}});
  return json_text(out, 1) + "\n";
}

}  // namespace tarn
