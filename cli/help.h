// The help of the command line, from the tables of verbs, options and members.
#pragma once

#include <string>

#include "cli/words.h"

namespace tarn::cli {

/// All groups by subject, on one screen.
std::string overview();
/// Of what the words name: nothing, a group, a group and a verb. Error `UsageError` for another word.
std::string help_for(const std::vector<std::string>& words);

/// "tarn windows set N Property=value ...".
std::string command_line(const Group& group, const Verb& verb);
/// The options that a verb takes.
std::vector<const OptionRow*> options_of(const Verb& verb);
/// The properties that can be set, with units, allowed values and codes; empty for a verb that sets none.
std::string property_table(const Group& group, const Verb& verb);

}  // namespace tarn::cli
