// A file of an entity of its own: packed records in sections, the header first. Sections are loaded and saved as they
// are selected; a file ends where one of its sections ends, and is replaced whole. What a kind's files are made of is
// data, a `SectionForm`. Inputs that an object does not hold are never saved, and nothing of one entity reaches
// another.
#pragma once

#include <algorithm>

#include "tarn/storage/entity_file.h"

namespace tarn {

/// Bytes of a section: fixed ones, and those of each of two sorts of things that the header counts.
struct SectionSize {
  size_t fixed = 0, each = 0, each_output = 0;
};
struct HeaderCounts {
  size_t things = 0, outputs = 0;
};

using Header = std::span<const std::byte>;

struct Section {
  std::string_view name;   // as a client knows it
  int32_t mask = 0;        // bits of the kind's masks that select it; a header without is always selected
  bool is_result = false;  // which is there or not; the others are inputs
  SectionSize size;
  /// The memory of its records, in their order.
  Blocks (*blocks)(StoredEntity&);
  /// Makes room for what a file with this header has of it, or for none; null where its size is fixed.
  void (*fit)(StoredEntity&, Header, bool there) = nullptr;
  /// Error `UnknownFormat` for implausible counts in it.
  void (*check)(const StoredEntity&, const std::string& path) = nullptr;
  std::string_view references = {};  // the kind whose references it has; "*": all that no other section has
  bool stays = true;                 // what is there of it stays, while other sections of the entity are loaded
  /// Among results, the piece of its first record that a client chooses. It is loaded and saved with the inputs, and is
  /// no result.
  std::span<std::byte> (*choices)(StoredEntity&) = nullptr;
};

/// A flag of the header that says that one of these sections is there, with its column of the index table.
struct ResultFlag {
  std::string_view column;
  size_t offset;  // in the header, of a `Bool`
  Sections sections = 0;
};

struct SectionForm {
  std::span<const Section> sections;
  std::span<const ResultFlag> result_flags;
  HeaderCounts (*counts)(Header, const std::string& path) = nullptr;  // error `UnknownFormat` for implausible ones
  std::string_view one;                                               // "plant"
  std::string_view missing_file, missing_default = {};                // messages; the path follows, and the end
  std::string_view end_of_message = {};
  bool row_first = false;           // a missing row is told before a missing file
  bool edits_drop_results = false;  // a user's save of inputs, from the file and from memory
  /// The default, where there is no file of it; null: that is an error.
  void (*without_default)(StoredEntity&) = nullptr;
  int32_t (*mask)(const StoredEntity&) = nullptr;  // of loads and saves without one; null: what the object holds
  /// The name that a client gave another file that goes with the entity; the object has it as long as the entity.
  std::string& (*companion)(StoredEntity&) = nullptr;

  size_t first_result() const;
};

/// A record that begins with these bytes; zeros for none.
template <typename R>
R record_in(Header bytes) {
  R record;
  const auto own = std::as_writable_bytes(std::span<R, 1>(&record, 1));
  std::ranges::copy(bytes.first(std::min(bytes.size(), own.size())), own.begin());
  return record;
}

/// Where the files of a kind lie.
struct SectionPlace {
  std::string WorkPath, FilePrefix;
  std::string ResultsPrefix;  // of the files that a calculation makes for entities of the kind; empty: it makes none
};

class SectionFile final : public EntityFile {
 public:
  /// `default_name` is the full path of the default's file; null where that is the file of index 0.
  SectionFile(StoredEntity& entity, const SectionForm& form, SectionPlace& place, std::string* default_name)
      : EntityFile(entity), form_(form), place_(place), default_name_(default_name) {}

  /// Two hexadecimal digits at least: "0A.DAT", "100.DAT"; empty without a prefix.
  std::string path_of(int index) const { return path(place_.FilePrefix, index); }
  /// Of the file that a calculation makes for the entity of an index; empty where it makes none.
  std::string results_path_of(int index) const { return path(place_.ResultsPrefix, index); }
  bool exists(const std::string& path) const;
  /// The bytes that the file of an index begins with; empty where there is none.
  std::vector<std::byte> stored_header(int16_t index) const;
  /// The sections that a mask of the kind selects.
  Sections selected_by(int32_t mask) const;
  bool is_loaded(size_t section) const { return (loaded_ & section_bit(section)) != 0; }
  /// Whether a section of results is there, in the file or to be saved.
  bool is_there(size_t section) const { return (there_ & section_bit(section)) != 0; }
  void set_there(size_t section, bool there);
  /// Whether a section of results has anything but choices.
  bool holds_results(size_t section) const { return hold_anything(calculated(section)); }
  /// The results become absent and zero; what was chosen stays.
  void drop_results();
  /// The object has no entity any more, or another.
  void forget_companion();
  /// All that the object has is its own from now on, whatever was loaded.
  void become_whole() { loaded_ = kAllSections; }
  void write_default(const std::string& path);

  // ---- steps of a save
  /// Error `InvalidCall`: a save of inputs that the object does not hold would empty what the file has.
  void check_loaded(const SaveContext& save) const;
  /// An engine's results are what the object has. A user's save leaves those alone that were neither loaded nor set.
  void select_results(SaveContext& save);
  /// The file has the section no more, but for choices, and once it is written, the object neither.
  void drop(SaveContext& save, size_t section);
  /// The flags of the header that say that results are there become false.
  void clear_result_flags();
  /// A header that is not selected is that of the file. Returns whether it was taken.
  bool take_unselected_header(const SaveContext& save);

  Blocks blocks() const override;
  Blocks inputs() const override;
  bool one_for_each() const override { return true; }
  std::string path_for(int16_t index) const override { return path_of(index); }
  std::vector<std::byte> whole_sections(int16_t index) const override;
  std::string default_path() const override { return default_name_ ? *default_name_ : path_of(0); }
  Sections to_load() const override;
  Sections to_save() const override;
  bool has_references(std::string_view kind, Sections sections) const override;
  /// Error `FileNotFound`.
  void check(std::optional<int16_t> index, std::string_view operation) const override;
  /// Errors `FileNotFound`, `UnknownFormat` for a file that is cut, has implausible counts, or lacks sections that link
  /// rows or flags tell of.
  void read(const LoadContext& load) override;
  bool read_default() override;
  void write(int16_t index, const SaveContext& save) override;
  void write_default() override;
  void remove(int16_t index, bool same_entity) override;
  std::function<void()> keep_state(bool with_results) override;
  void copy(const EntityFile& from, bool content) override;
  void renew() override;
  bool is_cleared_by_edits(const std::byte* field) const override;

 private:
  using Ends = std::vector<uint64_t>;
  struct OldFile {
    std::vector<std::byte> bytes;
    Ends ends;

    /// Empty where the file ends before it.
    std::span<const std::byte> section(size_t number) const;
  };

  std::string path(const std::string& prefix, int index) const;
  std::string companion_path() const;
  size_t count() const { return form_.sections.size(); }
  const Section& section(size_t number) const { return form_.sections[number]; }
  Blocks blocks_of(size_t number) const { return section(number).blocks(entity_); }
  std::span<std::byte> header() const { return blocks_of(0).front(); }
  bool keeps(size_t number, const LoadContext& load, bool same_header, const Ends& ends) const;
  bool may_fail(Sections sections) const;
  /// Where the sections end of a file with this header.
  Ends ends_of(Header header, const std::string& path) const;
  Ends checked_ends(Header header, uint64_t size, const std::string& path) const;
  std::vector<std::byte> header_of_file(const std::string& path) const;
  void fit(size_t number, Header header, bool there);
  void read_sections(const std::string& path, const LoadContext& load);
  void check_inputs(const std::string& path, Sections sections) const;
  void check_lacking(const std::string& path, Header header, const LoadContext& load, Sections in_file) const;
  OldFile old_file(const std::string& path) const;
  uint64_t add_section(size_t number, const SaveContext& save, const OldFile& old, std::vector<std::byte>& out);
  void clear_dropped(const SaveContext& save);

  // ---- choices (section_choices.cpp)
  std::span<std::byte> choices(size_t number) const;
  size_t place_of_choices(size_t number) const;  // in its section
  /// The rest of a section of results, in no order.
  Blocks calculated(size_t number) const;
  bool any_inputs(Sections sections) const;
  void read_choices(const std::string& path, const LoadContext& load, const Ends& ends, Sections in_file);
  bool saves_choices(size_t number, const SaveContext& save) const;
  void add_choices(size_t number, const SaveContext& save, std::span<const std::byte> old, size_t before,
                   std::vector<std::byte>& out);

  void write_file(const std::string& path, const SaveContext& save);
  std::string message(std::string_view begin, const std::string& path) const;

  const SectionForm& form_;
  SectionPlace& place_;
  std::string* default_name_;
  Sections there_ = 0;
  Sections loaded_ = kAllSections;  // that the object holds; all of them where it is new
};

}  // namespace tarn
