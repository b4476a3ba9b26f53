#include "platform/query_shape.h"

#include <algorithm>
#include <cctype>

#include "base/nearest.h"
#include "tarn/platform/statement.h"

namespace tarn {
namespace {

/// The text of a key, empty where it is yet to be made. A client that writes values into its criteria does not fill the
/// memory.
std::string& kept(std::unordered_map<std::string, std::string>& texts, const std::string& key) {
  constexpr size_t kMost = 100;
  if (texts.size() > kMost) texts.clear();
  return texts[key];
}

struct Token {
  enum class Kind : uint8_t { End, Word, Name, Other };  // a name stands in quotes of its own
  Kind kind = Kind::End;
  std::string_view text;
  size_t at = 0;

  bool is(std::string_view word) const { return kind == Kind::Word && same_word(text, word); }
  bool is_mark(char mark) const { return kind == Kind::Other && text.size() == 1 && text[0] == mark; }
  bool names() const { return kind == Kind::Word || kind == Kind::Name; }
  size_t end() const { return at + text.size(); }
};

bool is_word_start(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || (c & 0x80) != 0; }
bool is_word_part(char c) { return is_word_start(c) || (c >= '0' && c <= '9') || c == '$'; }

/// Where a quoted text or name ends that begins at a place; a doubled quote is a character of it.
size_t end_of_quoted(std::string_view sql, size_t at) {
  const char quote = sql[at] == '[' ? ']' : sql[at];
  for (size_t end = at + 1; end < sql.size(); ++end) {
    if (sql[end] != quote) continue;
    if (quote == ']' || end + 1 == sql.size() || sql[end + 1] != quote) return end + 1;
    ++end;
  }
  return sql.size();
}

bool opens_quote(char c) { return std::string_view("'\"`[").find(c) != std::string_view::npos; }

/// A blank takes the place of each comment: more can then be written after the text.
std::string without_comments(std::string_view sql) {
  std::string text;
  for (size_t at = 0; at < sql.size();) {
    size_t end = at + 1;
    if (opens_quote(sql[at])) end = end_of_quoted(sql, at);
    const std::string_view two = sql.substr(at, 2);
    if (two == "--" || two == "/*") {
      const std::string_view close = two == "--" ? "\n" : "*/";
      end = sql.find(close, at + 2);
      at = end == std::string_view::npos ? sql.size() : end + close.size();
      text += ' ';
      continue;
    }
    text += sql.substr(at, end - at);
    at = end;
  }
  const size_t last = text.find_last_not_of(" \t\r\n;");
  text.erase(last == std::string::npos ? 0 : last + 1);
  return text;
}

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {}

  Token next() {
    const size_t at = std::min(sql_.find_first_not_of(" \t\r\n\f", at_), sql_.size());
    Token token{Token::Kind::End, {}, at};
    at_ = at;
    if (at == sql_.size()) return token;
    const char first = sql_[at];
    if (opens_quote(first)) {
      token.kind = first == '\'' ? Token::Kind::Other : Token::Kind::Name;
      at_ = end_of_quoted(sql_, at);
    } else if (is_word_part(first)) {
      token.kind = is_word_start(first) ? Token::Kind::Word : Token::Kind::Other;
      while (at_ < sql_.size() && is_word_part(sql_[at_])) ++at_;
    } else {
      token.kind = Token::Kind::Other;
      ++at_;
    }
    token.text = sql_.substr(at, at_ - at);
    return token;
  }

  /// The next word outside of parentheses that is one of these; the end where there is none.
  Token next_of(std::initializer_list<std::string_view> words) {
    int depth = 0;
    for (Token token = next();; token = next()) {
      if (token.kind == Token::Kind::End) return token;
      depth += token.is_mark('(') ? 1 : token.is_mark(')') ? -1 : 0;
      const auto is = [&](std::string_view word) { return token.is(word); };
      if (depth == 0 && std::any_of(words.begin(), words.end(), is)) return token;
    }
  }

 private:
  std::string_view sql_;
  size_t at_ = 0;
};

}  // namespace

QueryShape::QueryShape(std::string_view query) : sql(without_comments(query)), all(sql) {
  Scanner scanner(sql);
  if (!scanner.next().is("SELECT")) return;
  const Token first = scanner.next();
  Token after = scanner.next();
  for (Token column = first;; column = scanner.next(), after = scanner.next()) {
    if (!column.names() && !column.is_mark('*')) return;
    if (!after.is_mark(',')) break;
  }
  if (!after.is("FROM")) return;
  const std::string list = sql.substr(first.at, after.at - first.at);
  const Token name = scanner.next();
  if (!name.names()) return;

  Token clause = scanner.next();
  if (clause.is("WHERE")) {
    const size_t begin = clause.end();
    clause = scanner.next_of({"ORDER", "LIMIT", "GROUP", "HAVING", "UNION", "EXCEPT", "INTERSECT", "WINDOW"});
    where = sql.substr(begin, clause.at - begin);
  }
  if (clause.is("ORDER")) {
    order = " " + sql.substr(clause.at);
    clause = scanner.next_of({"LIMIT"});
  }
  // A value in the order would lose its place to those of a search.
  if (clause.kind != Token::Kind::End || order.find('?') != std::string::npos) return;
  table = name.text;
  head = "SELECT rowid, " + list + "FROM " + table;
  all = head + (where.empty() ? "" : " WHERE (" + where + ")") + order;
}

void QueryShape::give_up_table() {
  table.clear();
  all = sql;
}

const std::string& QueryShape::search(const std::string& criteria) {
  std::string& text = kept(searches_, criteria);
  if (!text.empty()) return text;
  const bool within = !table.empty() && !where.empty();
  text = (table.empty() ? "SELECT * FROM (" + sql + ")" : head) + " WHERE " + (within ? "(" + where + ") AND (" : "(") +
         without_comments(criteria) + ")" + (table.empty() ? "" : order) + " LIMIT 1";
  return text;
}

const std::string& QueryShape::insert(const std::string& set) {
  std::string& text = kept(inserts_, set);
  if (!text.empty()) return text;
  std::string names, marks;
  for (size_t c = 0; c < set.size(); ++c) {
    if (set[c] == '0') continue;
    const std::string comma = names.empty() ? "" : ",";
    names += comma + '"' + columns[c] + '"';
    marks += comma + "?";
  }
  return text =
             "INSERT INTO " + table + (names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + marks + ")");
}

const std::string& QueryShape::update(const std::string& set) {
  std::string& text = kept(updates_, set);
  if (!text.empty()) return text;
  for (size_t c = 0; c < set.size(); ++c) {
    if (set[c] == '1') text += (text.empty() ? "\"" : ",\"") + columns[c] + "\" = ?";
  }
  return text = "UPDATE " + table + " SET " + text + " WHERE rowid = ?";
}

void QueryShape::name_columns(const Statement& statement) {
  const int first = key_columns();
  if (columns.size() == static_cast<size_t>(statement.columns() - first)) return;
  columns.clear();
  for (int c = first; c < statement.columns(); ++c) columns.emplace_back(statement.column_name(c));
}

}  // namespace tarn
