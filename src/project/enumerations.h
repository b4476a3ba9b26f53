// Every enumeration of the interface, with its codes: what C, Python and the command line know of them.
#pragma once

#include <span>
#include <string_view>

#include "tarn/base/labels.h"

namespace tarn {

struct Enumeration {
  std::string_view name;  // ended by a NUL
  std::span<const Label> codes;
  const Label* of_members;  // where the codes of its members begin; a member with a choice of its own has others
};

/// By name.
std::span<const Enumeration> enumeration_list();

/// Letter case does not matter; null where there is none.
const Enumeration* find_enumeration(std::string_view name);

/// The enumeration whose codes a member lists; null for none.
const Enumeration* enumeration_of(std::span<const Label> codes_of_member);

}  // namespace tarn
