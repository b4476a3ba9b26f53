// What a fuzzer found, and the seed by which it is found again.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

namespace tarn::fuzz {

inline unsigned long long seed_at_work = 0;

/// Called when a sanitizer ends the program.
inline void name_seed() { std::fprintf(stderr, "seed %llu\n", seed_at_work); }

class Finding : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline void require(bool holds, const std::string& what) {
  if (!holds) throw Finding(what);
}

}  // namespace tarn::fuzz
