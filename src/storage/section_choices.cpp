// What a client chooses among the results of a section: it goes with the inputs through every load and save.
#include <algorithm>

#include "platform/file_store.h"
#include "tarn/storage/entity.h"
#include "tarn/storage/section_file.h"

namespace tarn {

std::span<std::byte> SectionFile::choices(size_t number) const {
  return section(number).choices ? section(number).choices(entity_) : std::span<std::byte>();
}

size_t SectionFile::place_of_choices(size_t number) const {
  return static_cast<size_t>(choices(number).data() - blocks_of(number).front().data());
}

Blocks SectionFile::calculated(size_t number) const {
  Blocks all = blocks_of(number);
  const std::span<std::byte> chosen = choices(number);
  if (chosen.empty()) return all;
  const std::span<std::byte> record = all.front();
  const size_t at = place_of_choices(number);
  all.front() = record.first(at);
  all.push_back(record.subspan(at + chosen.size()));
  return all;
}

bool SectionFile::any_inputs(Sections sections) const {
  const Sections inputs = section_bit(form_.first_result()) - section_bit(1);
  return (sections & inputs) != 0;
}

/// A section with choices alone is no result.
void SectionFile::read_choices(const std::string& path, const LoadContext& load, const Ends& ends, Sections in_file) {
  for (size_t i = form_.first_result(); i < count(); ++i) {
    const std::span<std::byte> chosen = choices(i);
    if (chosen.empty()) continue;
    const bool selected = (load.sections & section_bit(i)) != 0;
    if (!selected && any_inputs(load.sections) && (in_file & section_bit(i)) != 0)
      files().read_blocks(path, ends[i - 1] + place_of_choices(i), Blocks{chosen});
    if (selected && hold_anything({chosen}) && !holds_results(i)) set_there(i, false);
  }
}

/// Those that the object has: loaded with inputs or results, or else set.
bool SectionFile::saves_choices(size_t number, const SaveContext& save) const {
  const bool asked = save.selects(number) || any_inputs(save.sections) || (save.choices & section_bit(number)) != 0;
  return asked && (is_loaded(number) || any_inputs(loaded_) || hold_anything({choices(number)}));
}

/// Puts them into the section that begins at `before`, which is made, of zeros, where it was left out.
void SectionFile::add_choices(size_t number, const SaveContext& save, std::span<const std::byte> old, size_t before,
                              std::vector<std::byte>& out) {
  const std::span<std::byte> chosen = choices(number);
  if (chosen.empty()) return;
  const bool own = saves_choices(number, save);
  if (out.size() == before) {
    if (!own || !hold_anything({chosen})) return;
    out.resize(before + size_of(blocks_of(number)));
  }
  const size_t place = place_of_choices(number);
  const std::span<const std::byte> from = own || old.empty() ? chosen : old.subspan(place, chosen.size());
  std::ranges::copy(from, out.begin() + static_cast<ptrdiff_t>(before + place));
}

bool SectionFile::is_cleared_by_edits(const std::byte* field) const {
  for (size_t i = form_.first_result(); form_.edits_drop_results && i < count(); ++i) {
    for (const std::span<std::byte> block : calculated(i)) {
      if (field >= block.data() && field < block.data() + block.size()) return true;
    }
  }
  return false;
}

}  // namespace tarn
