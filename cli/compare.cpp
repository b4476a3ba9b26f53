// diff: what differs between two projects, or a project and an export.
#include "tarn/compare.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "cli/command.h"
#include "cli/units.h"
#include "platform/host.h"
#include "reflect/json.h"

namespace tarn::cli {
namespace {

struct Side {
  COM_ProjectData project;
  std::unique_ptr<Comparable> open;

  Side(const Call& call, const std::string& word) {
    if (std::filesystem::is_regular_file(word)) {
      std::ifstream in(word, std::ios::binary);
      open = comparable_text({std::istreambuf_iterator<char>(in), {}});
      return;
    }
    Call of_side = call;
    of_side.project = word;
    place_project(project, of_side);
    open = comparable_project(project);
  }
};

double tolerance_of(const Call& call) {
  if (call.tolerance.empty()) return CompareOptions().tolerance;
  double tolerance = 0;
  const char* const end = call.tolerance.data() + call.tolerance.size();
  if (std::from_chars(call.tolerance.data(), end, tolerance).ptr != end || !(tolerance >= 0))
    throw UsageError("--tolerance is \"" + call.tolerance + "\"; it is a relative difference, such as 0.001.");
  return tolerance;
}

/// A value in the units that are shown; a real with all digits that tell it from the other side's.
std::string text_of(const Value& value, const std::string& unit) {
  const Json json = to_json(value);
  if (json.is_null()) return "";
  if (json.is_string()) return "\"" + json.get<std::string>() + "\"";
  if (!json.is_number_float() || unit.empty() || shown_unit(unit) == unit) return json_text(json);
  const double in_unit =
      shown_value(json.get<double>(), unit);  // of a number that is stored in 4 bytes, as many digits
  return json_text(std::holds_alternative<float>(value) ? to_json(Value(static_cast<float>(in_unit))) : Json(in_unit));
}

std::string line_of(const Difference& each) {
  const std::string entity = each.kind + (each.name.empty() ? "" : " \"" + each.name + "\"");
  if (each.property.empty())
    return entity + ": in the " + (type_of(each.first) == ValueType::Empty ? "second" : "first") + " alone";
  const auto with_text = [&](const Value& value, const std::string& text) {
    return text_of(value, each.unit) + (text.empty() ? "" : " " + text);
  };
  const std::string unit(shown_unit(each.unit)), first = with_text(each.first, each.first_text),
                                                 second = with_text(each.second, each.second_text);
  return entity + " " + each.property + ": " + (first.empty() ? "none" : first) + " -> " +
         (second.empty() ? "none" : second) + (unit.empty() ? "" : " " + unit);
}

}  // namespace

int compare_two(const Call& call) {
  if (call.words.size() != 2)
    throw UsageError("Which two? tarn diff FIRST SECOND, each FOLDER, FOLDER/PREFIX or an exported file.");
  host().database = [](const std::string& path) { return Database::open(path, Database::Access::ReadOnly); };
  const Side first(call, call.words[0]), second(call, call.words[1]);
  const auto differences = compare(*first.open, *second.open, {tolerance_of(call)});
  if (call.json) {
    std::cout << differences_json(differences) << '\n';
  } else {
    for (const Difference& each : differences) std::cout << line_of(each) << '\n';
    if (differences.empty()) std::cout << "no difference\n";
  }
  return differences.empty() ? kClean : kFindings;
}

}  // namespace tarn::cli
