// The files of a project's folder: those that a crash left, files of entities without a row, results of others.
#include <algorithm>
#include <charconv>
#include <filesystem>

#include "check/inspection.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "storage/file_names.h"
#include "tarn/air_system_design.h"

namespace tarn {
namespace {

constexpr std::string_view kIndexSuffix = "INX.MDB";

std::string folder_of(const COM_ProjectData& project) { return host().directory_form(project.WorkPath()); }

/// The index in "JOBA0F.DAT" by what stands before it; 0 for another name.
int32_t index_in(const std::string& name, const std::string& prefix) {
  constexpr std::string_view kEnding = ".DAT";
  int32_t index = 0;
  if (!name.starts_with(prefix) || name.size() <= prefix.size() + kEnding.size()) return 0;
  std::from_chars(name.data() + prefix.size(), name.data() + name.size() - kEnding.size(), index, 16);
  const bool own = index > 0 && index <= INT16_MAX && object_file_name(prefix, index) == name;
  return own ? index : 0;
}

bool is_replacement(const std::string& name) {
  const size_t at = name.rfind("-new");
  if (at == std::string::npos || !std::string_view(name).substr(0, at).ends_with(".DAT")) return false;
  return name.find_first_not_of("0123456789", at + 4) == std::string::npos;
}

bool is_unfinished_index(const std::string& name, const std::string& index) {
  if (!name.starts_with(index)) return false;
  const std::string rest = name.substr(index.size());
  return rest == "-new" || rest == "-new-journal" || rest.starts_with("-rebuilt");
}

void inspect_leftovers(Inspection& on, const std::vector<std::string>& names) {
  std::set<std::string> wanted;
  if (!on.database.OpenRecordset("SELECT name FROM sqlite_master WHERE name = 'PendingWrites'").AtEof()) {
    auto rows = on.database.OpenRecordset("SELECT szReplacement FROM PendingWrites");
    for (; !rows.AtEof(); rows.MoveNext()) wanted.insert(rows.Fields("szReplacement").text());
  }
  const std::string index = on.file_name(on.project.IndexDBName()), open = on.file_name(on.database.Name());
  for (const std::string& name : names) {
    if (wanted.contains(name) || (open != index && name.starts_with(open)) ||
        !(is_replacement(name) || is_unfinished_index(name, index)))
      continue;
    CheckFinding told{.severity = Severity::Warning, .property = name};
    told.what = "A program that died left this file before its save was complete; nothing reads it.";
    told.remedy = "Repair removes it.";
    on.add(told, [path = folder_of(on.project) + name] { files().remove(path, nullptr); });
  }
}

void tell_file_without_row(Inspection& on, InspectedKind& kind, int16_t index, const std::string& name) {
  CheckFinding told = on.of(kind, index, name);
  told.what = "The file belongs to no row of " + kind.table() + ".";
  try {
    kind.entity->read_stored(index);
    told.name = kind.entity->stored_name();
  } catch (const Error& error) {
    told.what += " It cannot be read either: " + error.description();
    told.remedy = "Remove the file, or restore it from a copy of the project.";
    return on.add(told);
  }
  told.remedy = "Repair gives it a row, under another name if its own is taken.";
  on.add(told, [&kind, index] { restore_row(kind, index); });
}

void inspect_owners(Inspection& on, const std::vector<std::string>& names) {
  for (InspectedKind& kind : on.kinds) {
    if (kind.row.letter == 0) continue;
    const std::set<int16_t> with_row = [&] {
      std::set<int16_t> all;
      auto rows = on.database.OpenRecordset("SELECT nIndex FROM " + kind.table() + " WHERE nIndex BETWEEN 1 AND " +
                                            std::to_string(INT16_MAX));
      for (; !rows.AtEof(); rows.MoveNext()) all.insert(static_cast<int16_t>(rows.Fields("nIndex").integer()));
      return all;
    }();
    const std::string results = kind.row.results_letter ? on.project.FilePrefix + kind.row.results_letter : "";
    for (const std::string& name : names) {
      const int32_t own = index_in(name, on.project.FilePrefix + kind.row.letter);
      const int32_t of = results.empty() ? 0 : index_in(name, results);
      if (own > 0 && !with_row.contains(static_cast<int16_t>(own)))
        tell_file_without_row(on, kind, static_cast<int16_t>(own), name);
      if (of == 0 || with_row.contains(static_cast<int16_t>(of)) ||
          std::ranges::find(names, object_file_name(on.project.FilePrefix + kind.row.letter, of)) != names.end())
        continue;
      CheckFinding told{.severity = Severity::Warning, .kind = kind.word(), .index = of, .property = name};
      told.what = "The file has results of an entity that is not there.";
      told.remedy = "Repair removes it; the copy keeps it.";
      on.add(told, [path = folder_of(on.project) + name, database = kind.entity->GetDBHandle()] {
        files().remove(path, database);
      });
    }
  }
}

}  // namespace

std::vector<std::string> project_files(const COM_ProjectData& project) {
  std::vector<std::string> names, others;
  std::error_code failed;
  for (const auto& entry : std::filesystem::directory_iterator(folder_of(project), failed)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(project.FilePrefix) || !entry.is_regular_file(failed)) continue;
    names.push_back(name);
    const size_t prefix = name.size() - std::min(name.size(), kIndexSuffix.size());
    if (name.ends_with(kIndexSuffix) && prefix > project.FilePrefix.size()) others.push_back(name.substr(0, prefix));
  }
  // Another project of the folder may have a longer prefix that begins with this one's.
  std::erase_if(names, [&](const std::string& name) {
    return std::ranges::any_of(others, [&](const std::string& other) { return name.starts_with(other); });
  });
  std::ranges::sort(names);
  return names;
}

namespace {

/// Those that are still there in the open transaction.
std::vector<std::string> present_files(const COM_ProjectData& project) {
  std::vector<std::string> names = project_files(project);
  std::erase_if(names, [&](const std::string& name) { return !files().exists(folder_of(project) + name); });
  return names;
}

}  // namespace

std::vector<int16_t> stored_indexes(const Inspection& on, const InspectedKind& kind) {
  std::vector<int16_t> all;
  const EntityFile& file = kind.entity->file();
  if (file.one_for_each()) {
    for (const std::string& name : present_files(on.project)) {
      if (const int32_t index = index_in(name, on.project.FilePrefix + kind.row.letter); index > 0)
        all.push_back(static_cast<int16_t>(index));
    }
    return all;
  }
  const std::string path = file.path_for(0);
  const uint64_t size = files().exists(path) ? files().size(path) : 0, record = size_of(file.blocks());
  const auto count = static_cast<int32_t>(std::min<uint64_t>((size + record - 1) / record, INT16_MAX + 1));
  for (int32_t index = 1; index < count; ++index) {
    if (has_record(kind, index)) all.push_back(static_cast<int16_t>(index));
  }
  return all;
}

void inspect_files(Inspection& on) {
  const std::vector<std::string> names = present_files(on.project);
  inspect_leftovers(on, names);
  inspect_owners(on, names);
}

namespace {

/// Why the results of the system that was read cannot be used; empty where they can.
std::string fault_of_results(ADL_AirSystemDesign& design, const Ptr<StoredEntity>& system, int16_t index) {
  try {
    system->read_stored(index);
    design.SetAirSystem(std::dynamic_pointer_cast<AS_AirSystem>(system));
    design.Load();
  } catch (const Error& error) {
    return "The design results are not this system's: " + error.description();
  }
  std::string place;
  for (ResultBlock* block : design.blocks()) {
    if (place.empty()) place = number_that_is_none(*block);
    for (const auto& [name, inner] : block->rest()) {
      if (place.empty()) place = number_that_is_none(*inner);
    }
  }
  return place.empty() ? "" : "The design results hold a value that is no number: " + place + ".";
}

}  // namespace

void inspect_results(Inspection& on) {
  for (InspectedKind& kind : on.kinds) {
    if (kind.row.results_letter == 0) continue;
    for (const auto& [index, unused] : kind.uses) {
      const auto design = on.project.NewAirSystemDesign();
      const std::string path = design->file_of(static_cast<int16_t>(index));
      if (path.empty() || !files().exists(path)) continue;
      CheckFinding told = on.of(kind, index, on.file_name(path));
      told.what = fault_of_results(*design, kind.entity, static_cast<int16_t>(index));
      if (told.what.empty()) continue;
      told.remedy = "Repair removes the file, which the copy keeps, and marks the system to be sized again.";
      on.add(told, [&kind, index = static_cast<int16_t>(index), path] {
        files().remove(path, kind.entity->GetDBHandle());
        mark_stale(kind, index);
      });
    }
  }
}

}  // namespace tarn
