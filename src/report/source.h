// What the sections of a report read: the project, and how its values are shown.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/measures.h"
#include "report/html.h"
#include "tarn/check.h"
#include "tarn/platform/database.h"
#include "tarn/reflect/members.h"
#include "tarn/staleness.h"
#include "tarn/storage/entity.h"

namespace tarn::report {

struct Source {
  COM_ProjectData& project;
  Measures in;
  Ptr<Database> index;
  std::vector<StaleResult> stale;

  /// Calls `action` with each entity of a group ("walls"), loaded, by index. An entity that cannot be read, or of which
  /// `action` throws, is told in what is returned.
  std::string for_each(std::string_view group, const std::function<void(StoredEntity&)>& action) const;

  /// A warning for each of an entity's results that is stale or was never calculated; nothing where they are up to
  /// date.
  std::string stale_warnings(const StoredEntity& entity) const;
  /// The same of design results that are there.
  std::string stale_design_warning(const StoredEntity& entity) const;
};

/// Of a group's own class.
template <typename C>
C& as(StoredEntity& entity) {
  return dynamic_cast<C&>(entity);
}

/// "Space 1" and the name, as a heading.
std::string heading_of(const StoredEntity& entity);

/// Why a result is stale: the edit, when, and the way to it.
std::string reason_of(const StaleResult& result);

// ---- values by the members tables

/// One element: a code by its text, a reference by the name of what it refers to, a number in the units of the report.
/// Empty for a reference to nothing.
std::string value_text(const Source& source, const Object& object, const Member& member, Subscripts at = {});
std::string value_text(const Source& source, const Object& object, std::string_view property, Subscripts at = {});
/// The same with its unit, for a column in which the units of rows differ.
std::string measure_text(const Source& source, const Object& object, std::string_view property, Subscripts at = {});
/// A column of a property: its title, and the unit of the members table.
html::Table::Head head_of(const Source& source, const ClassInfo& info, std::string_view property,
                          const std::string& title);

/// All fields of an object without its parts, as a table of property, value and unit; long arrays by their range.
std::string fields_table(const Source& source, const Object& object, const std::string& caption);

}  // namespace tarn::report
