// Texts of projects: what is refused leaves nothing and names its place; what is taken comes out as a text that gives
// the same project again. A text that begins with a blank goes into a project that has entities already.
#include "tarn/exchange.h"

#include "finding.h"
#include "mutate.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "row_counts.h"
#include "scratch.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::fuzz {
namespace {

const Scratch& scratch(bool has_entities) {
  static const Scratch empty([](COM_ProjectData& project) { create_index(project.IndexDBName()); });
  static const Scratch filled(make_project);
  return has_entities ? filled : empty;
}

void no_progress(size_t, size_t) {}

void import_and_export(bool has_entities, const std::string& text) {
  const Scratch& folder = scratch(has_entities);
  COM_ProjectData project;
  folder.place(project);
  const auto database = host().database(project.IndexDBName());
  const std::string rows = row_counts(*database);
  std::string out;
  {
    Transaction undone;
    const std::string refused = refusal([&] { import_project(project, text, no_progress); });
    if (refused.empty()) {
      out = export_project(project, {}, no_progress);
    } else {
      require(row_counts(*database) == rows, "a failed import has left rows: " + refused);
      require(refused.find("line ") != std::string::npos, "the error of an import names no place: " + refused);
    }
  }
  require(row_counts(*database) == rows && folder.change().empty(), "an import that is rolled back has left something");
  if (out.empty() || has_entities) return;
  Transaction undone;
  const std::string refused = refusal([&] { import_project(project, out, no_progress); });
  require(refused.empty(), "what was exported is refused: " + refused);
  require(export_project(project, {}, no_progress) == out, "what was exported comes out otherwise after an import");
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const bool has_entities = text.starts_with(' ');
  scratch(has_entities).run([&] { import_and_export(has_entities, text); });
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    for (size_t changes = 1 + random.below(3); changes > 0; --changes) random.change_json(text);
  });
}
