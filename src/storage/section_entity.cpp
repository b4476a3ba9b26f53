#include "tarn/storage/section_entity.h"

#include "storage/kind.h"
#include "tarn/base/codepage.h"

namespace tarn {

void SectionEntity::Reset(std::optional<bool> bResetAll) {
  StoredEntity::Reset(bResetAll);
  if (!bResetAll.value_or(false)) return;
  for (const ChangedFlag& flag : kind().flags) flag.of(*this) = false;
}

bool SectionEntity::IsNameUnique(const std::optional<std::string>& sName) const {
  const std::string page = page_from_utf8(trimmed(sName.value_or(""))).substr(0, name_width());
  const std::string name(trimmed(utf8_from_page(page)));  // as it would be stored
  return name_is_free(name.empty() ? stored_name() : name);
}

void SectionEntity::begin_anew() {
  drop_results();
  sections_.become_whole();
}

}  // namespace tarn
