// Entities as a person names them: by number, by name, or by a pattern.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/command.h"

namespace tarn::cli {

/// How messages call the rows of an index table: "air system" and "air-systems"; "System" in links.
struct Indexed {
  std::string table, one, many, kind = {};
};

/// The indexes that a word names, in their order: a number; else the entities with just that name, else those with the
/// name without regard to case, else those that fit the pattern. Error `UsageError` where there is none; the message
/// names the nearest.
std::vector<int16_t> indexes_of(const std::string& word, Database& database, const Indexed& rows);
/// The one that a word of the call names, the first one unless another place is given. Error `UsageError` also where
/// there are several: the message lists them.
int16_t index_of(const Call& call, Database& database, const Indexed& rows, size_t place = 0);
/// The one that a word names. Error `UsageError` as above.
int16_t index_named(const std::string& word, Database& database, const Indexed& rows);
/// The one that a word names in each of several kinds, "Chiller Boiler", by the kind; none for a kind that has no such.
/// Error `UsageError` where no kind has one, or a kind several.
std::map<std::string, int16_t, std::less<>> indexes_named(const std::string& word, Database& database,
                                                          std::string_view kinds);
/// The rows of a kind by the word for it, "Wall" or "walls".
Indexed rows_of(std::string_view kind);
/// As many as the first word names with --all, else the one.
std::vector<int16_t> chosen(const Call& call, Database& database, const Indexed& rows);
/// As many as the first word names.
std::vector<int16_t> all_chosen(const Call& call, Database& database, const Indexed& rows);

/// Whether a text fits a pattern: '*' is any text, '?' one character, "[a-f]" one of several. Upper and lower case are
/// the same, in the letters of code page 1252.
bool fits(const std::string& text, const std::string& pattern);
/// The text in lower case, for comparisons.
std::u32string folded(const std::string& text);

}  // namespace tarn::cli
