// What repair keeps of a damaged section file.
#include <algorithm>

#include "platform/file_store.h"
#include "tarn/base/wire.h"
#include "tarn/storage/section_file.h"

namespace tarn {

std::vector<std::byte> SectionFile::whole_sections(int16_t index) const {
  const std::string path = path_of(index);
  const uint64_t size = files().size(path);
  if (size < header().size()) return {};
  const Ends ends = ends_of(header_of_file(path), path);
  const auto lost = std::ranges::upper_bound(ends, size);
  const auto whole = static_cast<size_t>(lost - ends.begin());
  if (whole < form_.first_result()) return {};
  std::vector<std::byte> bytes(ends[whole - 1]);
  files().read(path, 0, bytes);
  for (const ResultFlag& flag : form_.result_flags) {
    const bool there = (flag.sections & (section_bit(whole) - 1)) != 0;
    if (flag.sections != 0 && !there)
      std::fill_n(bytes.begin() + static_cast<ptrdiff_t>(flag.offset), sizeof(Bool), std::byte{0});
  }
  return bytes;
}

}  // namespace tarn
