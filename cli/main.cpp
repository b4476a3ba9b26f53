// tarn: projects, their entities and their classes from the command line.
// Data go to standard output, messages to standard error; the exit code says how it went.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>

#include "cli/command.h"
#include "cli/completion.h"
#include "cli/help.h"
#include "cli/units.h"
#include "cli/words.h"
#include "tarn/base/log.h"
#include "tarn/platform/workspace.h"

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

/// "weather show and results show": the verbs that take an option; by their names alone where many groups have them.
std::string takers_of(unsigned option) {
  constexpr size_t kMostTold = 6;
  std::vector<std::string> takers, verbs;
  for (const Group& group : all_groups()) {
    for (const Verb& verb : group.verbs) {
      if ((verb.options & option) == 0) continue;
      takers.push_back(group.name + " " + verb.name);
      if (std::ranges::find(verbs, verb.name) == verbs.end()) verbs.push_back(verb.name);
    }
  }
  if (takers.size() > kMostTold) takers = verbs;
  std::string text;
  for (size_t i = 0; i < takers.size(); ++i) text += (i == 0 ? "" : i + 1 < takers.size() ? ", " : " and ") + takers[i];
  return text;
}

/// Words and options that a verb does not take are refused, not ignored.
void check_extras(const Call& call, const Verb& verb) {
  if (call.words.size() > verb.most_words())
    throw UsageError("\"" + call.words[verb.most_words()] + "\" is one word too many.");
  for (const OptionRow& row : option_rows()) {
    const bool given = row.text ? !(call.*row.text).empty() : call.*row.flag;
    if (given && row.bit != 0 && (verb.options & row.bit) == 0)
      throw UsageError(std::string(row.name()) + " goes with " + takers_of(row.bit) + ".");
  }
  if (!call.svg.empty() && call.svg != "-" && !call.svg.ends_with(".svg"))
    throw UsageError("The picture is an SVG; give its file a name that ends in .svg, not " + call.svg + ".");
}

/// Files and databases; everything else that fails is a mistake in the call.
bool is_input_output(const Error& error) {
  const auto number = static_cast<ErrorNumber>(error.number());
  return error.number() >= 3000 || number == ErrorNumber::FileNotFound || number == ErrorNumber::DeviceError ||
         number == ErrorNumber::PermissionDenied || number == ErrorNumber::PathNotFound;
}

/// Runs the verb in a transaction that is rolled back: all of it is tried, and what it would print is printed.
int rehearse(const Verb& verb, const Call& call) {
  const Transaction transaction;
  const int code = verb.run(call);
  std::cout.flush();
  std::cerr << "dry run: this would be done; nothing was changed\n";
  return code;
}

/// Runs the verb that the words name, with the words after it.
int dispatch(Call& call, const std::vector<std::string>& words) {
  if (call.version) {
    std::cout << "tarn " << TARN_VERSION << '\n';
    return kClean;
  }
  if (call.help) {
    std::cout << help_for(words);
    return kClean;
  }
  if (words.empty()) throw UsageError("What to do? Give a group and a verb; tarn --help lists them.");
  call.group = words[0];
  const Group& group = group_named(call.group);
  if (group.names_verbs()) {
    if (words.size() == 1)
      throw UsageError("What to do with " + call.group + "? tarn " + call.group + " --help lists the verbs.");
    call.verb = words[1];
  }
  const Verb& verb = verb_named(group, call.verb);
  call.words.assign(words.begin() + (group.names_verbs() ? 2 : 1), words.end());
  check_extras(call, verb);
  return call.dry_run && (verb.options & kDryRun) ? rehearse(verb, call) : verb.run(call);
}

/// What a shell asks while a line is being typed. A line that cannot be gets no answer.
int complete(const std::vector<std::string>& words) {
  try {
    for (const std::string& line : completions(words)) std::cout << line << '\n';
  } catch (const std::exception&) {
  }
  return kClean;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "__complete") return complete({argv + 2, argv + argc});
  CLI::App app{"tarn", "tarn"};
  app.set_help_flag();
  Call call;
  std::vector<std::string> words;
  for (const OptionRow& row : option_rows()) {
    if (row.text)
      app.add_option(std::string(row.spelling), call.*row.text);
    else
      app.add_flag(std::string(row.spelling), call.*row.flag);
  }
  app.add_option("words", words);
  StandardErrorLog log;
  set_log(&log);
  try {
    app.parse(argc, argv);
    choose_units(call.units);
    const int code = dispatch(call, words);
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
