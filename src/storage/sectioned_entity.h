// An entity with a file of its own: packed records in sections, the header first. Sections are loaded and saved as they
// are selected; a file ends where one of its sections ends, and is replaced whole.
#pragma once

#include <vector>

#include "storage/entity.h"

namespace tarn {

class SectionedEntity : public StoredEntity {
 public:
  std::string WorkPath, FilePrefix;

  /// Index 0; with true also no name and no changed flags.
  void Reset(std::optional<bool> bResetAll = {});
  /// No other entity of the kind has the name (its own, where none is given).
  bool IsNameUnique(const std::optional<std::string>& sName = {}) const;
  /// The selected sections of the entity's file. Errors `FileNotFound`, `UnknownFormat` for a file that is cut inside a
  /// section or has counts out of sense; the object is left as it was.
  void Load(int16_t nRecNum) override;
  /// The results become absent and zero.
  void drop_results();
  std::string default_file() const override { return file_of(0); }
  std::vector<std::span<std::byte>> layout() override;
  void set_changed() override { set_flags(true); }

 protected:
  using Blocks = std::vector<std::span<std::byte>>;
  using Ends = std::vector<uint64_t>;
  /// A changed flag: its column of the index row, which alone keeps it, and its place in the object.
  struct RowFlag {
    std::string_view column;
    bool* flag;
  };

  // ---- what a kind declares
  /// Where the sections of a file end that begins with these bytes, the header's size of them. Error `UnknownFormat`
  /// for counts out of sense.
  virtual Ends ends_of(std::span<const std::byte> header, const std::string& path) const = 0;
  /// The memory of a section's records, in their order; section 0 is the header.
  virtual Blocks blocks(size_t section) = 0;
  virtual size_t section_count() const = 0;
  /// Sections from this one on are results, which are there or not; those before it are the inputs.
  virtual size_t first_result() const = 0;
  virtual bool selected(size_t section) const = 0;
  /// Whether a section of results that is not selected stays as the object has it.
  virtual bool keeps(size_t /*section*/) const { return false; }
  /// Makes room for the records of a section of the file with this header, or for none.
  virtual void make_room(size_t /*section*/, std::span<const std::byte> /*header*/, bool /*there*/) {}
  /// What there is to say of a file that is not there.
  virtual std::string no_file_message(const std::string& path) const = 0;
  virtual std::vector<RowFlag> row_flags() = 0;
  /// Of a name, in characters.
  virtual size_t name_width() const { return 30; }
  /// The index table's rows, at that of an entity, or with no match.
  virtual Recordset row_of(int16_t index) const;
  /// For an entity without an index row.
  virtual void no_row(int16_t /*index*/) {}
  /// Error `UnknownFormat` for counts out of sense in the inputs that were read.
  virtual void check_counts(const std::string& /*path*/) const {}

  // ---- what it is given
  /// Two hexadecimal digits at least: "0A.DAT", "100.DAT"; empty without a prefix.
  std::string file_of(int index) const;
  bool has_file(const std::string& path) const;
  size_t header_size() const;
  std::vector<std::byte> header_of_file(const std::string& path) const;
  void clear(size_t section);
  /// `StoredEntity::Save`, by a user or after calculations.
  void save(bool after_calculations);
  /// Only a calculation takes a changed flag away: those of the index row stay, where the object has lost them.
  void keep_flags_of_row();
  void set_flags(bool changed);
  /// The selected sections of a file. What may fail on their contents runs when the inputs are read: a failure then
  /// leaves the results as they were, and the inputs are those of `record`.
  void read_sections(
      const std::string& path, const std::function<void()>& inputs_read = [] {});
  /// Whether a section of results is there, in the file or to be saved.
  bool is_there(size_t section) const { return there_[section]; }
  void set_there(size_t section, bool there) { there_[section] = there; }
  /// The same as members tables take them, for the parts of a section.
  template <size_t S>
  int there() const {
    return is_there(S) ? 1 : 0;
  }
  template <size_t S>
  void set(int count) {
    set_there(S, count > 0);
  }
  /// A header that the mask does not select is that of the file. Returns whether it was taken.
  bool take_unselected_header();
  /// Writes the file with the selected sections, the others as the old file has them; of results none where they are
  /// dropped.
  void write_file(const std::string& path, bool with_results);

  /// Header and inputs; what a failed operation puts back.
  std::vector<std::byte> record() const override;
  void set_record(std::span<const std::byte> bytes) override;
  void remove_files(int16_t index) override;
  void copy_memory(const StoredEntity& from, bool record_too) override;
  std::function<void()> keep_rest() override;
  void before_restore() override;

  bool after_calculations_ = false;  // the save at work is an engine's
  bool as_given_ = false;            // the save at work stores the object as it is

 private:
  struct OldFile {
    std::vector<std::byte> bytes;
    Ends ends;
  };
  OldFile old_file(const std::string& path) const;
  Ends checked_ends(std::span<const std::byte> header, uint64_t size, const std::string& path) const;
  uint64_t add_section(size_t section, const OldFile& old, std::vector<std::byte>& out);

  static constexpr size_t kMostSections = 16;
  std::array<bool, kMostSections> there_{};
};

/// One that is sized and simulated.
template <typename Base>
class Sized : public Base {
 public:
  bool DesHasChanged = false;  // since the last sizing
  bool SimHasChanged = false;  // since the last simulation

 protected:
  std::vector<SectionedEntity::RowFlag> row_flags() override {
    return {{"bDesHasChanged", &DesHasChanged}, {"bSimHasChanged", &SimHasChanged}};
  }
};

}  // namespace tarn
