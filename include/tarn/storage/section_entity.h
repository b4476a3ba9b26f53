// An entity with a file of its own, in sections.
#pragma once

#include "tarn/storage/entity.h"
#include "tarn/storage/section_file.h"

namespace tarn {

class SectionEntity : public StoredEntity, public SectionPlace {
 public:
  /// Index 0; with true also no name and no changed flags.
  void Reset(std::optional<bool> bResetAll = {});
  /// No other entity of the kind has the name (its own, where none is given).
  bool IsNameUnique(const std::optional<std::string>& sName = {}) const;
  /// The results become absent and zero.
  void drop_results() { sections_.drop_results(); }
  /// What it has now is another entity's from the start: inputs of its own, no results.
  void begin_anew();

 protected:
  /// `default_name` is the full path of the default's file; null where that is the file of index 0.
  explicit SectionEntity(const SectionForm& form, std::string* default_name = nullptr)
      : StoredEntity(sections_), sections_(*this, form, *this, default_name) {}

  /// Whether a section of results is there, as members tables take it for the parts of the section.
  template <size_t S>
  int there() const {
    return sections_.is_there(S) ? 1 : 0;
  }
  template <size_t S>
  void set(int count) {
    sections_.set_there(S, count > 0);
  }
  /// The sections that a mask selects.
  void load_selected(int32_t mask, int32_t index) { load(index, sections_.selected_by(mask)); }
  void save_selected(int32_t mask, bool after_calculations) {
    save({.after_calculations = after_calculations, .sections = sections_.selected_by(mask)});
  }

  SectionFile sections_;
};

/// What is sized and simulated.
struct Sized {
  bool DesHasChanged = false;  // since the last sizing
  bool SimHasChanged = false;  // since the last simulation
};

}  // namespace tarn
