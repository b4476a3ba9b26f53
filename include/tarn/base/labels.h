// Enumerations beside their records: each code with the name that code uses and the text that a person reads.
// The value stands in the enumeration, the text in the table after it. The name is the enumerator's own, as the
// compiler spells it, unless the table gives another one.
//
//   enum class BLR_BoilerTypes : int16_t { BT_HOTWATER = 0, BT_STEAM = 1 };
//   template <>
//   inline constexpr CodeText<BLR_BoilerTypes> code_table<BLR_BoilerTypes>[] = {
//       {BLR_BoilerTypes::BT_HOTWATER, "hot water"}, {BLR_BoilerTypes::BT_STEAM, "steam"}};
//
// `labels<BLR_BoilerTypes>` is made of it where it is used, so that a header with codes costs next to nothing.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace tarn {

/// Neither the name nor the text need be an identifier, the text may be empty, and two names may share a code (the
/// first wins when a code is looked up). Both end with a NUL, as C clients need it.
struct Label {
  int32_t code;
  std::string_view name;
  std::string_view text;
};

/// A row of an enumeration's table. Of enumerators with one value the compiler spells the first alone: the rows of the
/// others give their name.
template <typename E>
struct CodeText {
  E code;
  const char* text = "";
  const char* name = nullptr;
};

/// A row of an enumeration whose texts are its names.
template <typename E>
struct CodeTitle {
  E code;
  const char* text;
  const char* name = text;
};

/// Specialised after each enumeration: an array of one of the rows above, or `codes_between`.
template <typename E>
inline constexpr std::array<CodeText<E>, 0> code_table{};

/// The table of an enumeration without texts, for which each value from the first to the last has an enumerator.
template <auto First, auto Last>
inline constexpr auto codes_between = [] {
  std::array<CodeText<decltype(First)>, static_cast<int>(Last) - static_cast<int>(First) + 1> rows{};
  for (size_t i = 0; i < rows.size(); ++i) rows[i].code = static_cast<decltype(First)>(static_cast<int>(First) + i);
  return rows;
}();

namespace detail {

/// Of a whole enumeration at once: "... = {tarn::E::A, tarn::E::B}]" or "... = <tarn::E::A, tarn::E::B>]".
template <auto... Codes>
constexpr auto spelled_codes() {
  constexpr std::string_view function = __PRETTY_FUNCTION__;
  constexpr size_t first = function.find(" = ") + 4;  // and two characters after the last code
  std::array<char, function.size() - first - 1> chars{};
  for (size_t i = 0; i + 1 < chars.size(); ++i) chars[i] = function[first + i] == ',' ? '\0' : function[first + i];
  return chars;
}

/// "tarn::E::A", " tarn::E::B", each ended by a NUL.
template <auto... Codes>
inline constexpr auto code_chars = spelled_codes<Codes...>();

/// The identifier in "tarn::E::A". A value without an enumerator, "(tarn::E)5", does not compile.
constexpr std::string_view identifier(std::string_view spelled) {
  const std::string_view last = spelled.substr(spelled.rfind(':') + 1);
  if (last.find(')') != std::string_view::npos) throw "a code of the table has no enumerator";
  return last;
}

template <const auto& Table, size_t... Row>
constexpr auto make_labels(std::index_sequence<Row...>) {
  constexpr auto& chars = code_chars<Table[Row].code...>;
  std::array<Label, sizeof...(Row)> made{};
  const char* spelled = chars.data();
  for (size_t i = 0; i < made.size(); ++i) {
    const std::string_view own = spelled;
    spelled += own.size() + 1;
    const auto& row = Table[i];
    made[i] = {static_cast<int32_t>(row.code), row.name ? std::string_view(row.name) : identifier(own), row.text};
  }
  return made;
}

}  // namespace detail

/// The labels of a table.
template <const auto& Table>
inline constexpr auto labels_of = detail::make_labels<Table>(std::make_index_sequence<std::size(Table)>());

/// The labels of an enumeration; none for one without a table.
template <typename E>
inline constexpr std::span<const Label> labels = labels_of<code_table<E>>;

/// The display text of a code; empty for a code outside the table.
std::string_view text_of(std::span<const Label> table, int32_t code);

}  // namespace tarn
