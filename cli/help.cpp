#include "cli/help.h"

#include <algorithm>
#include <iostream>

#include "base/nearest.h"
#include "cli/describe.h"
#include "cli/properties.h"
#include "cli/topics.h"
#include "cli/units.h"
#include "tarn/preferences.h"

namespace tarn::cli {
namespace {

constexpr size_t kWide = 100;           // columns of a page
constexpr size_t kMostProperties = 60;  // more are told by the classes of the parts

/// Text in lines of the page's width, each after `indent` blanks but the first, which begins at `column`.
std::string wrapped(const std::string& text, size_t indent, size_t column) {
  std::string out;
  size_t begin = 0;
  while (begin < text.size()) {
    const size_t end = std::min(text.find(' ', begin), text.size());
    if (column > indent && column + 1 + end - begin > kWide) {
      out += "\n" + std::string(indent, ' ');
      column = indent;
    } else if (column > indent) {
      out += ' ';
      ++column;
    }
    out += text.substr(begin, end - begin);
    column += end - begin;
    begin = end + 1;
  }
  return out;
}

using Rows = std::vector<std::pair<std::string, std::string>>;

/// Two columns, the second wrapped.
std::string pairs(const Rows& rows) {
  size_t wide = 0;
  for (const auto& [left, right] : rows) wide = std::max(wide, left.size());
  std::string out;
  for (const auto& [left, right] : rows) {
    const size_t at = wide + 4;
    out += "  " + left + std::string(right.empty() ? 0 : at - 2 - left.size(), ' ') + wrapped(right, at, at) + "\n";
  }
  return out;
}

std::string option_table(const std::vector<const OptionRow*>& options) {
  Rows rows;
  for (const OptionRow* row : options) {
    std::string spelling(row->spelling);
    if (const size_t comma = spelling.find(','); comma != std::string::npos) spelling.insert(comma + 1, " ");
    if (!spelling.starts_with("-") || spelling.starts_with("--")) spelling = "    " + spelling;
    rows.emplace_back(spelling + (row->value.empty() ? "" : " " + std::string(row->value)), row->help);
  }
  return pairs(rows);
}

std::string group_help(const Group& group) {
  Rows rows;
  for (const Verb& verb : group.verbs)
    rows.emplace_back(verb.name + (verb.usage.empty() ? "" : " " + verb.usage), verb.help);
  return "tarn " + group.name + ": " + group.help + "\n\n" + pairs(rows) +
         (group.names_entities() ? "\n" + std::string(kNameRule) + "\n" : "") + "tarn " + group.name +
         " VERB --help has its options, properties and examples.\n";
}

std::string types_of(const EntityKind& kind) {
  std::string names;
  for (const std::string_view type : kind.types()) names += (names.empty() ? "" : ", ") + std::string(type);
  return names;
}

std::string verb_help(const Group& group, const Verb& verb) {
  std::string out = command_line(group, verb) + "\n" + "    " +
                    wrapped(verb.help.empty() ? group.help : verb.help, 4, 4) + "\n\nOptions:\n" +
                    option_table(options_of(verb));
  if (!verb.examples.empty()) out += "\nExamples:\n";
  for (const std::string& example : verb.examples) out += "  " + example + "\n";
  if (verb.options & kType) out += "\nTypes:\n  " + wrapped(types_of(*group.kind), 2, 2) + "\n";
  const std::string properties = property_table(group, verb);
  return out + (properties.empty() ? "" : "\nProperties:\n" + properties);
}

/// A property with type, unit, allowed values and codes.
void add_property(Rows& rows, const Settable& property, const std::string& prefix) {
  std::string told = type_text(property.member);
  if (!property.member.unit.empty()) told += ", " + std::string(shown_unit(property.member.unit));
  if (!property.member.unit_beside.empty()) told += ", unit by " + std::string(property.member.unit_beside);
  if (const std::string allowed = allowed_text(property); !allowed.empty()) told += ", " + allowed;
  rows.emplace_back(prefix + signature(property.member), told);
  for (const std::string& code : code_lines(property)) rows.emplace_back("", code);
}

const Topic* topic_named(const std::string& name) {
  const auto all = topics();
  const auto found = std::ranges::find(all, name, &Topic::name);
  return found == all.end() ? nullptr : &*found;
}

}  // namespace

std::string command_line(const Group& group, const Verb& verb) {
  return "tarn " + group.name + (verb.name.empty() ? "" : " " + verb.name) +
         (verb.usage.empty() ? "" : " " + verb.usage);
}

std::vector<const OptionRow*> options_of(const Verb& verb) {
  std::vector<const OptionRow*> taken;
  for (const OptionRow& row : option_rows()) {
    if ((row.bit == 0 && row.flag != &Call::version) || (row.bit & verb.options)) taken.push_back(&row);
  }
  return taken;
}

std::string overview() {
  Rows subjects;
  for (const Group& group : all_groups()) {
    const auto found = std::ranges::find(subjects, group.subject, &Rows::value_type::first);
    if (found == subjects.end())
      subjects.emplace_back(group.subject, group.name);
    else
      found->second += ", " + group.name;
  }
  std::string names;
  for (const Topic& topic : topics()) names += (names.empty() ? "" : ", ") + std::string(topic.name);
  std::vector<const OptionRow*> options;
  for (const OptionRow& row : option_rows()) {
    if (row.bit == 0) options.push_back(&row);
  }
  return "tarn: the data layer of an HVAC design program\n\n  tarn GROUP VERB ... [OPTIONS]\n\n" + pairs(subjects) +
         "\nThe groups of things that a project has, windows to buildings, share list, show, new, set, clone, delete.\n"
         "  tarn GROUP --help         the verbs of a group\n"
         "  tarn GROUP VERB --help    options, properties with units and codes, examples\n"
         "  tarn help TOPIC           " +
         names + "\n\nOptions:\n" + option_table(options) +
         "\nExit codes: 0 clean, 1 findings, 2 usage, 3 input or output, 4 internal.\n";
}

std::string help_for(const std::vector<std::string>& words) {
  if (words.empty()) return overview();
  const Group& group = group_named(words[0]);
  if (!group.names_verbs()) return verb_help(group, group.verbs.front());
  if (words.size() == 1) return group_help(group);
  return verb_help(group, verb_named(group, words[1]));
}

std::string property_table(const Group& group, const Verb& verb) {
  Rows rows;
  if (verb.usage.find("Preference=value") != std::string::npos) {
    PRF_ProjectPrefs preferences;
    for (const Member& member : preferences.info().members) {
      if (member.stored()) add_property(rows, {{}, preferences, member}, "");
    }
    return pairs(rows);
  }
  if (!group.kind || verb.usage.find("Property=value") == std::string::npos) return {};
  const auto sample = blank_entity(*group.kind);
  std::vector<Settable> all;
  for_each_settable(*sample, [&](const Settable& each) {
    if (verb.part.empty() || (each.steps.size() == 1 && each.steps[0].part->name == verb.part)) all.push_back(each);
  });
  for (const Settable& each : all) {
    const bool told_by_class =
        verb.part.empty() && all.size() > kMostProperties && !each.steps.empty() &&
        !(each.steps.size() == 1 && !each.steps[0].part->numbered && holds_name(each.owner.info()));
    if (!told_by_class) {
      add_property(rows, each, verb.part.empty() ? each.prefix() : "");
      continue;
    }
    rows.emplace_back(each.prefix() + "Property", "tarn describe " + std::string(each.owner.info().name));
    if (rows.size() > 1 && rows.back() == rows[rows.size() - 2]) rows.pop_back();
  }
  return pairs(rows) +
         "An element is set as Property(1)=value or Property(1,2)=value, a part's as Part(1).Property=value.\n";
}

int show_help(const Call& call) {
  if (call.words.size() == 1) {
    if (const Topic* topic = topic_named(call.words[0])) {
      std::cout << topic->name << ": " << topic->title << "\n\n" << topic->text;
      return kClean;
    }
  }
  if (!call.words.empty()) {
    std::vector<std::string_view> known;
    for (const Topic& topic : topics()) known.push_back(topic.name);
    for (const Group& group : all_groups()) known.push_back(group.name);
    if (std::ranges::find(known, call.words[0]) == known.end())
      throw UsageError("There is no help on \"" + call.words[0] + "\"; " + did_you_mean(call.words[0], known));
  }
  std::cout << help_for(call.words);
  return kClean;
}

}  // namespace tarn::cli
