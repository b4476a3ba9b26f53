#include "tarn/storage/section_file.h"

#include <algorithm>
#include <cstring>

#include "platform/file_store.h"
#include "platform/host.h"
#include "storage/file_names.h"
#include "storage/index_row.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/storage/entity.h"

namespace tarn {
namespace {

bool is_true(Header header, size_t offset) { return record_in<Bool>(header.subspan(offset)); }

void append(Blocks& all, const Blocks& more) { all.insert(all.end(), more.begin(), more.end()); }

}  // namespace

size_t SectionForm::first_result() const {
  return static_cast<size_t>(std::ranges::find_if(sections, &Section::is_result) - sections.begin());
}

std::string SectionFile::path(const std::string& prefix, int index) const {
  return prefix.empty() ? prefix : host().directory_form(place_.WorkPath).append(object_file_name(prefix, index));
}

std::string SectionFile::companion_path() const {
  const std::string name = form_.companion ? form_.companion(entity_) : std::string();
  const bool complete = name.empty() || name.find('/') != std::string::npos;
  return complete ? name : host().directory_form(place_.WorkPath) + name;
}

void SectionFile::forget_companion() {
  if (form_.companion) form_.companion(entity_).clear();
}

bool SectionFile::exists(const std::string& path) const { return !path.empty() && files().exists(path); }

std::string SectionFile::message(std::string_view begin, const std::string& path) const {
  const std::string name = path.empty() ? "the " + std::string(form_.one) + " has no FilePrefix" : path;
  return std::string(begin) + name + std::string(form_.end_of_message);
}

Sections SectionFile::selected_by(int32_t mask) const {
  Sections sections = 0;
  for (size_t i = 0; i < count(); ++i) {
    if (section(i).mask == 0 || (section(i).mask & mask) != 0) sections |= section_bit(i);
  }
  return sections;
}

Sections SectionFile::to_load() const { return form_.mask ? selected_by(form_.mask(entity_)) : kAllSections; }
Sections SectionFile::to_save() const { return form_.mask ? selected_by(form_.mask(entity_)) : loaded_; }

void SectionFile::set_there(size_t section, bool there) {
  there_ = there ? there_ | section_bit(section) : there_ & ~section_bit(section);
}

bool SectionFile::has_references(std::string_view kind, Sections sections) const {
  const auto by = [this](std::string_view word) {
    return std::ranges::find(form_.sections, word, &Section::references);
  };
  auto found = by(kind);
  if (found == form_.sections.end()) found = by("*");
  return (sections & section_bit(static_cast<size_t>(found - form_.sections.begin()))) != 0;
}

Blocks SectionFile::blocks() const {
  Blocks all;
  for (size_t i = 0; i < count(); ++i) append(all, blocks_of(i));
  return all;
}

Blocks SectionFile::inputs() const {
  Blocks all;
  for (size_t i = 0; i < form_.first_result(); ++i) append(all, blocks_of(i));
  return all;
}

void SectionFile::fit(size_t number, Header header, bool there) {
  if (section(number).fit) section(number).fit(entity_, header, there);
}

void SectionFile::drop_results() {
  for (size_t i = form_.first_result(); i < count(); ++i) {
    set_there(i, false);
    fit(i, {}, false);
    clear(calculated(i));
  }
}

void SectionFile::renew() {
  fit(0, {}, false);
  drop_results();
  for (size_t i = form_.first_result(); i < count(); ++i) clear(blocks_of(i));
  forget_companion();
  become_whole();
}

// ---- the file's shape

/// The bytes that a file begins with; those that it lacks are zero.
std::vector<std::byte> SectionFile::header_of_file(const std::string& path) const {
  std::vector<std::byte> bytes(header().size());
  files().read(path, 0, bytes);
  return bytes;
}

std::vector<std::byte> SectionFile::stored_header(int16_t index) const {
  const std::string path = path_of(index);
  return exists(path) ? header_of_file(path) : std::vector<std::byte>();
}

SectionFile::Ends SectionFile::ends_of(Header header, const std::string& path) const {
  const HeaderCounts counts = form_.counts ? form_.counts(header, path) : HeaderCounts{};
  Ends ends;
  ends.reserve(count());
  uint64_t end = 0;
  for (const Section& each : form_.sections) {
    end += each.size.fixed + counts.things * each.size.each + counts.outputs * each.size.each_output;
    ends.push_back(end);
  }
  return ends;
}

/// A file ends where one of its sections ends.
SectionFile::Ends SectionFile::checked_ends(Header header, uint64_t size, const std::string& path) const {
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

/// A file may end before a section that was never made, but not before one that the index database tells of.
void SectionFile::check_lacking(const std::string& path, Header header, const LoadContext& load,
                                Sections in_file) const {
  const Sections lacking = load.sections & ~in_file;
  if (lacking == 0 || load.index == 0) return;
  for (const ResultFlag& flag : form_.result_flags) {
    const bool says = is_true(header, flag.offset) || (load.row && load.row->flag(flag.column));
    if (!says || (lacking & flag.sections) == 0 || (in_file & flag.sections) != 0) continue;
    fail(ErrorNumber::UnknownFormat, path + " has no results, though " + std::string(flag.column) +
                                         " says that they are there. Restore the file from a copy, or load and save "
                                         "its inputs alone and calculate again.");
  }
  const std::string_view owner = entity_.kind().link_owner;
  for (size_t i = 1; load.row && i < form_.first_result(); ++i) {
    if ((lacking & section_bit(i)) == 0) continue;
    LinkRows links(*entity_.GetDBHandle(), owner, load.index);
    for (const std::string_view kind : kinds_referred_to(
             entity_.info(), [&](std::string_view each) { return has_references(each, section_bit(i)); })) {
      if (links.of(kind).empty()) continue;
      fail(ErrorNumber::UnknownFormat, path + " ends before " + std::string(section(i).name) + ", though " +
                                           std::string(owner) + " " + std::to_string(load.index) +
                                           " has link rows of kind " + std::string(kind) +
                                           ". Restore the file from a copy.");
    }
  }
}

// ---- load

void SectionFile::check(std::optional<int16_t> index, std::string_view /*operation*/) const {
  if (!index || form_.row_first) return;
  const std::string path = path_of(*index);
  if (!exists(path)) fail(ErrorNumber::FileNotFound, message(form_.missing_file, path));
}

void SectionFile::read(const LoadContext& load) {
  const std::string path = path_of(load.index);
  if (form_.row_first && !exists(path)) fail(ErrorNumber::FileNotFound, message(form_.missing_file, path));
  read_sections(path, load);
}

bool SectionFile::read_default() {
  const std::string path = default_path();
  if (exists(path)) {
    read_sections(path, {0, kAllSections, false, nullptr, [](bool) {}, [] {}});
  } else if (form_.without_default) {
    forget_companion();
    form_.without_default(entity_);
    become_whole();
  } else {
    fail(ErrorNumber::FileNotFound, message(form_.missing_default, path));
  }
  clear_result_flags();
  return true;
}

/// What the object has of another section of the same entity stays, as long as it fits the header.
bool SectionFile::keeps(size_t number, const LoadContext& load, bool same_header, const Ends& ends) const {
  if (!load.same_entity || (load.sections & section_bit(number)) != 0) return false;
  if (!section(number).stays && is_there(number)) return false;
  const uint64_t size = ends[number] - (number == 0 ? 0 : ends[number - 1]);
  return same_header || size_of(blocks_of(number)) == size;
}

/// A header is read before the object changes, and what is read after it, or refers to anything, may fail.
bool SectionFile::may_fail(Sections sections) const {
  return sections != section_bit(0) || section(0).check || !section(0).references.empty();
}

void SectionFile::check_inputs(const std::string& path, Sections sections) const {
  for (size_t i = 0; i < form_.first_result(); ++i) {
    if ((sections & section_bit(i)) != 0 && section(i).check) section(i).check(entity_, path);
  }
}

void SectionFile::read_sections(const std::string& path, const LoadContext& load) {
  const FileStore::View file = files().view(path);
  std::vector<std::byte> new_header(header().size());
  file.read(0, new_header);
  const uint64_t size = file.size();
  const Ends ends = checked_ends(new_header, size, path);
  const bool same_header = std::memcmp(new_header.data(), header().data(), new_header.size()) == 0;
  Sections in_file = 0, kept = 0;
  for (size_t i = 0; i < count(); ++i) {
    if (size >= ends[i]) in_file |= section_bit(i);
    if (keeps(i, load, same_header, ends)) kept |= section_bit(i);
  }
  check_lacking(path, new_header, load, in_file);
  load.begin(may_fail(load.sections));
  if (!load.same_entity) forget_companion();
  for (size_t i = 0; i < count(); ++i) {
    if (i == form_.first_result()) {
      check_inputs(path, load.sections);
      load.inputs_read();
    }
    if ((kept & section_bit(i)) != 0) continue;
    const bool there = (load.sections & in_file & section_bit(i)) != 0;
    if (!there) clear(any_inputs(kept) ? calculated(i) : blocks_of(i));  // nothing of another entity stays
    fit(i, new_header, there);
    if (there && i == 0)
      std::ranges::copy(new_header, header().begin());
    else if (there)
      file.read_blocks(ends[i - 1], blocks_of(i));
    set_there(i, there);
  }
  read_choices(path, load, ends, in_file);
  loaded_ = load.sections | (loaded_ & kept);
}

// ---- save

bool SectionFile::take_unselected_header(const SaveContext& save) {
  const std::string path = path_of(entity_.Index());
  if (save.selects(0) || !exists(path)) return false;
  const std::vector<std::byte> stored = header_of_file(path);
  checked_ends(stored, files().size(path), path);
  std::ranges::copy(stored, header().begin());
  return true;
}

void SectionFile::check_loaded(const SaveContext& save) const {
  for (size_t i = 1; i < form_.first_result(); ++i) {
    if (!save.selects(i) || is_loaded(i)) continue;
    fail(ErrorNumber::InvalidCall, std::string(section(i).name) +
                                       " is selected but was not loaded, and a save would empty it in the file. "
                                       "Load it first, or leave it out of the mask.");
  }
}

void SectionFile::select_results(SaveContext& save) {
  for (size_t i = form_.first_result(); i < count(); ++i) {
    if (!save.selects(i)) continue;
    const bool holds = is_there(i) || holds_results(i);
    if (!save.after_calculations && !holds && !is_loaded(i)) {
      save.sections &= ~section_bit(i);
      save.choices |= section_bit(i);
    }
    set_there(i, save.after_calculations || holds);
  }
}

void SectionFile::drop(SaveContext& save, size_t section) {
  save.sections |= section_bit(section);
  save.dropped |= section_bit(section);
  set_there(section, false);
}

void SectionFile::clear_result_flags() {
  for (const ResultFlag& flag : form_.result_flags) {
    const auto bytes = header().subspan(flag.offset, sizeof(Bool));
    std::ranges::fill(bytes, std::byte{0});
  }
}

/// The file as it lies there; empty for a new entity.
SectionFile::OldFile SectionFile::old_file(const std::string& path) const {
  OldFile old{{}, Ends(count(), UINT64_MAX)};
  if (!files().exists(path)) return old;
  const uint64_t size = files().size(path);
  old.ends = checked_ends(header_of_file(path), size, path);  // before there is memory for it
  old.bytes.resize(size);
  files().read(path, 0, old.bytes);
  return old;
}

std::span<const std::byte> SectionFile::OldFile::section(size_t number) const {
  if (number >= ends.size() || bytes.size() < ends[number]) return {};
  return std::span(bytes).subspan(ends[number - 1], ends[number] - ends[number - 1]);
}

/// Appends a section for the new file: from memory where it is selected, else as the old file has it. Returns its size,
/// 0 where neither has it.
uint64_t SectionFile::add_section(size_t number, const SaveContext& save, const OldFile& old,
                                  std::vector<std::byte>& out) {
  const size_t before = out.size();
  const bool with_results = save.form != SaveContext::Form::Default;
  const bool in_memory = !section(number).is_result || (with_results && is_there(number));
  const std::span<const std::byte> stored = old.section(number);
  if (save.selects(number) && in_memory) {
    fit(number, header(), true);
    for (const auto& block : blocks_of(number)) out.insert(out.end(), block.begin(), block.end());
  } else if (!save.selects(number)) {
    out.insert(out.end(), stored.begin(), stored.end());
  }
  add_choices(number, save, stored, before, out);
  return out.size() - before;
}

void SectionFile::write_file(const std::string& path, const SaveContext& save) {
  const Ends ends = ends_of(header(), path);
  bool all = true;
  for (size_t i = 1; i < count(); ++i) all &= save.selects(i);
  const OldFile old = all ? OldFile{} : old_file(path);
  std::vector<std::byte> out;
  out.reserve(ends.back());
  const auto own_header = header();
  out.assign(own_header.begin(), own_header.end());
  for (size_t i = 1; i < count(); ++i) {
    // The place of what follows depends on what stands before it, also where that was never stored.
    const size_t before = out.size();
    out.resize(std::max<size_t>(before, ends[i - 1]));
    const uint64_t size = add_section(i, save, old, out);
    if (size == 0) out.resize(before);
    if (size == 0 || (out.size() == ends[i] && before <= ends[i - 1])) continue;
    fail(
        ErrorNumber::InvalidCall,
        "The counts in the header have changed, but sections that depend on them are not selected by the mask, or were "
        "not loaded. Select them for Load and Save.");
  }
  files().replace(path, std::move(out), entity_.GetDBHandle());
}

void SectionFile::write(int16_t index, const SaveContext& save) {
  const std::string path = path_of(index);
  if (path.empty()) {
    fail(ErrorNumber::FileNotFound,
         "The " + std::string(form_.one) + " has no file name; set its WorkPath and FilePrefix.");
  }
  write_file(path, save);
  clear_dropped(save);
}

/// Until a rollback, the object holds no results of other inputs than the file's.
void SectionFile::clear_dropped(const SaveContext& save) {
  const auto results = [this, dropped = save.dropped] {
    Blocks all;
    for (size_t i = form_.first_result(); i < count(); ++i) {
      if ((dropped & section_bit(i)) != 0) append(all, calculated(i));
    }
    return all;
  };
  const Blocks now = results();
  if (!hold_anything(now)) return;
  entity_.on_rollback([results, kept = Kept(now)] {
    const Blocks then = results();
    if (kept.fits(then) && !hold_anything(then)) kept.put_back(then);
  });
  clear(now);
}

void SectionFile::write_default() { write_default(default_path()); }

void SectionFile::write_default(const std::string& path) {
  if (path.empty()) {
    fail(ErrorNumber::FileNotFound,
         "The default " + std::string(entity_.kind().default_word) + " has no file name; give it one.");
  }
  const SaveContext save{.form = SaveContext::Form::Default};
  check_loaded(save);
  write_file(path, save);
}

void SectionFile::remove(int16_t index, bool same_entity) {
  if (index == 0) return;  // never stored; the file of index 0 is the default's
  for (const std::string& path :
       {path_of(index), results_path_of(index), same_entity ? companion_path() : std::string()}) {
    if (!path.empty()) files().remove(path, entity_.GetDBHandle());
  }
  forget_companion();
}

// ---- what the object remembers

std::function<void()> SectionFile::keep_state(bool with_results) {
  Blocks results;
  for (size_t i = form_.first_result(); with_results && i < count(); ++i) {
    append(results, is_there(i) ? blocks_of(i) : Blocks{choices(i)});
  }
  std::vector<bool> flags;
  for (const ChangedFlag& flag : entity_.kind().flags) flags.push_back(flag.of(entity_));
  const std::string companion = form_.companion ? form_.companion(entity_) : std::string();
  return [this, there = there_, loaded = loaded_, companion, flags, results, kept = Kept(results)] {
    there_ = there;
    if (form_.companion) form_.companion(entity_) = companion;
    loaded_ = loaded;
    for (size_t i = 0; i < flags.size(); ++i) entity_.kind().flags[i].of(entity_) = flags[i];
    kept.put_back(results);
  };
}

void SectionFile::copy(const EntityFile& from, bool content) {
  const auto& other = dynamic_cast<const SectionFile&>(from);
  place_ = other.place_;
  if (default_name_) *default_name_ = *other.default_name_;
  if (!content) return;
  for (const ChangedFlag& flag : entity_.kind().flags) flag.of(entity_) = flag.of(other.entity_);
  there_ = other.there_;
  loaded_ = other.loaded_;
  fit(0, other.header(), true);
  for (size_t i = form_.first_result(); i < count(); ++i) {
    fit(i, other.header(), is_there(i));
    const Blocks ours = blocks_of(i), theirs = other.blocks_of(i);
    for (size_t block = 0; block < std::min(ours.size(), theirs.size()); ++block)
      std::ranges::copy(theirs[block], ours[block].begin());
  }
}

}  // namespace tarn
