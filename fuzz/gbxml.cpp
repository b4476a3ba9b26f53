// Files of drawing programs: what is refused leaves nothing and tells where and why; what is taken comes in once, and
// goes out as a file that can be read. One that begins with an empty line goes into a project that has entities
// already.
#include "tarn/gbxml.h"

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

constexpr const char* kFile = "house.xml";

const Scratch& scratch(bool has_entities) {
  static const Scratch empty([](COM_ProjectData& project) {
    create_project(project);
    write_bytes(project.WorkPath() + "/" + kFile, {});
  });
  static const Scratch filled([](COM_ProjectData& project) {
    make_project(project);
    write_bytes(project.WorkPath() + "/" + kFile, {});
  });
  return has_entities ? filled : empty;
}

void import_and_export(const Scratch& folder, const std::string& file) {
  COM_ProjectData project;
  folder.place(project);
  const std::string path = folder / kFile;
  const auto database = host().database(project.IndexDBName());
  const std::string rows = row_counts(*database);
  {
    Transaction undone;
    write_bytes(path, file);
    const std::string refused = refusal([&] { import_gbxml(project, path, {}); });
    if (refused.empty()) {
      require(import_gbxml(project, path, {}).made == 0, "a second import of the same file has made entities again");
      const std::string exported = refusal([&] { write_bytes(path, export_gbxml(project, {}).text); });
      require(exported.empty() || exported.starts_with("The project has no spaces"), exported);
      const std::string again = refusal([&] { import_gbxml(project, path, {}); });
      require(again.empty(), "what was exported is refused: " + again);
    } else {
      require(row_counts(*database) == rows, "a refused import has left rows: " + refused);
      require(refused.find("Nothing was imported.") != std::string::npos, "the refusal does not say so: " + refused);
    }
  }
  write_bytes(path, {});
  require(row_counts(*database) == rows && folder.change().empty(), "what was rolled back has left something");
}

/// A text or the value of an attribute becomes another, or an element is there twice or is gone.
void change_xml(std::string& text, Mutator& random) {
  constexpr const char* kValues[]{"",    "0",    "-1",    "1e308",    "nan",      "32768",  "0.0001", "x",
                                  "a b", "&#1;", "&amp;", "&#xD800;", "\xC3\xA9", "Meters", "F",      "WPerMeterK"};
  const size_t from = random.below(text.size() + 1);
  if (random.once_in(4)) {
    const size_t start = text.find('<', from), end = text.find("/>", start);
    if (end == std::string::npos) return;
    const std::string element = text.substr(start, end + 2 - start);
    if (random.once_in(2))
      text.insert(start, element);
    else
      text.erase(start, element.size());
    return;
  }
  const bool is_attribute = random.once_in(2);
  const size_t start = text.find(is_attribute ? '"' : '>', from);
  const size_t end = text.find(is_attribute ? '"' : '<', std::min(start, text.size() - 1) + 1);
  if (start != std::string::npos && end != std::string::npos)
    text.replace(start + 1, end - start - 1, random.one_of(kValues));
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  const std::string file(reinterpret_cast<const char*>(data), size);
  const Scratch& folder = scratch(file.starts_with('\n'));
  folder.run([&] { import_and_export(folder, file); });
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    for (size_t changes = 1 + random.below(3); changes > 0 && !text.empty(); --changes) change_xml(text, random);
  });
}
