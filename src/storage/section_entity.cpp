#include "tarn/storage/section_entity.h"

#include "storage/kind.h"

namespace tarn {

void SectionEntity::Reset(std::optional<bool> bResetAll) {
  StoredEntity::Reset(bResetAll);
  sections_.forget_companion();
  if (!bResetAll.value_or(false)) return;
  for (const ChangedFlag& flag : kind().flags) flag.of(*this) = false;
}

void SectionEntity::begin_anew() {
  drop_results();
  sections_.become_whole();
}

}  // namespace tarn
