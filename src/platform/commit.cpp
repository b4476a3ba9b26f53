#include "platform/commit.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "base/error.h"
#include "base/log.h"
#include "platform/host.h"

namespace tarn {
namespace {

// Journal: magic, then for each file its path (relative to the journal's folder), whether it existed, its size, where
// it was moved to, and the old bytes; a checksum over all of it last. Numbers are 64-bit. A large file that is
// replaced whole and lies beside the journal is moved aside instead of copied.
constexpr std::string_view kMagic = "TarnUndo2\n";
constexpr uint64_t kSmall = 65536;  // up to here a copy costs less than a move, whose new names must be synced too

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

std::string folder_of(const std::string& path) { return std::filesystem::path(path).parent_path().string(); }

}  // namespace

FileCommit::FileCommit(std::string journal, std::vector<std::pair<std::string, const FileStore::Pending*>> writes)
    : journal_(std::move(journal)), writes_(std::move(writes)) {}

void FileCommit::read_before() {
  for (const auto& [path, pending] : writes_) {
    Before before{path, false, 0, {}, {}};
    if (const auto file = host().files->open(path, OpenMode::Read)) {
      const auto keep = [&](uint64_t offset, size_t size) {
        Piece piece{offset, std::string(size, '\0')};
        piece.bytes.resize(file->read(offset, std::as_writable_bytes(std::span(piece.bytes))));
        before.pieces.push_back(std::move(piece));
      };
      before.existed = true;
      before.size = file->size();
      const bool large = before.size > kSmall;
      if (pending->emptied && large && !journal_.empty() && folder_of(path) == folder_of(journal_)) {
        before.moved = journal_ + "-" + std::to_string(before_.size());
      } else if (pending->emptied) {
        keep(0, before.size);
      } else {
        for (const auto& [offset, bytes] : pending->extents.pieces()) keep(offset, bytes.size());
      }
    }
    before_.push_back(std::move(before));
  }
}

std::string FileCommit::written_journal() const {
  std::string out(kMagic);
  put_number(out, before_.size());
  for (const Before& before : before_) {
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
    if (!before.existed) {
      host().files->remove(before.path);
      continue;
    }
    if (!before.moved.empty()) {  // one that is not there was not moved yet
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
  if (!journal_.empty()) {
    const auto file = host().files->open(journal_, OpenMode::Create);
    file->truncate(0);
    file->write(0, bytes_of(written_journal()));
    file->sync();
    host().files->sync_folder(folder_of(journal_));
  }
  try {
    write_files();
  } catch (...) {
    undo();
    throw;
  }
}

void FileCommit::write_files() {
  bool names_changed = false;
  for (size_t i = 0; i < writes_.size(); ++i) {
    const auto& [path, pending] = writes_[i];
    const bool moves = !before_[i].moved.empty();
    if (moves) host().files->rename(path, before_[i].moved);
    names_changed |= moves || pending->removed;
    if (pending->removed) {
      host().files->remove(path);
      continue;
    }
    const auto file = host().files->open(path, OpenMode::Create);
    const auto& pieces = pending->extents.pieces();
    const bool in_place = pieces.size() == 1 && pieces.begin()->first == 0;  // its blocks are used again
    if (pending->emptied && !in_place) file->truncate(0);
    for (const auto& [offset, bytes] : pieces) file->write(offset, bytes);
    if (pending->emptied && in_place && before_[i].size > pieces.begin()->second.size())
      file->truncate(pieces.begin()->second.size());
    file->sync();
  }
  if (names_changed && !journal_.empty()) host().files->sync_folder(folder_of(journal_));
}

void FileCommit::undo() {
  restore(before_);
  forget();
}

void FileCommit::forget() {
  if (journal_.empty()) return;
  try {
    for (const Before& before : before_) {
      if (!before.moved.empty()) host().files->remove(before.moved);
    }
    host().files->remove(journal_);
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

void undo_interrupted_commit(const std::string& journal) {
  FileCommit::restore(FileCommit::read_journal(journal));
  host().files->remove(journal);
}

void forget_finished_commit(const std::string& journal) {
  if (!host().files->exists(journal)) return;
  for (const auto& before : FileCommit::read_journal(journal)) {
    if (!before.moved.empty()) host().files->remove(before.moved);
  }
  host().files->remove(journal);
}

}  // namespace tarn
