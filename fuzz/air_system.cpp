// Damaged air-system files and exchange texts: nothing crashes, a failed load leaves the object as it was and names the
// file, what was loaded can be saved and loaded again, and a failed import changes nothing.
#include <sanitizer/common_interface_defs.h>
#include <stdlib.h>

#include <chrono>
#include <cstdio>

#include "finding.h"
#include "mutate.h"
#include "sample.h"
#include "tarn/exchange.h"
#include "tarn/platform/workspace.h"

namespace tarn::fuzz {
namespace {

/// Runs what may be refused; the refusal's text, empty where it was done.
template <typename F>
std::string refusal(F action) {
  try {
    action();
    return {};
  } catch (const Error& error) {
    require(!error.description().empty(), "an error without a text");
    return error.description();
  }
}

int32_t random_mask(Mutator& random) {
  constexpr int32_t kMasks[]{CCM_HEADERMASK, CCM_INPUTMASK, CCM_SIZINGMASK, 0x03C00000, CCM_MASKALL, CCM_MASKALL};
  int32_t mask = 0;
  for (size_t i = 0; i <= random.below(3); ++i) mask |= random.one_of(kMasks);
  return mask;
}

/// Loads, and checks that a failure changes nothing.
bool loads(AS_AirSystem& system, const std::string& file) {
  const State before = state_of(system);
  const std::string refused = refusal([&] { system.Load(1); });
  if (refused.empty()) return true;
  require(refused.find(file) != std::string::npos, "the error of Load does not name the file: " + refused);
  const std::string change = difference(before, state_of(system));
  require(change.empty(), "after a failed Load " + change);
  return false;
}

void save_and_load(Sample& sample, AS_AirSystem& system, Mutator& random, bool after_calculations) {
  if (random.once_in(8)) system.SetMask(random_mask(random), CCM_MASKALL);
  if (random.once_in(8)) system.GetAirSystem()->SetNumZones(static_cast<int16_t>(random.below(5)));
  if (random.once_in(8)) system.GetAirSystem()->SetFlags();
  const std::string bytes = bytes_of(sample.file());
  const State before = state_of(system);
  const std::string refused = refusal([&] { Sample::save(system, after_calculations); });
  if (!refused.empty()) {
    require(bytes_of(sample.file()) == bytes, "a failed Save has changed the file: " + refused);
    const std::string change = difference(before, state_of(system));
    require(change.empty(), "after a failed Save " + change + ": " + refused);
    return;
  }
  const auto again = sample.project.NewAirSystem();
  require(loads(*again, sample.file()), "what was saved does not load");
  Sample::save(*again, true);
  const std::string saved = bytes_of(sample.file());
  require(loads(*again, sample.file()), "what was saved again does not load");
  Sample::save(*again, true);
  require(bytes_of(sample.file()) == saved, "a Save of what was loaded changes the file");
}

void file_case(Sample& sample, const std::string& bytes, Mutator& random) {
  sample.reset_rows();
  const auto system = sample.project.NewAirSystem();
  sample.put(sample.files()[random.below(sample.files().size())]);
  system->SetMask(random_mask(random), CCM_MASKALL);
  require(loads(*system, sample.file()), "a valid file does not load");
  sample.put(bytes);
  system->SetMask(random_mask(random), CCM_MASKALL);
  if (!loads(*system, sample.file())) return;
  const bool user_first = random.once_in(2);
  save_and_load(sample, *system, random, !user_first);
  save_and_load(sample, *system, random, user_first);
}

void file_case(Sample& sample, Mutator& random) {
  const auto& files = sample.files();
  std::string bytes = files[random.below(files.size())];
  const std::string& other = files[random.below(files.size())];
  constexpr size_t kCounts[]{34, 48, 36, 38};  // zones, outputs and what lies by them
  for (size_t changes = random.below(4); changes > 0; --changes) {
    if (random.once_in(3))
      random.set_number(bytes, random.once_in(2) ? random.one_of(kCounts) : 2 * random.below(bytes.size() / 2));
    else
      random.change_bytes(bytes, other);
  }
  file_case(sample, bytes, random);
}

void text_case(Sample& target, const std::string& text, Mutator& random) {
  std::string changed = text;
  for (size_t changes = 1 + random.below(3); changes > 0; --changes) {
    if (random.once_in(6))
      random.change_bytes(changed, text);
    else
      random.change_json(changed);
  }
  const std::string rows = target.counts(), files = target.listing();
  {
    Transaction undone;
    const std::string refused = refusal([&] { import_project(target.project, changed, {}); });
    if (!refused.empty()) {
      require(target.counts() == rows, "a failed import has left rows: " + refused);
      require(refused.find("line ") != std::string::npos, "the error of an import names no place: " + refused);
    } else {
      refusal([&] { export_project(target.project, {}, [](size_t, size_t) {}); });
    }
  }
  require(target.counts() == rows && target.listing() == files, "an import that is rolled back has left something");
}

int run(int seconds, unsigned long long first, bool once) {
  std::string folder = (std::filesystem::temp_directory_path() / "tarn-fuzz-XXXXXX").string();
  folder = mkdtemp(folder.data());
  size_t done = 0, findings = 0;
  {
    Sample sample(folder + "/files"), target(folder + "/texts");
    sample.fill();
    sample.put(sample.files().back());
    const std::string text = export_project(sample.project, {}, [](size_t, size_t) {});
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    for (seed_at_work = first; std::chrono::steady_clock::now() < end; ++seed_at_work) {
      ++done;
      Mutator random(seed_at_work);
      try {
        if (random.once_in(4))
          text_case(target, text, random);
        else
          file_case(sample, random);
      } catch (const std::exception& found) {
        ++findings;
        std::printf("seed %llu: %s\n", seed_at_work, found.what());
        std::fflush(stdout);
      }
      if (once) break;
    }
  }
  std::filesystem::remove_all(folder);
  std::printf("%zu iterations from seed %llu, %zu findings\n", done, first, findings);
  return findings == 0 ? 0 : 1;
}

}  // namespace
}  // namespace tarn::fuzz

/// tarn_fuzz [seconds] [first seed], or tarn_fuzz 0 seed for one seed alone
int main(int count, char** arguments) {
  __sanitizer_set_death_callback(tarn::fuzz::name_seed);
  const int seconds = count > 1 ? std::atoi(arguments[1]) : 600;
  const auto first = count > 2 ? std::strtoull(arguments[2], nullptr, 10)
                               : static_cast<unsigned long long>(std::random_device()()) << 20;
  return tarn::fuzz::run(seconds == 0 ? 60 : seconds, first, seconds == 0);
}
