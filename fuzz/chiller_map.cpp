// Performance maps of chillers: a map is taken, and gives a chiller that can be saved, or it is refused with the file's
// name and leaves the chiller as it was.
#include "finding.h"
#include "mutate.h"
#include "scratch.h"
#include "state.h"
#include "tarn/chiller.h"
#include "tarn/chiller_import.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn;
  using namespace tarn::fuzz;
  static const Scratch scratch;
  static const std::string file = scratch / "map.json";
  write_bytes(file, std::string(reinterpret_cast<const char*>(data), size));
  CHL_Chiller chiller;
  const std::string before = state_of(chiller);
  const std::string refused = refusal([&] { import_chiller(chiller, file); });
  if (refused.empty()) return 0;
  require(refused.find(file) != std::string::npos, "a refusal names no file: " + refused);
  const std::string change = difference(before, state_of(chiller));
  require(change.empty(), "a refusal has changed the chiller: " + change);
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    for (size_t changes = 1 + random.below(3); changes > 0; --changes) random.change_json(text);
  });
}
