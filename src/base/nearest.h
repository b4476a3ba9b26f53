// Words as people type them: alike without regard to case, and the nearest right one for error messages.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tarn {

/// The same letters, whatever their case.
bool same_word(std::string_view a, std::string_view b);

/// The candidate with the fewest edits (letter case ignored); empty when there are no candidates.
std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates);

/// "did you mean X?"; "there is none." without candidates.
std::string did_you_mean(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace tarn
