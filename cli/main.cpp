// tarn: projects, their entities and their classes from the command line.
// Data go to standard output, messages to standard error; the exit code says how it went.

#include <CLI/CLI.hpp>
#include <iostream>

#include "base/log.h"
#include "base/nearest.h"
#include "cli/command.h"
#include "cli/words.h"

namespace {

using namespace tarn;
using namespace tarn::cli;

class StandardErrorLog final : public Log {
 public:
  void message(std::string_view text) override { std::cerr << "tarn: " << text << '\n'; }
  void error(std::string_view, std::string_view class_name, std::string_view procedure,
             std::string_view detail) override {
    std::cerr << "tarn: " << class_name << ' ' << procedure << ": " << detail << '\n';
  }
};

template <typename Range, typename Name>
void check_word(const std::string& word, const Range& range, Name name, const std::string& what) {
  std::vector<std::string_view> right;
  for (const auto& each : range) right.push_back(name(each));
  if (std::find(right.begin(), right.end(), word) == right.end()) {
    throw UsageError("There is no " + what + " \"" + word + "\"; " + did_you_mean(word, right));
  }
}

void help_text(CLI::App& app, const std::vector<Group>& all) {
  std::string text = "\nGroups and verbs:\n";
  for (const Group& group : all) {
    text += "  " + group.name + "  " + group.help + "\n";
    if (group.name == "describe") continue;
    for (const auto& [verb, help] : group.verbs) text += "    " + verb + " " + help + "\n";
  }
  app.footer(text + "\nExit codes: 0 clean, 1 findings, 2 usage, 3 input or output, 4 internal.");
}

/// Words and options that a verb does not take are mistakes, not decoration.
void check_extras(const Call& call) {
  const auto most = [&]() -> size_t {
    if (call.group == "describe" || call.verb == "list" || call.verb == "info") return 0;
    if (call.group == "project") return call.verb == "new" ? 0 : call.verb == "import" ? 1 : SIZE_MAX;
    if (call.group == "results") return 2;
    return call.group == "weather" || call.verb == "show" || call.verb == "delete" ? 1 : SIZE_MAX;
  }();
  if (call.words.size() > most) throw UsageError("\"" + call.words[most] + "\" is one word too many.");
  if (!call.type.empty() && call.verb != "new") throw UsageError("--type goes with new.");
  if (!call.output.empty() && call.verb != "export" && !(call.group == "weather" && call.verb == "import"))
    throw UsageError("--output goes with project export and weather import.");
  const bool has_picture =
      call.group == "weather" || call.group == "results" || call.group == "walls" || call.group == "roofs";
  if (!call.svg.empty() && !(has_picture && call.verb == "show"))
    throw UsageError("--svg goes with show of weather, results, walls and roofs.");
  if (!call.material.empty() && call.verb != "layer") throw UsageError("--material goes with layer insert.");
  if (!call.svg.empty() && call.group == "results" && call.words.size() > 1)
    throw UsageError("--svg shows an air system; leave the zone out.");
}

/// Files and databases; everything else that fails is a mistake in the call.
bool is_input_output(const Error& error) {
  const auto number = static_cast<ErrorNumber>(error.number());
  return error.number() >= 3000 || number == ErrorNumber::FileNotFound || number == ErrorNumber::DeviceError ||
         number == ErrorNumber::PermissionDenied || number == ErrorNumber::PathNotFound;
}

int dispatch(const Call& call, const std::vector<Group>& all) {
  if (call.group.empty()) throw UsageError("What to do? Give a group and a verb; tarn --help lists them.");
  check_word(
      call.group, all, [](const Group& g) -> std::string_view { return g.name; }, "group");
  const Group& group = *std::find_if(all.begin(), all.end(), [&](const Group& g) { return g.name == call.group; });
  check_extras(call);
  if (call.group == "describe") return run_describe(call);
  if (call.verb.empty()) throw UsageError("What to do with " + call.group + "? tarn --help lists the verbs.");
  check_word(
      call.verb, group.verbs, [](const auto& v) -> std::string_view { return v.first; }, "verb of " + call.group);
  if (call.group == "weather") return run_weather(call);
  if (call.group == "results") return run_results(call);
  return call.group == "project" ? run_project(call) : run_kind(call);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"tarn - the data layer of an HVAC design program", "tarn"};
  Call call;
  std::vector<std::string> words;
  app.add_option("-p,--project", call.project, "the project: FOLDER or FOLDER/PREFIX (default: the current folder)");
  app.add_option("-o,--output", call.output, "the file to write, instead of standard output");
  app.add_option("--type", call.type, "the type of a new air system, chiller or plant: VAV, 10, HOT_WATER, ...");
  app.add_option("--svg", call.svg, "a picture to make of what is shown");
  app.add_option("--material", call.material, "what a new layer is made of; walls layer materials lists them");
  app.add_flag("--json", call.json, "print JSON");
  app.add_option("words", words, "GROUP VERB ...");
  const auto all = all_groups();
  help_text(app, all);
  StandardErrorLog log;
  set_log(&log);
  try {
    app.parse(argc, argv);
    if (!words.empty()) call.group = words[0];
    if (words.size() > 1) call.verb = words[1];
    if (words.size() > 2) call.words.assign(words.begin() + 2, words.end());
    const int code = dispatch(call, all);
    if (!std::cout.flush()) fail(ErrorNumber::DeviceError, "Cannot write the output.");
    return code;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kClean : kUsage;
  } catch (const UsageError& error) {
    std::cerr << "tarn: " << error.what() << '\n';
    return kUsage;
  } catch (const Error& error) {
    std::cerr << "tarn: " << error.what() << '\n';
    return is_input_output(error) ? kInputOutput : kUsage;
  } catch (const std::exception& error) {
    std::cerr << "tarn: internal error: " << error.what() << '\n';
    return kInternal;
  }
}
