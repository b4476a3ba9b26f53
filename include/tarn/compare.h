// What differs between two projects, or a project and an exchange text: by the entities' names, field by field.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tarn/base/value.h"
#include "tarn/project.h"

namespace tarn {

struct Difference {
  std::string kind;      // "Wall"; "Preferences"
  std::string name;      // of the entity; "default" for the kind's default record
  std::string property;  // "Layer(2).Thickness"; empty where one side alone has the entity
  std::string unit;      // of the file
  Value first, second;   // empty on a side that has no such entity or field; of a reference the name it leads to
  std::string first_text = {}, second_text = {};  // of a code what a person reads; else empty
};

struct CompareOptions {
  double tolerance = 1e-6;  // relative, of real numbers
};

/// One side of a comparison.
class Comparable {
 public:
  virtual ~Comparable() = default;

  struct Entry {
    int16_t index;  // 0 for the default
    std::string name;
  };
  /// The kind's entities by index, the default first where there is one; `kind` is a place in `entity_kinds()`.
  virtual const std::vector<Entry>& entries(size_t kind) = 0;
  /// One of these, in an object that the next one may fill again.
  virtual Object& entity(size_t kind, int16_t index) = 0;
  /// Null where this side has none.
  virtual Object* preferences() = 0;
};

/// A project that is open, as it was committed last. Error as for any load.
std::unique_ptr<Comparable> comparable_project(COM_ProjectData& project);
/// A text of `export_project`. Errors `TypeMismatch` for another text, `InvalidCall` for one that leaves fields out.
std::unique_ptr<Comparable> comparable_text(const std::string& text);

/// By kind, in the order of the first side's names; then what the second has alone.
std::vector<Difference> compare(Comparable& first, Comparable& second, const CompareOptions& options = {});

/// As a JSON array, for the faces.
std::string differences_json(const std::vector<Difference>& differences);

}  // namespace tarn
