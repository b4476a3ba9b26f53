#include "storage/masked_entity.h"

#include <algorithm>
#include <utility>

#include "platform/workspace.h"

namespace tarn {

/// Runs an operation of some sections; a failure leaves the mask as it was.
template <typename F>
void MaskedEntity::with_mask(int32_t mask, F operation) {
  const int32_t before = std::exchange(mask_, mask);
  try {
    operation();
  } catch (...) {
    mask_ = before;
    throw;
  }
}

void MaskedEntity::load(int32_t mask, int16_t index) {
  held_ = Index == index && Index != 0 ? loaded_ : 0;
  with_mask(mask, [&] { SectionedEntity::Load(index); });
  loaded_ = mask;
  for (size_t section = 1; section < section_count(); ++section) {
    const bool input = section < first_result();
    if ((held_ & mask_of(section)) != 0 && (input || keeps(section))) loaded_ |= mask_of(section);
    if (input && !is_loaded(section)) clear(section);  // nothing of another one stays
  }
}

void MaskedEntity::save(int32_t mask, bool after_calculations) {
  with_mask(mask, [&] { SectionedEntity::save(after_calculations); });
}

void MaskedEntity::drop(size_t section) {
  mask_ |= mask_of(section);
  set_there(section, false);
}

void MaskedEntity::check_loaded() const {
  for (size_t section = 1; section < first_result(); ++section) {
    if (!selected(section) || is_loaded(section)) continue;
    fail(ErrorNumber::InvalidCall, std::string(name_of(section)) +
                                       " is selected but was not loaded, and a save would empty it in the file. "
                                       "Load it first, or leave it out of the mask.");
  }
}

bool MaskedEntity::holds_anything(size_t section) {
  const auto is_set = [](std::byte byte) { return byte != std::byte{0}; };
  return std::ranges::any_of(blocks(section), [&](const auto& block) { return std::ranges::any_of(block, is_set); });
}

void MaskedEntity::select_results() {
  for (size_t section = first_result(); section < section_count(); ++section) {
    if (!selected(section)) continue;
    const bool holds = is_there(section) || holds_anything(section);
    if (!after_calculations_ && !holds && !is_loaded(section)) mask_ &= ~mask_of(section);
    set_there(section, after_calculations_ || holds);
  }
}

/// Its header and inputs.
void MaskedEntity::write_default(const std::string& path) {
  if (path.empty()) {
    fail(ErrorNumber::FileNotFound,
         "The default " + std::string(kind().default_word) + " has no file name; give it one.");
  }
  const int32_t before = mask_;
  with_mask(kAll, [&] {
    check_loaded();
    Transaction transaction;
    write_file(path, false);
    transaction.commit();
  });
  mask_ = before;
}

void MaskedEntity::read_default() {
  if (!has_file(DefFileName)) fail(ErrorNumber::FileNotFound, no_default_message());
  mask_ = loaded_ = kAll;
  read_sections(DefFileName);
}

void MaskedEntity::renew() {
  drop_results();
  loaded_ = kAll;
  set_changed();
}

std::function<void()> MaskedEntity::keep_rest() {
  return [this, rest = SectionedEntity::keep_rest(), loaded = loaded_] {
    rest();
    loaded_ = loaded;
  };
}

void MaskedEntity::copy_memory(const StoredEntity& from, bool record_too) {
  SectionedEntity::copy_memory(from, record_too);
  const auto& other = dynamic_cast<const MaskedEntity&>(from);
  DefFileName = other.DefFileName;
  if (record_too) loaded_ = other.loaded_;
}

}  // namespace tarn
