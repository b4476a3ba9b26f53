// Names of members and classes, taken from the compiler's spelling of a template argument, so that none is typed.
#pragma once

#include <array>
#include <string_view>

namespace tarn {

namespace detail {

/// The last identifier of what the compiler writes for a template argument: "... [with auto P = &Record::Name; ...]".
constexpr std::string_view last_identifier(std::string_view text) {
  text = text.substr(text.find(" = ") + 3);
  text = text.substr(0, text.find_first_of(";]"));
  return text.substr(text.rfind("::") + 2);
}

template <auto P>
constexpr std::string_view spelled() {
  return last_identifier(__PRETTY_FUNCTION__);
}
template <typename T>
constexpr std::string_view spelled() {
  return last_identifier(__PRETTY_FUNCTION__);
}

/// The identifier again, ended by a NUL, as C clients need it.
template <size_t N>
constexpr auto ended(std::string_view name) {
  std::array<char, N + 1> chars{};
  for (size_t i = 0; i < N; ++i) chars[i] = name[i];
  return chars;
}
template <auto P>
inline constexpr auto member_chars = ended<spelled<P>().size()>(spelled<P>());
template <typename T>
inline constexpr auto class_chars = ended<spelled<T>().size()>(spelled<T>());

}  // namespace detail

template <auto P>
constexpr std::string_view member_name() {
  return {detail::member_chars<P>.data(), detail::member_chars<P>.size() - 1};
}

template <typename T>
constexpr std::string_view class_name() {
  return {detail::class_chars<T>.data(), detail::class_chars<T>.size() - 1};
}

}  // namespace tarn
