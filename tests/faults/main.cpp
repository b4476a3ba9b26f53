// tarn_faults calls [ONE_IN] | processes [SECONDS] | power [STATES]; all of them without a word.
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "parts.h"

int main(int count, char** words) {
  using namespace tarn::faults;
  constexpr struct {
    const char* name;
    bool (*run)(int);
    int usual;
  } kParts[]{{"calls", every_call, 2}, {"processes", processes, 60}, {"power", power_loss, 10'000}};
  bool right = true, known = count < 2;
  for (const auto& part : kParts) {
    if (count > 1 && std::strcmp(words[1], part.name) != 0) continue;
    known = true;
    right = part.run(count > 2 ? std::max(std::atoi(words[2]), 1) : part.usual) && right;
  }
  if (!known) std::cerr << "tarn_faults [calls ONE_IN | processes SECONDS | power STATES]\n";
  return known && right ? 0 : 1;
}
