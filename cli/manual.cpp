#include "cli/manual.h"

#include "cli/help.h"
#include "cli/topics.h"

namespace tarn::cli {
namespace {

/// A text as the manual's language spells it: no hyphens, no line that looks like a command.
std::string roff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const bool begins = out.empty() || out.back() == '\n';
    if (begins && (c == '.' || c == '\'')) out += "\\&";
    if (c == '-')
      out += "\\-";
    else if (c == '\\')
      out += "\\e";
    else
      out += c;
  }
  return out;
}

std::string heading(std::string_view title) { return ".SH " + std::string(title) + "\n"; }

/// Lines that stay as they are.
std::string verbatim(std::string_view text) {
  return ".nf\n" + roff(text) + (text.ends_with('\n') ? "" : "\n") + ".fi\n";
}

std::string term(std::string_view what, std::string_view told) {
  return ".TP\n.B " + roff(what) + "\n" + roff(told) + "\n";
}

std::string option(const OptionRow& row) {
  std::string spelling(row.spelling);
  if (const size_t comma = spelling.find(','); comma != std::string::npos) spelling.insert(comma + 1, " ");
  return term(spelling + (row.value.empty() ? "" : " " + std::string(row.value)), row.help);
}

std::string ending(std::string_view also) {
  return heading("EXIT STATUS") + "0 clean, 1 findings, 2 usage, 3 input or output, 4 internal\n" +
         heading("SEE ALSO") + std::string(also) + "\n";
}

std::string page_of(const Group& group) {
  const std::string name = "tarn-" + group.name;
  std::string out = ".TH " + roff(name) + " 1\n" + heading("NAME") + roff(name) + " \\- " + roff(group.help) + "\n" +
                    heading("SYNOPSIS");
  for (const Verb& verb : group.verbs) out += ".B " + roff(command_line(group, verb)) + "\n.br\n";
  out += heading("DESCRIPTION");
  if (group.names_entities()) out += roff(kNameRule) + "\n";
  std::string properties;
  for (const Verb& verb : group.verbs) {
    if (group.names_verbs()) out += ".SS " + roff(verb.name) + "\n" + roff(verb.help) + ".\n";
    for (const OptionRow* row : options_of(verb)) {
      if (row->bit != 0) out += option(*row);
    }
    if (properties.empty()) properties = property_table(group, verb);
    std::string examples;
    for (const std::string& example : verb.examples) examples += "    " + example + "\n";
    if (!examples.empty()) out += ".PP\n" + verbatim(examples);
  }
  if (!properties.empty()) out += heading("PROPERTIES") + verbatim(properties);
  return out + ending(".BR tarn (1)");
}

std::string first_page() {
  std::string out = ".TH TARN 1\n" + heading("NAME") + "tarn \\- the data layer of an HVAC design program\n" +
                    heading("SYNOPSIS") + ".B tarn\n[\\-p FOLDER | \\-p FOLDER/PREFIX] GROUP VERB ... [OPTIONS]\n" +
                    heading("OPTIONS");
  for (const OptionRow& row : option_rows()) out += option(row);
  out += heading("GROUPS");
  for (const Group& group : all_groups()) out += term(group.name, group.help + "; see tarn-" + group.name + "(1)");
  for (const Topic& topic : topics()) {
    std::string title(topic.name);
    for (char& c : title) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    out += heading(title) + verbatim(topic.text);
  }
  return out + ending(".BR tarn\\-project (1), .BR tarn\\-help (1)");
}

}  // namespace

std::vector<ManualPage> manual_pages() {
  std::vector<ManualPage> pages{{"tarn.1", first_page()}};
  for (const Group& group : all_groups()) pages.push_back({"tarn-" + group.name + ".1", page_of(group)});
  return pages;
}

}  // namespace tarn::cli
