#include "tarn/project.h"

#include "platform/host.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/reflect/by_name.h"

namespace tarn {

namespace {
constexpr std::string_view kClass = "COM_ProjectData";
}

void COM_ProjectData::SetWorkPath(const std::string& path) { work_path_ = host().normalise_path(path); }

std::string COM_ProjectData::CreateFilespec(const std::string& suffix) const {
  return trapped(
      kClass, "CreateFilespec",
      [&] {
        if (work_path_.empty()) log().message("Invalid/blank working path");
        if (FilePrefix.empty()) log().message("Invalid/blank file prefix");
        if (suffix.empty()) log().message("Invalid/blank file suffix");
        return host().directory_form(work_path_) + FilePrefix + suffix;
      },
      std::string());
}

std::string COM_ProjectData::CreateFilePrefix(const std::string& code) const {
  return trapped(
      kClass, "CreateFilePrefix",
      [&] {
        if (code.size() != 1) log().message("Invalid file prefix code: [" + code + "]");
        return FilePrefix + code;
      },
      std::string());
}

void COM_ProjectData::SetDatabaseHandleOfDataObject(Object& object) const {
  trapped(
      kClass, "SetDatabaseHandleOfDataObject",
      [&] {
        std::vector<Value> handle{std::static_pointer_cast<Object>(host().database(IndexDBName()))};
        Value nothing;
        call_method(object, object.info().find("SetDBHandle"), handle, nothing);
        return true;
      },
      false);
}

}  // namespace tarn
