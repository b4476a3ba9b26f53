#include "exchange/imports.h"

#include "tarn/chiller.h"
#include "tarn/chiller_import.h"

namespace tarn {
namespace {

template <typename C, std::vector<std::string> (*Import)(C&, const std::string&)>
std::vector<std::string> into(StoredEntity& entity, const std::string& path) {
  return Import(dynamic_cast<C&>(entity), path);
}

constexpr struct {
  std::string_view class_name;
  ImportFile import;
} kImports[]{{"CHL_Chiller", into<CHL_Chiller, import_chiller>}};

}  // namespace

ImportFile file_import_of(const EntityKind& kind) {
  for (const auto& row : kImports) {
    if (row.class_name == kind.class_name) return row.import;
  }
  return nullptr;
}

}  // namespace tarn
