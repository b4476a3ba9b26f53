// tarn: projects, their entities and their classes from the command line.
// Data go to standard output, messages to standard error; the exit code says how it went.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "base/nearest.h"
#include "cli/command.h"
#include "cli/units.h"
#include "cli/words.h"
#include "tarn/base/log.h"

namespace {

using namespace tarn;
using namespace tarn::cli;

class StandardErrorLog final : public Log {
 public:
  ~StandardErrorLog() override { finish(); }
  void message(std::string_view text) override { say(std::string(text)); }
  void error(std::string_view, std::string_view class_name, std::string_view procedure,
             std::string_view detail) override {
    say(std::string(class_name) + " " + std::string(procedure) + ": " + std::string(detail));
  }

 private:
  /// A line once, and how often it came again.
  void say(const std::string& line) {
    if (line == last_) {
      ++again_;
      return;
    }
    finish();
    std::cerr << "tarn: " << line << '\n';
    last_ = line;
  }
  void finish() {
    if (again_ > 0) std::cerr << "tarn: the same " << again_ << (again_ == 1 ? " time more\n" : " times more\n");
    again_ = 0;
  }
  std::string last_;
  int again_ = 0;
};

/// The row of a table that has the name. Error `UsageError` names the nearest.
template <typename Row>
const Row& row_of(const std::vector<Row>& rows, const std::string& name, const std::string& what) {
  std::vector<std::string_view> names;
  for (const Row& row : rows) {
    if (row.name == name) return row;
    names.push_back(row.name);
  }
  throw UsageError("There is no " + what + " \"" + name + "\"; " + did_you_mean(name, names));
}

void help_text(CLI::App& app, const std::vector<Group>& all) {
  std::string text = "\nGroups and verbs:\n";
  for (const Group& group : all) {
    text += "  " + group.name + "  " + group.help + "\n";
    if (!group.names_verbs()) continue;
    for (const Verb& verb : group.verbs) text += "    " + verb.name + " " + verb.help + "\n";
  }
  app.footer(text + "\nExit codes: 0 clean, 1 findings, 2 usage, 3 input or output, 4 internal.");
}

/// "weather show and results show": the verbs that take an option.
std::string takers_of(Option option, const std::vector<Group>& all) {
  std::vector<std::string> takers;
  for (const Group& group : all) {
    for (const Verb& verb : group.verbs) {
      if (verb.options & option) takers.push_back(group.name + " " + verb.name);
    }
  }
  std::string text;
  for (size_t i = 0; i < takers.size(); ++i) text += (i == 0 ? "" : i + 1 < takers.size() ? ", " : " and ") + takers[i];
  return text;
}

/// Words and options that a verb does not take are refused, not ignored.
void check_extras(const Call& call, const Verb& verb, const std::vector<Group>& all) {
  if (call.words.size() > verb.most_words)
    throw UsageError("\"" + call.words[verb.most_words] + "\" is one word too many.");
  const auto check = [&](const std::string& given, Option option, const std::string& name) {
    if (!given.empty() && (verb.options & option) == 0)
      throw UsageError(name + " goes with " + takers_of(option, all) + ".");
  };
  check(call.type, kType, "--type");
  check(call.output, kOutput, "--output");
  check(call.svg, kSvg, "--svg");
  check(call.material, kMaterial, "--material");
  check(call.dry_run ? "given" : "", kDryRun, "--dry-run");
  check(call.rebuild_index ? "given" : "", kRebuildIndex, "--rebuild-index");
}

/// Files and databases; everything else that fails is a mistake in the call.
bool is_input_output(const Error& error) {
  const auto number = static_cast<ErrorNumber>(error.number());
  return error.number() >= 3000 || number == ErrorNumber::FileNotFound || number == ErrorNumber::DeviceError ||
         number == ErrorNumber::PermissionDenied || number == ErrorNumber::PathNotFound;
}

/// Runs the verb that the words name, with the words after it.
int dispatch(Call& call, const std::vector<std::string>& words, const std::vector<Group>& all) {
  if (words.empty()) throw UsageError("What to do? Give a group and a verb; tarn --help lists them.");
  call.group = words[0];
  const Group& group = row_of(all, call.group, "group");
  if (group.names_verbs()) {
    if (words.size() == 1) throw UsageError("What to do with " + call.group + "? tarn --help lists the verbs.");
    call.verb = words[1];
  }
  const Verb& verb = row_of(group.verbs, call.verb, "verb of " + call.group);
  call.words.assign(words.begin() + (group.names_verbs() ? 2 : 1), words.end());
  check_extras(call, verb, all);
  return verb.run(call);
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
  app.add_flag("--dry-run", call.dry_run, "tell what a repair would do, and change nothing");
  app.add_flag("--rebuild-index", call.rebuild_index, "make the index database anew from the record files");
  app.add_option("--units", call.units,
                 "ip or si: of what is shown, and of numbers without a unit; JSON has the units of the files");
  app.add_flag("--json", call.json, "print JSON");
  app.add_option("words", words, "GROUP VERB ...");
  const auto all = all_groups();
  help_text(app, all);
  StandardErrorLog log;
  set_log(&log);
  try {
    app.parse(argc, argv);
    choose_units(call.units);
    const int code = dispatch(call, words, all);
    if (!std::cout.flush()) fail(ErrorNumber::DeviceError, "Cannot write the output.");
    return code;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kClean : kUsage;
  } catch (const UsageError& error) {
    std::cerr << "tarn: " << shortened(error.what()) << '\n';
    return kUsage;
  } catch (const Error& error) {
    std::cerr << "tarn: " << error.what() << '\n';
    return is_input_output(error) ? kInputOutput : kUsage;
  } catch (const std::filesystem::filesystem_error& error) {
    std::cerr << "tarn: " << error.path1().string() << " cannot be used: " << error.code().message() << ".\n";
    return kInputOutput;
  } catch (const std::exception& error) {
    std::cerr << "tarn: internal error: " << error.what() << '\n';
    return kInternal;
  }
}
