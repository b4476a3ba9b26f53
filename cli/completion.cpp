#include "cli/completion.h"

#include <algorithm>
#include <iostream>

#include "base/nearest.h"
#include "cli/methods.h"
#include "cli/properties.h"
#include "cli/topics.h"
#include "cli/words.h"
#include "envelope/materials.h"
#include "project/enumerations.h"
#include "storage/kind.h"
#include "tarn/class_list.h"
#include "tarn/preferences.h"

namespace tarn {

extern const char* const bash_completion;
extern const char* const zsh_completion;
extern const char* const fish_completion;

}  // namespace tarn

namespace tarn::cli {
namespace {

/// The words before the last one, by what they are.
struct Line {
  Call call;                        // of the options so far
  std::vector<std::string> words;   // without them
  const OptionRow* open = nullptr;  // the option whose value the last word is
};

const OptionRow* option_named(std::string_view word) {
  for (const OptionRow& row : option_rows()) {
    if (word == row.name() || word == row.spelling.substr(0, row.spelling.find(','))) return &row;
  }
  return nullptr;
}

Line parsed(const std::vector<std::string>& words) {
  Line line;
  for (size_t i = 0; i + 1 < words.size(); ++i) {
    const OptionRow* row = option_named(words[i]);
    if (!row) {
      if (!words[i].starts_with("-")) line.words.push_back(words[i]);
    } else if (row->text && i + 2 == words.size()) {
      line.open = row;
    } else if (row->text) {
      line.call.*row->text = words[++i];
    }
  }
  return line;
}

std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> pieces(1);
  for (const char c : text) {
    if (c == at)
      pieces.emplace_back();
    else
      pieces.back() += c;
  }
  return pieces;
}

class Finder {
 public:
  explicit Finder(std::string word) : word_(std::move(word)) {}

  void add(std::string_view word, std::string_view told = {}) {
    if (word.size() < word_.size() || !same_word(word.substr(0, word_.size()), word_)) return;
    const std::string line = std::string(word) + (told.empty() ? "" : "\t" + std::string(told));
    if (std::ranges::find(found_, line) == found_.end()) found_.push_back(line);
  }
  /// The properties to set, part by part or those of one part alone; after "=" the codes.
  void add_properties(const EntityKind& kind, const std::string& part) {
    const std::string before = part.empty() ? "" : part + "(1).";
    word_.insert(0, before);
    const auto sample = blank_entity(kind);
    for_each_settable(*sample, [&](const Settable& each) {
      if (word_.find('=') == std::string::npos)
        add_path(each);
      else
        add_values(each);
    });
    for (std::string& line : found_) line.erase(0, before.size());  // as it was typed
  }
  void add_names(const Call& call, const EntityKind& kind) {
    COM_ProjectData project;
    const auto database = open_project(project, call, Use::Reading);
    auto rows = database->OpenRecordset(std::string(make_entity(project, kind)->kind().all_rows));
    for (; !rows.AtEof(); rows.MoveNext()) {
      const std::string number = std::to_string(rows.Fields("nIndex").integer());
      add(rows.Fields("szName").text(), number);
      if (!word_.empty()) add(number, rows.Fields("szName").text());
    }
  }
  /// Properties for a list, after the last one where there are several.
  void add_columns(const EntityKind& kind) {
    const size_t comma = word_.rfind(',');
    const std::string before = comma == std::string::npos ? "" : word_.substr(0, comma + 1);
    for_each_settable(*blank_entity(kind), [&](const Settable& each) {
      if (each.steps.empty()) add(before + std::string(each.member.name) + (each.member.indexed() ? "(" : ""));
    });
  }
  std::vector<std::string> found() { return std::move(found_); }

 private:
  /// How the path to a property goes on where the word ends: "Layer(", "Layer(3).Thickness=".
  void add_path(const Settable& each) {
    const auto typed = split(word_, '.');
    std::string path;
    for (size_t i = 0; i + 1 < typed.size(); ++i) {
      if (i >= each.steps.size() || !same_word(typed[i].substr(0, typed[i].find('(')), each.steps[i].part->name))
        return;
      path += typed[i] + ".";
    }
    if (typed.size() <= each.steps.size()) {
      const OwnedPart& part = *each.steps[typed.size() - 1].part;
      add(path + std::string(part.name) + (part.numbered ? "(" : "."));
    } else {
      add(path + std::string(each.member.name) + (each.member.indexed() ? "(" : "="), each.member.unit);
    }
  }
  void add_values(const Settable& each) {
    const std::string path = word_.substr(0, word_.find('=') + 1);
    const auto typed = split(path.substr(0, path.size() - 1), '.');
    if (typed.size() != each.steps.size() + 1) return;
    for (size_t i = 0; i < typed.size(); ++i) {
      const std::string_view name = i < each.steps.size() ? each.steps[i].part->name : each.member.name;
      if (!same_word(typed[i].substr(0, typed[i].find('(')), name)) return;
    }
    for (const Label& label : each.member.labels_of(each.owner)) add(path + std::string(label.name), label.text);
    if (each.member.type == ValueType::Boolean) {
      add(path + "true");
      add(path + "false");
    }
  }

  std::string word_;
  std::vector<std::string> found_;
};

/// What the value of an option can be; none for a file.
void add_option_values(Finder& finder, const OptionRow& option, const Group* group) {
  if (option.value == "COLUMNS" || option.value == "CONDITION") {
    if (group && group->kind) finder.add_columns(*group->kind);
    return;
  }
  if (option.value == "TYPE" && group && group->kind && group->kind->types) {
    for (const std::string_view type : group->kind->types()) finder.add(type);
  }
  if (option.value != "MATERIAL") return;
  for (const Material& material : materials()) finder.add(material.name);
}

/// What a word of a verb's usage can be; none for a file.
void add_words(Finder& finder, const Line& line, const Group& group, const Verb& verb, const std::string& meant) {
  if (meant == "N" && group.kind) {
    Call of = line.call;
    if (verb.options & kFrom) {  // an entity of the other project; nothing is known of it before it is named
      if (of.from.empty()) return;
      of.project = of.from;
    }
    return finder.add_names(of, *group.kind);
  }
  if (meant == "Property=value" && group.kind) return finder.add_properties(*group.kind, verb.part);
  if (meant == "METHOD") {
    for (const std::string_view name : plain_methods(group.kind->create()->info())) finder.add(name);
  } else if (meant == "Preference=value") {
    for (const Member& member : PRF_ProjectPrefs().info().members) {
      if (member.stored()) finder.add(std::string(member.name) + "=");
    }
  } else if (meant == "KIND") {
    for (const EntityKind& kind : entity_kinds()) finder.add(kind.group);
  } else if (meant == "CLASS") {
    for (const ClassEntry& entry : class_list()) finder.add(entry.info->name);
    for (const Enumeration& each : enumeration_list()) finder.add(each.name);
  } else if (meant == "TOPIC") {
    for (const Topic& topic : topics()) finder.add(topic.name, topic.title);
    for (const Group& each : all_groups()) finder.add(each.name, each.help);
  } else if (meant.find('|') != std::string::npos) {
    for (const std::string& each : split(meant, '|')) finder.add(each);
  }
}

void add_options(Finder& finder, const Verb* verb) {
  for (const OptionRow& row : option_rows()) {
    if (row.bit == 0 || (verb && (verb->options & row.bit))) finder.add(row.name(), row.help);
  }
}

}  // namespace

std::vector<std::string> completions(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  const Line line = parsed(words);
  Finder finder(words.back());
  const bool option = words.back().starts_with("-");
  const auto& given = line.words;
  if (line.open) {
    add_option_values(finder, *line.open, given.empty() ? nullptr : &group_named(given[0]));
  } else if (given.empty() && !option) {
    for (const Group& group : all_groups()) finder.add(group.name, group.help);
  } else if (given.empty()) {
    add_options(finder, nullptr);
  } else {
    const Group& group = group_named(given[0]);
    if (group.names_verbs() && given.size() == 1) {
      if (option) add_options(finder, nullptr);
      for (const Verb& verb : group.verbs) finder.add(verb.name, verb.help);
      return finder.found();
    }
    const Verb& verb = group.names_verbs() ? verb_named(group, given[1]) : group.verbs.front();
    const auto usage = verb.words();
    const size_t place = given.size() - (group.names_verbs() ? 2 : 1);
    if (option) {
      add_options(finder, &verb);
    } else if (place < usage.size() && usage[place] != "...") {
      add_words(finder, line, group, verb, usage[place]);
    } else if (!usage.empty() && usage.back() == "...") {
      add_words(finder, line, group, verb, usage[usage.size() - 2]);
    }
  }
  return finder.found();
}

int show_completion(const Call& call) {
  const std::string shell = call.words.empty() ? "" : call.words.front();
  if (shell == "bash")
    std::cout << bash_completion;
  else if (shell == "zsh")
    std::cout << zsh_completion;
  else if (shell == "fish")
    std::cout << fish_completion;
  else
    throw UsageError("For which shell? tarn completion bash, zsh or fish.");
  return kClean;
}

}  // namespace tarn::cli
