// What must hold for every input; where it does not, the program ends, and the input is kept as a finding.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tarn/base/error.h"

namespace tarn::fuzz {

inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "finding: %s\n", what.c_str());
  std::abort();
}

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

}  // namespace tarn::fuzz
