#include "disk.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace tarn::faults {

namespace fs = std::filesystem;

Disk::Disk(const std::string& folder) : folder_(folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::ifstream in(entry.path(), std::ios::binary);
    names_[entry.path()] = files_.size();
    files_.push_back({{std::istreambuf_iterator<char>(in), {}}, {}});
  }
  stored_names_ = names_;
}

void Disk::apply(std::string& bytes, const Write& write) {
  if (write.truncates) return bytes.resize(write.offset);
  if (bytes.size() < write.offset + write.bytes.size()) bytes.resize(write.offset + write.bytes.size());
  std::ranges::copy(write.bytes, bytes.begin() + static_cast<ptrdiff_t>(write.offset));
}

void Disk::apply(Names& names, const NameChange& change) {
  if (!change.removed.empty()) names.erase(change.removed);
  if (!change.added.empty()) names[change.added] = change.file;
}

void Disk::change_names(NameChange change) {
  apply(names_, change);
  open_changes_.push_back(std::move(change));
}

void Disk::take(const Call& call) {
  const auto file = [&]() -> File& { return files_[names_.at(call.path)]; };
  switch (call.kind) {
    case Kind::Create:
      files_.emplace_back();
      return change_names({{}, call.path, files_.size() - 1});
    case Kind::Remove:
      if (names_.contains(call.path)) change_names({call.path, {}});
      return;
    case Kind::Rename:
      return change_names({call.path, call.to, names_.at(call.path)});
    case Kind::Write:
      return file().open.push_back(
          {call.offset, {reinterpret_cast<const char*>(call.bytes.data()), call.bytes.size()}});
    case Kind::Truncate:
      return file().open.push_back({call.offset, {}, true});
    case Kind::Sync:
      if (call.path.size() <= folder_.size() + 1) {
        for (const NameChange& change : std::exchange(open_changes_, {})) apply(stored_names_, change);
      } else {
        for (const Write& write : std::exchange(file().open, {})) apply(file().stored, write);
      }
      return;
    case Kind::Open:
    case Kind::Read:
      return;
  }
}

/// Each write reaches the disk or not, or in some of its sectors.
std::string Disk::content(const File& file, double chance, std::mt19937& random) const {
  constexpr size_t kSector = 512;
  std::string bytes = file.stored;
  std::bernoulli_distribution there(chance), torn(0.2), half(0.5);
  for (const Write& write : file.open) {
    if (!there(random)) continue;
    if (write.truncates || !torn(random)) {
      apply(bytes, write);
      continue;
    }
    for (size_t at = 0; at < write.bytes.size();) {
      const size_t size = std::min(kSector - (write.offset + at) % kSector, write.bytes.size() - at);
      if (half(random)) apply(bytes, {write.offset + at, write.bytes.substr(at, size)});
      at += size;
    }
  }
  return bytes;
}

void Disk::lose_power(std::mt19937& random, const std::string& into) const {
  constexpr double kChances[]{0, 0.2, 0.5, 0.8, 1};
  const auto chance = [&] { return kChances[random() % std::size(kChances)]; };
  Names names = stored_names_;
  const bool in_order = random() % 2 == 0;  // as a journal of the file system keeps them
  const size_t most = in_order ? random() % (open_changes_.size() + 1) : open_changes_.size();
  std::bernoulli_distribution there(in_order ? 1 : chance());
  for (size_t i = 0; i < most; ++i)
    if (there(random)) apply(names, open_changes_[i]);
  for (const auto& entry : fs::directory_iterator(into)) fs::remove(entry.path());
  for (const auto& [path, file] : names)
    std::ofstream(into + path.substr(folder_.size()), std::ios::binary) << content(files_[file], chance(), random);
}

}  // namespace tarn::faults
