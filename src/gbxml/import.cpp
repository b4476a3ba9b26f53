#include <algorithm>
#include <set>

#include "gbxml/site.h"
#include "gbxml/source_text.h"
#include "gbxml/systems.h"
#include "platform/file_store.h"
#include "tarn/gbxml.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

constexpr uint64_t kLargestFile = 1U << 30;
constexpr size_t kPiece = 1U << 17;  // of a file; small enough to stay in the processor's cache

std::string read_file(const std::string& path) {
  const auto file = host().files->open(path, OpenMode::Read);
  if (!file) fail(ErrorNumber::FileNotFound, "Cannot read " + path + ".");
  const uint64_t size = file->size();
  if (size > kLargestFile)
    fail(ErrorNumber::UnknownFormat,
         "the file has " + std::to_string(size >> 20) + " MB; the largest that is read has 1024");
  std::string bytes, piece(kPiece, '\0');
  bytes.reserve(size);
  while (bytes.size() < size) {
    const size_t read = file->read(bytes.size(), std::as_writable_bytes(std::span(piece)));
    if (read == 0) break;
    bytes.append(piece, 0, read);
  }
  return bytes;
}

/// What tells one drawing from another: drawing programs number the elements of each from the start.
std::string drawing_of(const GbxmlDocument& document) {
  for (const Element part : document.first("DocumentHistory").children()) {
    const std::string_view model = child_text(part, "CADModelId");
    if (!model.empty()) return std::string(model);
    const std::string_view guid = child_text(child(part, "ProjectEntity"), "GUID");
    if (!guid.empty()) return std::string(guid);
  }
  return std::string(attribute(document.campus(), "id"));
}

/// Kinds of elements whose readers count them, and those that only hold others or say how the file came to be.
bool is_counted(std::string_view name) {
  constexpr std::string_view kCounted[]{"Surface",   "Space",   "Construction",      "WindowType",   "Schedule", "Zone",
                                        "AirSystem", "AirLoop", "ZoneHVACEquipment", "HydronicLoop", "Location"};
  return std::ranges::find(kCounted, name) != std::end(kCounted);
}

/// Elements that come in with what refers to them.
bool is_part(std::string_view name) {
  constexpr std::string_view kParts[]{"Layer", "Material", "WeekSchedule", "DaySchedule", "LightingSystem", "IntEquip"};
  return std::ranges::find(kParts, name) != std::end(kParts);
}

void count_the_rest(const GbxmlDocument& document, Tally& tally) {
  constexpr std::string_view kFrame[]{"Campus", "Building", "DocumentHistory", "Name", "Description"};
  for (const std::string_view name : document.names()) {
    if (is_counted(name) || std::ranges::find(kFrame, name) != std::end(kFrame)) continue;
    for (const Element element : document.all(name)) {
      tally.found(name);
      if (is_part(name))
        tally.taken(name);
      else if (name != "Weather")
        tally.left(document, element, name, "a project has no place for it");
    }
  }
  for (const Element twin : document.doubles())
    tally.note(document, twin, "another element of its kind has the same id; the first counts");
}

void note_missing(const KnownIds& ids, Tally& tally) {
  const size_t spaces = ids.not_met("SpaceIndex");
  if (spaces > 0)
    tally.note(std::to_string(spaces) + (spaces == 1 ? " space that was" : " spaces that were") + " imported before " +
               (spaces == 1 ? "is" : "are") + " no longer in the file, and stay in the project");
}

GbxmlAccount import_document(COM_ProjectData& project, const GbxmlDocument& document, const Progress& progress) {
  Drawing drawing(document);
  read_constructions(drawing);
  read_spaces(drawing);
  read_surfaces(drawing);
  const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
  Transaction transaction;
  KnownIds ids(project, drawing_of(document));
  Filling filling(project, drawing, ids);
  Library library(filling);
  Schedules schedules(filling);
  Spaces spaces(filling, library, schedules);
  fill_site(filling);
  schedules.fill_all();
  size_t done = 0;
  spaces.fill_all([&] {
    if (progress) progress(++done, drawing.spaces.size());
  });
  Systems(filling, spaces).fill_all();
  library.count_used();
  count_the_rest(document, drawing.tally);
  note_missing(ids, drawing.tally);
  ids.save();
  transaction.commit();
  drawing.tally.finish();
  return std::move(drawing.tally.account);
}

}  // namespace

GbxmlAccount import_gbxml(COM_ProjectData& project, const std::string& path, const Progress& progress) {
  try {
    return import_document(project, GbxmlDocument(xml_text(read_file(path))), progress);
  } catch (const Error& error) {
    if (error.number() != static_cast<int>(ErrorNumber::UnknownFormat)) throw;
    throw Error(error.number(), error.source(), path + ", " + error.what() + ". Nothing was imported.");
  }
}

}  // namespace tarn
