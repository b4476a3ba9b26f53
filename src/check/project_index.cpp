#include "check/project_index.h"

#include "check/inspection.h"
#include "platform/host.h"

namespace tarn {
namespace {

bool is_damage(const Error& error) {
  switch (static_cast<ErrorNumber>(error.number())) {
    case ErrorNumber::DatabaseNotFound:
    case ErrorNumber::UnknownFormat:
    case ErrorNumber::DatabaseFailure:
      return true;
    default:
      return false;
  }
}

}  // namespace

ProjectIndex::ProjectIndex(COM_ProjectData& project) {
  try {
    database = host().database(project.IndexDBName());
  } catch (const Error& error) {
    if (!is_damage(error) || project_files(project).empty()) throw;
    const std::string path = project.IndexDBName();
    failure.property = path.substr(path.rfind('/') + 1);
    const bool missing = error.number() == static_cast<int>(ErrorNumber::DatabaseNotFound);
    failure.what = missing ? "The index database is missing." : error.description();
    failure.remedy =
        "Repair makes the index database anew from the record files; deleted entities whose records are still there "
        "come "
        "back.";
    failure.repairable = true;
  }
}

}  // namespace tarn
