#include "platform/commit.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>

#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

// The journal: a magic text; for each file that is written in place or removed its path (relative to the journal's
// folder), whether it existed, its size, where it was moved to, and its old bytes; last a checksum over all of it.
// Numbers have 64 bits. A file that is replaced whole is first made beside the journal, as <journal>-new-<name>. It is
// renamed to its own name after the database has committed, so that other programs read either the old file or the new
// one. Without a database it is made as <name>-new, and renamed at once.
constexpr std::string_view kMagic = "TarnUndo3\n";
constexpr std::string_view kPrepared = "-new-";
constexpr uint64_t kSmall = 65536;  // bytes; larger files that are removed are moved aside, not copied

/// FNV-1a over words of eight bytes, the last one filled with zeros.
uint64_t checksum(std::string_view bytes) {
  uint64_t sum = 0xCBF29CE484222325ULL ^ bytes.size();
  for (size_t at = 0; at < bytes.size(); at += sizeof sum) {
    uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, std::min(sizeof word, bytes.size() - at));
    sum = (sum ^ word) * 0x100000001B3ULL;
    sum ^= sum >> 32;
  }
  return sum;
}

void put_number(std::string& out, uint64_t n) { out.append(reinterpret_cast<const char*>(&n), sizeof n); }
void put_text(std::string& out, std::string_view text) {
  put_number(out, text.size());
  out += text;
}

/// Reads what `put_*` wrote; the checksum was right, so lengths are.
struct JournalReader {
  std::string_view rest;
  uint64_t number() {
    uint64_t n = 0;
    std::memcpy(&n, rest.data(), sizeof n);
    rest.remove_prefix(sizeof n);
    return n;
  }
  std::string text() {
    const size_t size = number();
    std::string out(rest.substr(0, size));
    rest.remove_prefix(size);
    return out;
  }
};

std::span<const std::byte> bytes_of(std::string_view text) { return std::as_bytes(std::span(text)); }

/// Cuts a piece of old bytes down to those from the first to the last that the new bytes change. False where the new
/// bytes change nothing.
template <typename Piece>
bool keep_changed(Piece& old, std::span<const std::byte> bytes) {
  const auto now = reinterpret_cast<const char*>(bytes.data());
  const size_t first =
      static_cast<size_t>(std::mismatch(old.bytes.begin(), old.bytes.end(), now).first - old.bytes.begin());
  size_t end = old.bytes.size();
  while (end > first && old.bytes[end - 1] == now[end - 1]) --end;
  old.bytes = old.bytes.substr(first, end - first);
  old.offset += first;
  return !old.bytes.empty();
}

std::string folder_of(const std::string& path) { return std::filesystem::path(path).parent_path().string(); }

}  // namespace

FileCommit::FileCommit(std::string journal, std::vector<std::pair<std::string, const FileStore::Pending*>> writes)
    : journal_(std::move(journal)), writes_(std::move(writes)) {}

void FileCommit::read_before() {
  for (const auto& [path, pending] : writes_) {
    Before before{path, false, 0, {}, {}, {}};
    const bool whole = pending->emptied && !journal_.empty() && folder_of(path) == folder_of(journal_);
    if (journal_.empty() && pending->emptied && !pending->removed) {
      before.prepared = path + "-new";
    } else if (whole && !pending->removed) {
      before.prepared = journal_ + std::string(kPrepared) + std::filesystem::path(path).filename().string();
    } else if (const auto file = host().files->open(path, OpenMode::Read)) {
      const auto keep = [&](uint64_t offset, size_t size) {
        Piece piece{offset, std::string(size, '\0')};
        piece.bytes.resize(file->read(offset, std::as_writable_bytes(std::span(piece.bytes))));
        before.pieces.push_back(std::move(piece));
      };
      before.existed = true;
      before.size = file->size();
      if (whole && before.size > kSmall) {
        before.moved = journal_ + "-" + std::to_string(before_.size());
      } else if (pending->emptied) {
        keep(0, before.size);
      } else {
        for (const auto& [offset, bytes] : pending->extents.pieces()) {
          keep(offset, bytes.size());
          if (!keep_changed(before.pieces.back(), bytes)) before.pieces.pop_back();
        }
      }
    }
    before_.push_back(std::move(before));
  }
}

std::string FileCommit::written_journal() const {
  std::string out(kMagic);
  const auto in_place = [](const Before& before) { return before.prepared.empty(); };
  put_number(out, static_cast<uint64_t>(std::count_if(before_.begin(), before_.end(), in_place)));
  for (const Before& before : before_) {
    if (!in_place(before)) continue;
    put_text(out, std::filesystem::path(before.path).lexically_proximate(folder_of(journal_)).string());
    put_number(out, before.existed ? 1 : 0);
    put_number(out, before.size);
    put_text(out, std::filesystem::path(before.moved).filename().string());
    put_number(out, before.pieces.size());
    for (const Piece& piece : before.pieces) {
      put_number(out, piece.offset);
      put_text(out, piece.bytes);
    }
  }
  put_number(out, checksum(out));
  return out;
}

std::vector<FileCommit::Before> FileCommit::parsed_journal(const std::string& text, const std::string& folder) {
  std::vector<Before> all;
  if (text.size() < kMagic.size() + 2 * sizeof(uint64_t) || !text.starts_with(kMagic)) return all;
  const std::string_view body(text.data(), text.size() - sizeof(uint64_t));
  JournalReader tail{std::string_view(text).substr(body.size())};
  if (tail.number() != checksum(body)) return all;
  JournalReader reader{body.substr(kMagic.size())};
  for (uint64_t files = reader.number(); files > 0; --files) {
    Before before;
    before.path = (std::filesystem::path(folder) / reader.text()).lexically_normal().string();
    before.existed = reader.number() != 0;
    before.size = reader.number();
    if (const std::string moved = reader.text(); !moved.empty())
      before.moved = (std::filesystem::path(folder) / moved).string();
    for (uint64_t pieces = reader.number(); pieces > 0; --pieces) {
      const uint64_t offset = reader.number();
      before.pieces.push_back({offset, reader.text()});
    }
    all.push_back(std::move(before));
  }
  return all;
}

void FileCommit::restore(const std::vector<Before>& all) {
  for (const Before& before : all) {
    if (!before.prepared.empty()) continue;  // the old file is as it was
    if (!before.existed) {
      host().files->remove(before.path);
      continue;
    }
    if (!before.moved.empty()) {  // a file that is not there had not been moved yet
      if (host().files->exists(before.moved)) host().files->rename(before.moved, before.path);
      continue;
    }
    const auto file = host().files->open(before.path, OpenMode::Create);
    file->truncate(before.size);
    for (const Piece& piece : before.pieces) file->write(piece.offset, bytes_of(piece.bytes));
    file->sync();
  }
}

void FileCommit::apply() {
  read_before();
  try {
    write_journal();
    prepare_files();
    if (!journal_.empty()) host().files->sync_folder(folder_of(journal_));
  } catch (...) {
    forget();
    throw;
  }
  try {
    write_files();
  } catch (...) {
    undo();
    throw;
  }
}

/// The journal is written before any of the new files. Where it has nothing to put back, it only tells other programs
/// that there is something to finish or to remove; then it need not be synced to the disk.
void FileCommit::write_journal() {
  if (journal_.empty()) return;
  const auto file = host().files->open(journal_, OpenMode::Create);
  file->truncate(0);
  file->write(0, bytes_of(written_journal()));
  const auto in_place = [](const Before& before) { return before.prepared.empty(); };
  if (std::any_of(before_.begin(), before_.end(), in_place)) file->sync();
}

void FileCommit::prepare_files() {
  for (size_t i = 0; i < writes_.size(); ++i) {
    if (before_[i].prepared.empty()) continue;
    const auto file = host().files->open(before_[i].prepared, OpenMode::Create);
    file->truncate(0);
    for (const auto& [offset, bytes] : writes_[i].second->extents.pieces()) file->write(offset, bytes);
    file->sync();
  }
}

void FileCommit::write_files() {
  bool names_changed = false;
  for (size_t i = 0; i < writes_.size(); ++i) {
    const auto& [path, pending] = writes_[i];
    if (!before_[i].prepared.empty()) {
      if (!journal_.empty()) continue;
      host().files->rename(before_[i].prepared, path);
      host().files->sync_folder(folder_of(path));
      continue;
    }
    const bool moves = !before_[i].moved.empty();
    if (moves) host().files->rename(path, before_[i].moved);
    names_changed |= moves || pending->removed;
    if (pending->removed) {
      host().files->remove(path);
      continue;
    }
    const auto file = host().files->open(path, OpenMode::Create);
    if (pending->emptied) file->truncate(0);
    for (const auto& [offset, bytes] : pending->extents.pieces()) file->write(offset, bytes);
    file->sync();
  }
  if (names_changed && !journal_.empty()) host().files->sync_folder(folder_of(journal_));
}

void FileCommit::undo() {
  restore(before_);
  forget();
}

namespace {

/// Renames a new file to its own name. Another program that opened the project meanwhile may have done so already.
void take_place(const std::string& prepared, const std::string& path) {
  try {
    host().files->rename(prepared, path);
  } catch (const Error&) {
    if (host().files->exists(prepared)) host().files->rename(prepared, path);
  }
}

}  // namespace

void FileCommit::finish() {
  try {
    for (const Before& before : before_) {
      if (!before.prepared.empty()) take_place(before.prepared, before.path);
    }
  } catch (const Error& refused) {
    log().message(refused.description() + " The save is finished when the project is opened the next time.");
    return;
  }
  forget();
}

void FileCommit::forget() {
  try {
    for (const Before& before : before_) {
      for (const std::string& beside : {before.moved, before.prepared}) {
        if (!beside.empty()) host().files->remove(beside);
      }
    }
    if (!journal_.empty()) host().files->remove(journal_);
  } catch (const Error& refused) {
    log().message(refused.description() + " It is no longer needed.");
  }
}

std::vector<FileCommit::Before> FileCommit::read_journal(const std::string& journal) {
  const auto file = host().files->open(journal, OpenMode::Read);
  if (!file) return {};  // another program has just dealt with it
  std::string text(file->size(), '\0');
  text.resize(file->read(0, std::as_writable_bytes(std::span(text))));
  return parsed_journal(text, folder_of(journal));
}

namespace {

/// Names of a folder that begin with a text.
std::vector<std::string> names_with(const std::string& folder, const std::string& beginning) {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(folder.empty() ? "." : folder, ignored)) {
    if (std::string name = entry.path().filename().string(); name.starts_with(beginning)) names.push_back(name);
  }
  return names;
}

/// Calls `action` on each new file of a commit, with the path whose place it is to take.
template <typename F>
void for_each_prepared(const std::string& journal, F action) {
  const std::filesystem::path folder = folder_of(journal);
  const std::string beginning = std::filesystem::path(journal).filename().string() + std::string(kPrepared);
  for (const std::string& name : names_with(folder.string(), beginning))
    action((folder / name).string(), (folder / name.substr(beginning.size())).string());
}

}  // namespace

void undo_interrupted_commit(const std::string& journal) {
  FileCommit::restore(FileCommit::read_journal(journal));
  for_each_prepared(journal, [](const std::string& prepared, const std::string&) { host().files->remove(prepared); });
  host().files->remove(journal);
}

void finish_interrupted_commit(const std::string& journal) {
  for_each_prepared(journal, take_place);
  forget_old_commit(journal);
}

bool has_prepared_files(const std::string& journal) {
  bool found = false;
  for_each_prepared(journal, [&found](const std::string&, const std::string&) { found = true; });
  return found;
}

void forget_old_commit(const std::string& journal) {
  for_each_prepared(journal, [](const std::string& prepared, const std::string&) { host().files->remove(prepared); });
  for (const auto& before : FileCommit::read_journal(journal)) {
    if (!before.moved.empty()) host().files->remove(before.moved);
  }
  host().files->remove(journal);
}

std::vector<int64_t> interrupted_commits(const std::string& stem) {
  const std::string beginning = std::filesystem::path(stem).filename().string();
  std::vector<int64_t> numbers;
  for (const std::string& name : names_with(folder_of(stem), beginning)) {
    int64_t number = 0;
    const char* const digits = name.data() + beginning.size();
    if (std::from_chars(digits, name.data() + name.size(), number).ec == std::errc()) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

}  // namespace tarn
