#include "cli/condition.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "base/nearest.h"
#include "cli/choose.h"
#include "cli/units.h"
#include "tarn/code_names.h"

namespace tarn::cli {

struct Condition::Node {
  enum class What : uint8_t { All, Any, Not, Compare } what = What::Compare;
  std::vector<std::unique_ptr<Node>> nodes;  // of the first three

  std::optional<Column> column;
  std::string operation, text;
  std::optional<double> number;                       // what the text is, for numbers
  std::map<std::string, int16_t, std::less<>> named;  // what it names, by kind, where the entity tells which it is

  bool holds(ListedEntity& entity) const;

 private:
  bool compares(const Listed& value) const;
};

namespace {

using Node = Condition::Node;

constexpr std::string_view kOperators[]{"<>", "!=", "<=", ">=", "!~", "==", "=", "<", ">", "~"};  // long ones first

std::optional<double> number_in(const std::string& text) {
  double number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failed != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// A number in the units that are shown, or with its own unit, as it is stored. Error `TypeMismatch` for another
/// dimension.
std::optional<double> stored_number(const std::string& text, std::string_view unit) {
  if (unit.empty()) return number_in(text);
  const auto measured = measured_in(text);
  if (!measured || (!measured->unit.empty() && !is_unit(measured->unit))) return std::nullopt;
  const std::string_view given = measured->unit.empty() ? shown_unit(unit) : measured->unit;
  return given == unit ? measured->value : convert(measured->value, given, unit);
}

/// As numbers of 4 bytes hold them: 0.3 as typed is the 0.3 of a record.
bool same_number(double a, double b) { return a == b || static_cast<float>(a) == static_cast<float>(b); }

/// A code by its name, with or without the first word ("SCREW" of CT_SCREW, "VAV" of "8. VAV"), or its text.
bool is_called(const Label& label, std::string_view word) {
  const size_t first = label.name.find_first_of("_.");
  std::string_view rest = first == std::string_view::npos ? label.name : label.name.substr(first + 1);
  while (rest.starts_with(' ')) rest.remove_prefix(1);
  return same_word(label.name, word) || same_word(label.text, word) || same_word(rest, word);
}

class Parser {
 public:
  Parser(const EntityKind& kind, Database& database, const std::string& text)
      : kind_(kind), database_(database), text_(text) {}

  std::unique_ptr<Node> whole() {
    auto node = condition();
    skip_blanks();
    if (at_ < text_.size()) fail_here("wanted \"and\" or \"or\"");
    return node;
  }

 private:
  [[noreturn]] void fail_here(const std::string& wanted) const {
    const std::string rest = text_.substr(std::min(at_, text_.size()));
    throw UsageError("--where: " + (rest.empty() ? "at the end" : "at \"" + rest + "\"") + " " + wanted +
                     ". Example: --where \"Height>4 and Name~South*\"");
  }
  void skip_blanks() { at_ = std::min(text_.find_first_not_of(' ', at_), text_.size()); }

  /// Takes a word such as "and", whatever its case, where it stands by itself.
  bool takes_word(std::string_view word) {
    skip_blanks();
    if (!same_word(std::string_view(text_).substr(at_, word.size()), word)) return false;
    const size_t after = at_ + word.size();
    if (after < text_.size() && text_[after] != ' ' && text_[after] != '(') return false;
    at_ = after;
    return true;
  }
  bool takes(char c) {
    skip_blanks();
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  std::unique_ptr<Node> joined(Node::What what, std::string_view by, std::unique_ptr<Node> (Parser::*part)()) {
    auto first = (this->*part)();
    if (!takes_word(by)) return first;
    auto node = std::make_unique<Node>();
    node->what = what;
    node->nodes.push_back(std::move(first));
    do node->nodes.push_back((this->*part)());
    while (takes_word(by));
    return node;
  }
  std::unique_ptr<Node> condition() { return joined(Node::What::Any, "or", &Parser::all); }
  std::unique_ptr<Node> all() { return joined(Node::What::All, "and", &Parser::one); }

  std::unique_ptr<Node> one() {
    if (takes_word("not")) {
      auto node = std::make_unique<Node>();
      node->what = Node::What::Not;
      node->nodes.push_back(one());
      return node;
    }
    if (!takes('(')) return comparison();
    auto node = condition();
    if (!takes(')')) fail_here("wanted \")\"");
    return node;
  }

  std::unique_ptr<Node> comparison() {
    auto node = std::make_unique<Node>();
    const size_t begin = at_, end = std::min(text_.find_first_of("=<>!~", at_), text_.size());
    std::string word = text_.substr(begin, end - begin);
    std::erase(word, ' ');
    if (word.empty()) fail_here("wanted a property");
    at_ = end;
    for (const std::string_view each : kOperators) {
      if (!std::string_view(text_).substr(at_).starts_with(each)) continue;
      node->operation = each;
      break;
    }
    if (node->operation.empty()) fail_here("wanted = <> < <= > >= ~ or !~ after " + word);
    at_ += node->operation.size();
    node->column.emplace(kind_, word);
    node->text = value(!node->column->unit().empty());
    if (node->operation == "!=") node->operation = "<>";
    if (node->operation == "==") node->operation = "=";
    check(*node);
    return node;
  }

  std::string value(bool has_unit) {
    skip_blanks();
    if (at_ >= text_.size()) fail_here("wanted a value");
    if (const char quote = text_[at_]; quote == '\'' || quote == '"') {
      const size_t end = text_.find(quote, at_ + 1);
      if (end == std::string::npos) fail_here("wanted the closing " + std::string(1, quote));
      const std::string text = text_.substr(at_ + 1, end - at_ - 1);
      at_ = end + 1;
      return text;
    }
    const size_t begin = at_;
    at_ = end_of_word(begin);
    const std::string text = text_.substr(begin, at_ - begin);
    const auto measured = has_unit ? measured_in(text) : std::nullopt;
    if (measured) at_ = std::max(at_, end_of_unit(at_ - measured->unit.size()));
    return text_.substr(begin, at_ - begin);
  }

  /// The next blank, or bracket that closes one before the word.
  size_t end_of_word(size_t at) const {
    int depth = 0;
    for (; at < text_.size() && text_[at] != ' '; ++at) {
      if (text_[at] == '(') ++depth;
      if (text_[at] == ')' && depth-- == 0) break;
    }
    return at;
  }

  /// Of the longest unit after a number, which may have blanks in it: "2 in. wg"; where there is none, the number's
  /// end.
  size_t end_of_unit(size_t number_end) const {
    size_t end = number_end;
    const size_t begin = std::min(text_.find_first_not_of(' ', number_end), text_.size());
    int depth = 0;
    for (size_t at = begin; at <= text_.size(); ++at) {
      const char c = at < text_.size() ? text_[at] : ' ';
      const bool closes = c == ')' && depth == 0;
      if ((c == ' ' || closes) && is_unit(std::string_view(text_).substr(begin, at - begin))) end = at;
      if (closes) break;
      depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    }
    return end;
  }

  /// A value that the property can be compared with becomes a number where the property is one.
  void check(Node& node) const {
    const Member* member = node.column->member();
    node.number = stored_number(node.text, node.column->unit());
    if (!member || member->type == ValueType::Text || node.operation.ends_with('~') || node.number) return;
    if (member->type == ValueType::Boolean) {
      for (const auto& [word, number] : {std::pair("true", 1), {"false", 0}, {"yes", 1}, {"no", 0}})
        if (same_word(node.text, word)) node.number = number;
      if (!node.number)
        throw UsageError("--where: " + node.column->title() + " is true or false, not \"" + node.text + "\".");
      return;
    }
    if (member->refers_to.find(' ') != std::string_view::npos) {
      node.named = indexes_named(node.text, database_, member->refers_to);
      return;
    }
    if (!member->refers_to.empty()) {
      node.number = index_named(node.text, database_, rows_of(member->refers_to));
      return;
    }
    const auto labels = member->labels.empty() ? catalogued_codes(*member) : member->labels;
    if (labels.empty() && !member->labels_vary)
      throw UsageError("--where: " + node.column->title() + " is a number, not \"" + node.text + "\".");
    std::vector<std::string_view> known;
    for (const Label& label : labels) {
      known.push_back(label.name);
      if (is_called(label, node.text)) node.number = label.code;
    }
    if (!node.number && !member->labels_vary)
      throw UsageError("--where: " + node.column->title() + " has no code \"" + node.text + "\"; " +
                       did_you_mean(node.text, known));
  }

  const EntityKind& kind_;
  Database& database_;
  const std::string& text_;
  size_t at_ = 0;
};

}  // namespace

bool Condition::Node::holds(ListedEntity& entity) const {
  const auto holds_there = [&](const std::unique_ptr<Node>& node) { return node->holds(entity); };
  switch (what) {
    case What::All:
      return std::ranges::all_of(nodes, holds_there);
    case What::Any:
      return std::ranges::any_of(nodes, holds_there);
    case What::Not:
      return !nodes.front()->holds(entity);
    case What::Compare:
      return compares(entity.value(*column));
  }
  return false;
}

bool Condition::Node::compares(const Listed& value) const {
  if (value.json.is_null()) return false;
  if (operation.ends_with('~')) return (fits(value.text, text) || fits(value.code, text)) == (operation == "~");
  int order = 0;
  std::optional<double> wanted = number;
  if (const auto there = named.find(value.target); there != named.end()) wanted = there->second;
  if (value.number && wanted) {
    order = same_number(*value.number, *wanted) ? 0 : *value.number < *wanted ? -1 : 1;
  } else {
    const bool by_code = !value.code.empty() && folded(value.code) == folded(text);
    order = by_code ? 0 : folded(value.text).compare(folded(text));
  }
  if (operation == "=") return order == 0;
  if (operation == "<>") return order != 0;
  const bool less = operation.starts_with('<');
  return (order == 0 && operation.ends_with('=')) || (less ? order < 0 : order > 0);
}

Condition::Condition(const EntityKind& kind, Database& database, const std::string& text)
    : root_(Parser(kind, database, text).whole()) {}
Condition::~Condition() = default;
Condition::Condition(Condition&&) noexcept = default;

bool Condition::holds(ListedEntity& entity) const { return root_->holds(entity); }

}  // namespace tarn::cli
