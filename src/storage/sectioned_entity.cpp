#include "storage/sectioned_entity.h"

#include <algorithm>

#include "base/log.h"
#include "platform/host.h"
#include "platform/workspace.h"
#include "storage/file_names.h"

namespace tarn {
namespace {

void append(std::vector<std::byte>& out, std::span<const std::byte> bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

}  // namespace

std::string SectionedEntity::file_of(int index) const {
  const std::string name = object_file_name(FilePrefix, index);
  return name.empty() ? name : host().directory_form(WorkPath) + name;
}

bool SectionedEntity::has_file(const std::string& path) const { return !path.empty() && files().exists(path); }

std::vector<std::span<std::byte>> SectionedEntity::layout() {
  Blocks all;
  for (size_t section = 0; section < section_count(); ++section) {
    for (const auto& block : blocks(section)) all.push_back(block);
  }
  return all;
}

size_t SectionedEntity::header_size() const { return const_cast<SectionedEntity*>(this)->blocks(0).front().size(); }

/// The bytes that a file begins with; those that it lacks are zero.
std::vector<std::byte> SectionedEntity::header_of_file(const std::string& path) const {
  std::vector<std::byte> header(header_size());
  files().read(path, 0, header, OpenMode::Read);
  return header;
}

/// A file ends where one of its sections ends.
SectionedEntity::Ends SectionedEntity::checked_ends(std::span<const std::byte> header, uint64_t size,
                                                    const std::string& path) const {
  if (size < header.size()) {
    fail(ErrorNumber::UnknownFormat, path + " is cut inside its header: " + std::to_string(size) + " of " +
                                         std::to_string(header.size()) + " bytes. Restore the file from a copy.");
  }
  Ends ends = ends_of(header, path);
  if (std::find(ends.begin(), ends.end(), size) == ends.end()) {
    std::string list;
    for (const uint64_t end : ends) list += (list.empty() ? "" : ", ") + std::to_string(end);
    fail(ErrorNumber::UnknownFormat, path + " ends inside a section, at byte " + std::to_string(size) +
                                         ": by its header its sections end at " + list +
                                         ". Restore the file from a copy.");
  }
  return ends;
}

void SectionedEntity::read_sections(const std::string& path, const std::function<void()>& inputs_read) {
  const std::vector<std::byte> header = header_of_file(path);
  const uint64_t size = files().size(path);
  const Ends ends = checked_ends(header, size, path);
  for (size_t section = 0; section < section_count(); ++section) {
    if (section == first_result()) {
      check_counts(path);
      inputs_read();
    }
    if (keeps(section)) continue;
    const bool there = selected(section) && size >= ends[section];
    make_room(section, header, there);
    if (section == 0 && there)
      std::copy(header.begin(), header.end(), blocks(0).front().begin());
    else if (there)
      files().read_blocks(path, ends[section - 1], blocks(section));
    else if (selected(section) || section >= first_result())
      clear(section);
    there_[section] = there;  // one that is not selected stays unknown here; a save carries it over
  }
}

void SectionedEntity::clear(size_t section) {
  for (const auto& block : blocks(section)) std::fill(block.begin(), block.end(), std::byte{0});
}

void SectionedEntity::drop_results() {
  for (size_t section = first_result(); section < section_count(); ++section) {
    there_[section] = false;
    make_room(section, {}, false);
    clear(section);
  }
}

Recordset SectionedEntity::row_of(int16_t index) const {
  Recordset rows = index_rows();
  rows.FindFirst("nIndex = ?", {cell(index)});
  return rows;
}

void SectionedEntity::Load(int16_t nRecNum) {
  or_as_before([&] {
    Transaction transaction;
    const std::string path = file_of(nRecNum);
    if (!has_file(path)) fail(ErrorNumber::FileNotFound, no_file_message(path));
    Recordset rows = row_of(nRecNum);
    Index = nRecNum;
    if (rows.NoMatch()) {
      no_row(nRecNum);
    } else {
      for (const auto& [column, flag] : row_flags()) *flag = rows.Fields(column).integer() != 0;
    }
    read_sections(path, [this] { clear_unlinked(); });
    transaction.commit();
    if (m_bCloning) Index = 0;
  });
}

/// The file as it lies there; empty for a new entity.
SectionedEntity::OldFile SectionedEntity::old_file(const std::string& path) const {
  OldFile old{{}, Ends(section_count(), UINT64_MAX)};
  if (!files().exists(path)) return old;
  old.bytes.resize(files().size(path));
  files().read(path, 0, old.bytes, OpenMode::Read);
  std::vector<std::byte> header(header_size());
  std::copy_n(old.bytes.begin(), std::min(old.bytes.size(), header.size()), header.begin());
  old.ends = checked_ends(header, old.bytes.size(), path);
  return old;
}

bool SectionedEntity::take_unselected_header() {
  const std::string path = file_of(Index);
  if (selected(0) || !has_file(path)) return false;
  const std::vector<std::byte> header = header_of_file(path);
  checked_ends(header, files().size(path), path);
  std::copy(header.begin(), header.end(), blocks(0).front().begin());
  return true;
}

/// Appends a section for the new file: from memory where it is selected, else as the old file has it. Returns its size,
/// 0 where neither has it.
uint64_t SectionedEntity::add_section(size_t section, const OldFile& old, std::vector<std::byte>& out) {
  const size_t before = out.size();
  const bool in_memory = section < first_result() || there_[section];
  if (selected(section) && in_memory) {
    make_room(section, blocks(0).front(), true);
    for (const auto& block : blocks(section)) append(out, block);
  } else if (!selected(section) && old.bytes.size() >= old.ends[section]) {
    append(out, std::span(old.bytes).subspan(old.ends[section - 1], old.ends[section] - old.ends[section - 1]));
  }
  return out.size() - before;
}

void SectionedEntity::write_file(const std::string& path, bool with_results) {
  const auto header = blocks(0).front();
  const Ends ends = ends_of(header, path);
  bool all = true;
  for (size_t section = 1; section < section_count(); ++section) all &= selected(section);
  const OldFile old = all ? OldFile{} : old_file(path);
  std::vector<std::byte> out;
  out.reserve(ends.back());
  append(out, header);
  for (size_t section = 1; section < (with_results ? section_count() : first_result()); ++section) {
    // What lies behind has its place by what lies before, also where that was never stored.
    const size_t before = out.size();
    out.resize(std::max<size_t>(before, ends[section - 1]));
    const uint64_t size = add_section(section, old, out);
    if (size == 0) out.resize(before);
    if (size == 0 || (out.size() == ends[section] && before <= ends[section - 1])) continue;
    fail(
        ErrorNumber::InvalidCall,
        "The counts in the header have changed, but sections that depend on them are not selected by the mask, or were "
        "not loaded. Select them for Load and Save.");
  }
  files().replace(path, std::move(out), GetDBHandle());
}

void SectionedEntity::remove_files(int16_t index) {
  if (index == 0) return;  // never stored; the file of index 0 is the default's
  if (const std::string path = file_of(index); !path.empty()) files().remove(path, GetDBHandle());
}

std::vector<std::byte> SectionedEntity::record() const {
  std::vector<std::byte> out;
  auto& self = const_cast<SectionedEntity&>(*this);
  for (size_t section = 0; section < first_result(); ++section) {
    const Blocks blocks = self.blocks(section);
    size_t size = out.size();
    for (const auto& block : blocks) size += block.size();
    out.reserve(size);
    for (const auto& block : blocks) append(out, block);
  }
  return out;
}

void SectionedEntity::set_record(std::span<const std::byte> bytes) {
  for (size_t section = 0; section < first_result(); ++section) {
    for (const auto& block : blocks(section)) {
      std::copy_n(bytes.begin(), block.size(), block.begin());
      bytes = bytes.subspan(block.size());
    }
  }
}

std::function<void()> SectionedEntity::keep_rest() {
  std::vector<std::pair<bool*, bool>> before;
  for (const auto& [column, flag] : row_flags()) before.emplace_back(flag, *flag);
  return [this, there = there_, before] {
    there_ = there;
    for (const auto& [flag, changed] : before) *flag = changed;
  };
}

void SectionedEntity::Reset(std::optional<bool> bResetAll) {
  StoredEntity::Reset(bResetAll);
  if (bResetAll.value_or(false)) set_flags(false);
}

bool SectionedEntity::IsNameUnique(const std::optional<std::string>& sName) const {
  const std::string page = page_from_utf8(trimmed(sName.value_or(""))).substr(0, name_width());
  const std::string name(trimmed(utf8_from_page(page)));  // as it would be stored
  return database()
      .OpenRecordset("SELECT * FROM " + std::string(kind().index_table) + " WHERE szName = ? AND nIndex <> ?",
                     {name.empty() ? stored_name() : name, cell(Index)})
      .AtEof();
}

void SectionedEntity::save(bool after_calculations) {
  struct Guard {
    bool& flag;
    ~Guard() { flag = false; }
  } guard{after_calculations_};
  after_calculations_ = after_calculations;
  StoredEntity::Save();
}

void SectionedEntity::keep_flags_of_row() {
  Recordset rows = row_of(Index);
  if (rows.NoMatch()) return;
  for (const auto& [column, flag] : row_flags()) *flag |= rows.Fields(column).integer() != 0;
}

void SectionedEntity::set_flags(bool changed) {
  for (const auto& [column, flag] : row_flags()) *flag = changed;
}

/// Names are unique, also of what comes with an exchange.
void SectionedEntity::before_restore() {
  as_given_ = true;
  if (IsNameUnique()) return;
  const std::string name = stored_name();
  store_name(host().copy_name(name));
  log().message(std::string(kind().index_table) + " has " + name + " already; the other one comes as " + stored_name() +
                ".");
}

void SectionedEntity::copy_memory(const StoredEntity& from, bool record_too) {
  auto& other = const_cast<SectionedEntity&>(dynamic_cast<const SectionedEntity&>(from));
  WorkPath = other.WorkPath;
  FilePrefix = other.FilePrefix;
  if (!record_too) return;
  const auto flags = row_flags(), other_flags = other.row_flags();
  for (size_t i = 0; i < flags.size(); ++i) *flags[i].flag = *other_flags[i].flag;
  there_ = other.there_;
  for (size_t section = first_result(); section < section_count(); ++section) {
    make_room(section, other.blocks(0).front(), there_[section]);
    const auto ours = blocks(section), theirs = other.blocks(section);
    for (size_t i = 0; i < std::min(ours.size(), theirs.size()); ++i)
      std::copy(theirs[i].begin(), theirs[i].end(), ours[i].begin());
  }
}

}  // namespace tarn
