// Where the bytes of an entity lie, and the memory that they fill: a record among others of its kind
// (storage/record_file.h), or a file of its own in sections (storage/section_file.h).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/storage/blocks.h"

namespace tarn {

class IndexRow;
class StoredEntity;

/// A set of sections of a file, a bit each; section 0, the lowest bit, is the header. A record is one section.
using Sections = uint32_t;
inline constexpr Sections kAllSections = ~Sections{0};
constexpr Sections section_bit(size_t section) { return Sections{1} << section; }

/// Whether a save gives a nameless entity its default name.
enum class Naming : uint8_t { Valid, AsItIs };

/// What one save is, from its call to the file.
struct SaveContext {
  enum class Form : uint8_t {
    Edited,   // by a user or a calculation, under the rules of the kind
    AsGiven,  // as the object is: an exchange
    Default   // the kind's default: inputs, without results and without a row
  };
  Form form = Form::Edited;
  Naming naming = Naming::Valid;
  bool after_calculations = false;   // by an engine: the results that are selected are what the object has
  Sections sections = kAllSections;  // that are written; the others stay as the file has them
  Sections choices = 0;              // of others, what the client chose is written
  Sections dropped = 0;              // that go, as results of other inputs

  bool selects(size_t section) const { return (sections & section_bit(section)) != 0; }
  bool by_user() const { return form == Form::Edited && !after_calculations; }
};

/// What one load is.
struct LoadContext {
  int16_t index;
  Sections sections;
  bool same_entity;     // as the object has by now
  const IndexRow* row;  // of the index table; null where there is none
  /// Runs before the object changes; with false nothing can fail any more.
  std::function<void(bool may_fail)> begin;
  std::function<void()> inputs_read;  // what may fail on the inputs; runs before results are read
};

class EntityFile {
 public:
  explicit EntityFile(StoredEntity& entity) : entity_(entity) {}
  virtual ~EntityFile() = default;

  /// Memory of all that the file has, in its order; without results.
  virtual Blocks blocks() const = 0;
  virtual Blocks inputs() const { return blocks(); }
  /// Each entity has a file, which is there without a row.
  virtual bool one_for_each() const = 0;
  /// The file that has the bytes of the entity of an index; empty where it has no name.
  virtual std::string path_for(int16_t index) const = 0;
  /// What is left of a damaged file whose inputs are whole: its whole sections, with a header that tells of no others.
  /// Empty where inputs are lost.
  virtual std::vector<std::byte> whole_sections(int16_t /*index*/) const { return {}; }
  /// The file of the default.
  virtual std::string default_path() const = 0;
  /// What a load means that names no sections, and what a save.
  virtual Sections to_load() const { return kAllSections; }
  virtual Sections to_save() const { return kAllSections; }
  /// Whether references of the kind are in one of the sections.
  virtual bool has_references(std::string_view /*kind*/, Sections /*sections*/) const { return true; }

  /// Before anything else of a load, or of becoming the default. Error for a file that cannot be read; `operation` is
  /// its source.
  virtual void check(std::optional<int16_t> index, std::string_view operation) const = 0;
  virtual void read(const LoadContext& load) = 0;
  /// False where there is no default.
  virtual bool read_default() = 0;
  virtual void write(int16_t index, const SaveContext& save) = 0;
  virtual void write_default() = 0;
  /// `same_entity`: it is the one that the object has, or the object has none.
  virtual void remove(int16_t /*index*/, bool /*same_entity*/) {}

  /// Puts back what a failed or rolled-back operation has changed besides the bytes of the inputs.
  virtual std::function<void()> keep_state(bool /*with_results*/) { return {}; }
  /// Takes where the files of another entity of the kind lie, and with `content` what its file has besides the inputs.
  virtual void copy(const EntityFile& from, bool content) = 0;
  /// Nothing of the last entity stays: the object is another one.
  virtual void renew() {}
  /// Whether a field of the object is a result that a user's save of inputs makes zero.
  virtual bool is_cleared_by_edits(const std::byte* /*field*/) const { return false; }

 protected:
  StoredEntity& entity_;
};

}  // namespace tarn
