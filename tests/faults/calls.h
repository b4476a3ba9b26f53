// Every file call of this program, of the engine's library and of our own code alike: its functions stand before those
// of the system's library. A watched call may be recorded, refused, cut short, or be the last that the process makes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tarn::faults {

enum class Kind : uint8_t { Open, Create, Read, Write, Truncate, Sync, Remove, Rename };

struct Call {
  Kind kind;
  std::string path;
  std::string to = {};                    // of a rename
  uint64_t offset = 0;                    // of a read and a write; the size of a truncation
  std::span<const std::byte> bytes = {};  // of a write
  bool changes() const { return kind != Kind::Open && kind != Kind::Read; }
};

enum class Fate : uint8_t { Passes, DiesBefore, DiesTorn, DiesAfter, Fails, IsFull, IsShort };
constexpr int kDied = 77;  // exit status

/// Asked before each call on a file in `folder`. Nothing is synced while calls are watched: the system outlives the
/// process. Null ends it.
void watch(const std::string& folder, std::function<Fate(const Call&)> fate);

}  // namespace tarn::faults
