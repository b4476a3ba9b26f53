#include "support/expected_data.h"

#include <fstream>
#include <map>
#include <sstream>

#include "reflect/json_text.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"

namespace tarn::test {
namespace {

std::string without_end_blanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

bool is_number(const Value& value) {
  const ValueType type = type_of(value);
  return type >= ValueType::Int16 && type <= ValueType::Real64;
}

}  // namespace

const Json& expected_data(const std::string& file) {
  static std::map<std::string, Json> read;
  const auto [place, is_new] = read.try_emplace(file);
  if (is_new) {
    std::ifstream in(std::string(TARN_TEST_DATA) + "/" + file);
    place->second = parse_json(std::string(std::istreambuf_iterator<char>(in), {}));
    place->second.erase("note");
  }
  return place->second;
}

const Json& expected_table(const std::string& title) {
  for (const Json& table : expected_data("tables.json").at("tables")) {
    if (table.at("title").get<std::string>().starts_with(title)) return table;
  }
  throw std::runtime_error("tables.json has no table " + title);
}

std::string shown(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + *text + '"';
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const auto* object = std::get_if<ObjectPtr>(&value))
    return *object ? std::string((*object)->info().name) : "null";
  if (!is_number(value)) return std::string(type_name(type_of(value)));
  std::ostringstream out;
  out.precision(8);
  out << real_from(value);
  return out.str();
}

bool agrees(const Json& expected, const Value& found) {
  if (expected.is_boolean()) {
    return std::holds_alternative<bool>(found) && std::get<bool>(found) == expected.get<bool>();
  }
  if (expected.is_string()) {
    const auto* text = std::get_if<std::string>(&found);
    return text && without_end_blanks(*text) == without_end_blanks(expected.get<std::string>());
  }
  if (!is_number(found)) return false;
  const double wanted = expected.get<double>();
  return std::abs(real_from(found) - wanted) <= 1e-6 * std::abs(wanted);
}

void Comparison::judge(const std::string& where, bool agree, const std::string& expected, const std::string& found) {
  ++compared_;
  if (agree) return;
  for (size_t i = 0; i < exceptions_.size(); ++i) {
    const std::string& pattern = exceptions_[i].where;
    const bool open = pattern.ends_with('*');
    if (open ? where.starts_with(pattern.substr(0, pattern.size() - 1)) : where == pattern) {
      met_[i] = true;
      return;
    }
  }
  differences_.push_back(where + ": expected " + expected + ", found " + found);
}

Comparison::~Comparison() {
  constexpr size_t kMostShown = 200;
  std::string text;
  for (size_t i = 0; i < std::min(differences_.size(), kMostShown); ++i) text += differences_[i] + "\n";
  EXPECT_GT(compared_, 0U);
  EXPECT_EQ(differences_.size(), 0U) << "of " << compared_ << " compared:\n" << text;
  for (size_t i = 0; i < exceptions_.size(); ++i) {
    EXPECT_TRUE(met_[i]) << "an exception that nothing needs: " << exceptions_[i].where;
  }
}

Value call(Object& object, std::string_view method, std::vector<Value> arguments) {
  Value result;
  call_method(object, object.info().find(method), arguments, result);
  return result;
}

ObjectPtr object_of(Object& owner, std::string_view name, int number) {
  const Member& member = owner.info().find(name);
  Value made;
  if (member.kind == MemberKind::Property) {
    const std::vector<int> subscripts(member.bounds.size(), number);
    get_property(owner, member, subscripts, made);
  } else {
    std::vector<Value> arguments(member.parameters().size());
    for (size_t i = 0; i < arguments.size(); ++i) {
      if (!member.parameters()[i].optional) arguments[i] = static_cast<int16_t>(number);
    }
    call_method(owner, member, arguments, made);
  }
  const auto* object = std::get_if<ObjectPtr>(&made);
  return object ? *object : nullptr;
}

Element element(const std::string& text) {
  const size_t bracket = text.find('[');
  Element result{text.substr(0, bracket), {}};
  if (bracket == std::string::npos) return result;
  std::istringstream numbers(text.substr(bracket + 1));
  for (int number = 0; numbers >> number; numbers.ignore()) result.subscripts.push_back(number);
  return result;
}

}  // namespace tarn::test
