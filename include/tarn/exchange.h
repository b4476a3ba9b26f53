// A project as JSON text and back: every stored field once, under its name, entities in index order, so that the same
// project gives the same bytes. docs/exchange.md describes the text.
#pragma once

#include <set>
#include <span>
#include <string>
#include <string_view>

#include "tarn/base/progress.h"
#include "tarn/project.h"

namespace tarn {

/// The project's text. `groups` names the kinds to take ("windows"); none takes all, preferences and report options
/// too.
std::string export_project(COM_ProjectData& project, const std::set<std::string>& groups, const Progress& progress);

/// The text of some entities of one kind alone, which an import takes as well. Error `InvalidCall` for a group that is
/// none.
std::string export_entities(COM_ProjectData& project, std::string_view group, std::span<const int16_t> indexes);

/// The text of preferences or report options alone, which an import takes as well; without them where there is no file.
enum class Settings { Preferences, ReportOptions };
std::string export_settings(COM_ProjectData& project, Settings which);

/// What an import brought in.
struct Imported {
  size_t entities = 0, defaults = 0;  // default records

  size_t all() const { return entities + defaults; }
};

/// Brings a text's entities in, in one transaction. Where the project has no entity of a
/// kind, those of the text keep their indexes and their default record; otherwise they get free indexes. Anything wrong
/// refuses all of it: the error names line, place, what was found and what is allowed.
Imported import_project(COM_ProjectData& project, const std::string& text, const Progress& progress);

}  // namespace tarn
