// copy: an entity of another project comes into this one, with all that it uses.
#include "tarn/entity_copy.h"

#include <iostream>

#include "cli/entities.h"
#include "platform/host.h"
#include "storage/kind.h"

namespace tarn::cli {
namespace {

std::string line_of(const EntityCopy& copy) {
  if (copy.reused) return copy.from.text() + " is there already as " + copy.to.text();
  return copy.from.text() + " copied as " + copy.to.text() +
         (copy.to.name == copy.from.name || copy.from.name.empty() ? "" : ", as another one has its name");
}

}  // namespace

int kind_copy(const Call& call) {
  if (call.words.empty() || call.from.empty())
    throw UsageError("Which one, of which project? tarn " + call.group + " copy N --from FOLDER or FOLDER/PREFIX");
  Opened on(call, Use::Writing);
  Call of_other = call;
  of_other.project = call.from;
  COM_ProjectData other;
  place_project(other, of_other);
  const auto others = Database::open(other.IndexDBName(), Database::Access::ReadOnly);
  host().database = [here = on.database, own = on.project.IndexDBName(), others](const std::string& path) {
    return path == own ? here : others;
  };
  const int16_t index = index_of(call, *others, on.rows());
  const auto copies = copy_entity(other, call.group, index, on.project);
  if (call.json) {
    std::cout << copies_json(copies) << '\n';
    return kClean;
  }
  for (const EntityCopy& copy : copies) std::cout << line_of(copy) << '\n';
  return kClean;
}

}  // namespace tarn::cli
