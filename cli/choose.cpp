#include "cli/choose.h"

#include <algorithm>
#include <charconv>

#include "base/nearest.h"
#include "project/kinds.h"
#include "storage/links.h"

namespace tarn::cli {
namespace {

struct Candidate {
  int16_t index;
  std::string name;
};

std::vector<Candidate> candidates(Database& database, const Indexed& rows) {
  std::vector<Candidate> all;
  auto found = database.OpenRecordset("SELECT nIndex, szName FROM " + rows.table +
                                      " WHERE nIndex BETWEEN 1 AND 32767 ORDER BY nIndex");
  for (; !found.AtEof(); found.MoveNext())
    all.push_back({static_cast<int16_t>(found.Fields("nIndex").integer()), found.Fields("szName").text()});
  return all;
}

bool is_number(const std::string& word) {
  const size_t first = word.starts_with('-') ? 1 : 0;
  return word.size() > first && word.find_first_not_of("0123456789", first) == std::string::npos;
}

int16_t numbered(const std::string& word, Database& database, const Indexed& rows) {
  int index = 0;
  std::from_chars(word.data(), word.data() + word.size(), index);
  if (index < 1 || index > INT16_MAX)
    throw UsageError("There is no " + rows.one + " " + word + "; indexes are 1 to 32767.");
  const auto nearest = nearest_index(database, rows.table, index);
  if (!nearest) throw UsageError("The project has no " + rows.many + " yet.");
  if (*nearest != index)
    throw UsageError("There is no " + rows.one + " " + word + "; the nearest is " + std::to_string(*nearest) + ".");
  return static_cast<int16_t>(index);
}

/// Those that the word names, by the first of the ways that names any.
std::vector<Candidate> named(const std::string& word, const std::vector<Candidate>& all) {
  std::vector<Candidate> found;
  const auto take = [&](const auto& fit) { std::ranges::copy_if(all, std::back_inserter(found), fit); };
  take([&](const Candidate& each) { return each.name == word; });
  if (found.empty()) take([&](const Candidate& each) { return folded(each.name) == folded(word); });
  if (found.empty()) take([&](const Candidate& each) { return fits(each.name, word); });
  return found;
}

std::string nearest_of(const std::string& word, const std::vector<Candidate>& all) {
  std::vector<std::string_view> names;
  for (const Candidate& each : all) names.push_back(each.name);
  return did_you_mean(word, names);
}

/// "1 South, 4 South-west and 12 more".
std::string told(const std::vector<int16_t>& indexes, Database& database, const Indexed& rows) {
  constexpr size_t kMostTold = 10;
  std::string text;
  size_t count = 0;
  for (const Candidate& each : candidates(database, rows)) {
    if (!std::ranges::binary_search(indexes, each.index) || ++count > kMostTold) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(each.index) + " " + each.name;
  }
  return count > kMostTold ? text + " and " + std::to_string(count - kMostTold) + " more" : text;
}

const std::string& word_of(const Call& call, const Indexed& rows, size_t place) {
  if (call.words.size() <= place)
    throw UsageError("Which " + rows.one + "? Give its number or name: tarn " + call.group + " " + call.verb + " N");
  return call.words[place];
}

UsageError too_many(const std::string& word, const std::vector<int16_t>& indexes, Database& database,
                    const Indexed& rows, const std::string& remedy) {
  return UsageError("\"" + word + "\" names " + std::to_string(indexes.size()) + " " + rows.many + ": " +
                    told(indexes, database, rows) + ". Give the number of one" + remedy + ".");
}

}  // namespace

std::vector<int16_t> indexes_of(const std::string& word, Database& database, const Indexed& rows) {
  if (is_number(word)) return {numbered(word, database, rows)};
  const auto all = candidates(database, rows);
  if (all.empty()) throw UsageError("The project has no " + rows.many + " yet.");
  std::vector<int16_t> indexes;
  for (const Candidate& each : named(word, all)) indexes.push_back(each.index);
  if (!indexes.empty()) return indexes;
  throw UsageError("There is no " + rows.one + " \"" + word + "\"; " + nearest_of(word, all));
}

std::vector<int16_t> all_chosen(const Call& call, Database& database, const Indexed& rows) {
  return indexes_of(word_of(call, rows, 0), database, rows);
}

Indexed rows_of(std::string_view kind) {
  const EntityKind& found = entity_kinds()[*place_of(kind)];
  return {index_table_of(tarn::word_of(*place_of(kind))), std::string(found.one), std::string(found.group),
          std::string(tarn::word_of(*place_of(kind)))};
}

int16_t index_of(const Call& call, Database& database, const Indexed& rows, size_t place) {
  return index_named(word_of(call, rows, place), database, rows);
}

int16_t index_named(const std::string& word, Database& database, const Indexed& rows) {
  const auto indexes = indexes_of(word, database, rows);
  if (indexes.size() > 1) throw too_many(word, indexes, database, rows, "");
  return indexes.front();
}

std::map<std::string, int16_t, std::less<>> indexes_named(const std::string& word, Database& database,
                                                          std::string_view kinds) {
  std::map<std::string, int16_t, std::less<>> found;
  std::vector<Candidate> all;
  std::string ones;
  for (std::string_view rest = kinds; !rest.empty();) {
    const std::string kind(rest.substr(0, rest.find(' ')));
    rest.remove_prefix(std::min(kind.size() + 1, rest.size()));
    const Indexed rows = rows_of(kind);
    ones += (ones.empty() ? "" : " or ") + rows.one;
    const auto here = candidates(database, rows);
    if (!named(word, here).empty()) found.emplace(kind, index_named(word, database, rows));
    all.insert(all.end(), here.begin(), here.end());
  }
  if (found.empty()) throw UsageError("There is no " + ones + " \"" + word + "\"; " + nearest_of(word, all));
  return found;
}

std::vector<int16_t> chosen(const Call& call, Database& database, const Indexed& rows) {
  const auto indexes = all_chosen(call, database, rows);
  if (indexes.size() > 1 && !call.all)
    throw too_many(call.words.front(), indexes, database, rows, ", or --all for all of them");
  return indexes;
}

std::u32string folded(const std::string& text) {
  std::u32string out;
  for (size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i++]);
    char32_t c = byte < 0x80 ? byte : byte < 0xE0 ? byte & 0x1FU : byte & 0x0FU;
    while (i < text.size() && (text[i] & 0xC0) == 0x80) c = c << 6 | (static_cast<unsigned char>(text[i++]) & 0x3FU);
    if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) c += 0x20;
    if (c == 0x152 || c == 0x160 || c == 0x17D) c += 1;  // OE, S and Z with caron
    if (c == 0x178) c = 0xFF;                            // Y with diaeresis
    out += c;
  }
  return out;
}

namespace {

/// The set "[a-f]" or "[!a-f]" at the place, whether it has the character; the place moves to its end. None where it is
/// not closed.
std::optional<bool> in_set(std::u32string_view pattern, size_t& place, char32_t c) {
  const size_t end = pattern.find(U']', place + 2);
  if (end == std::u32string_view::npos) return std::nullopt;
  const bool without = pattern[place + 1] == U'!';
  bool has = false;
  for (size_t i = place + (without ? 2 : 1); i < end; ++i) {
    const bool range = i + 2 < end && pattern[i + 1] == U'-';
    has = has || (range ? c >= pattern[i] && c <= pattern[i + 2] : c == pattern[i]);
    if (range) i += 2;
  }
  place = end;
  return has != without;
}

/// Whether one character of the pattern, other than '*', takes the character; `place` is its last one.
bool takes(std::u32string_view pattern, size_t& place, char32_t c) {
  if (pattern[place] == U'?') return true;
  if (pattern[place] == U'[') {
    if (const auto has = in_set(pattern, place, c)) return *has;
  }
  return pattern[place] == c;
}

}  // namespace

bool fits(const std::string& text, const std::string& pattern) {
  const std::u32string in = folded(text), by = folded(pattern);
  size_t at = 0, place = 0, star = std::u32string::npos, after_star = 0;
  while (at < in.size()) {
    if (place < by.size() && by[place] == U'*') {
      star = place++;
      after_star = at;
      continue;
    }
    size_t last = place;
    if (place < by.size() && takes(by, last, in[at])) {
      place = last + 1;
      ++at;
    } else if (star != std::u32string::npos) {  // the star takes one more
      place = star + 1;
      at = ++after_star;
    } else {
      return false;
    }
  }
  return by.find_first_not_of(U'*', place) == std::u32string::npos;
}

}  // namespace tarn::cli
