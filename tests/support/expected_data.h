// Tables of expected values (tests/data), made from the description of the interface by a program that shares nothing
// with this one: the product is compared with them, whole tables at a time, by its by-name surface.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "reflect/json_text.h"
#include "tarn/reflect/members.h"

namespace tarn::test {

/// Objects keep the order of the file.
/// A file of tests/data without its note; read once.
const Json& expected_data(const std::string& file);

/// The rows of one of the tables in tables.json, by how its title begins.
const Json& expected_table(const std::string& title);

/// As a reader of a failure wants to see it.
std::string shown(const Value& value);

/// Whether the product's value is the expected one: reals to 1e-6 of it, texts without the blanks at their end.
bool agrees(const Json& expected, const Value& found);

/// A place where product and table differ on purpose.
struct Exception {
  std::string where;  // "class.member key", or how it begins where it ends with '*'
  std::string reason;
};

/// Gathers what differs, and fails the test at its end with one line for each: place, expected, found. Nothing
/// compared, and an exception that no longer differs, fail it too.
class Comparison {
 public:
  explicit Comparison(std::vector<Exception> exceptions = {})
      : exceptions_(std::move(exceptions)), met_(exceptions_.size()) {}
  Comparison(const Comparison&) = delete;
  Comparison& operator=(const Comparison&) = delete;
  ~Comparison();

  void compare(const std::string& where, const Json& expected, const Value& found) {
    judge(where, agrees(expected, found), json_text(expected), shown(found));
  }
  void compare(const std::string& where, const std::string& expected, const std::string& found) {
    judge(where, expected == found, expected, found);
  }
  /// For what is calculated from several results.
  void compare_near(const std::string& where, double expected, double found, double tolerance) {
    judge(where, std::abs(found - expected) <= tolerance, std::to_string(expected), std::to_string(found));
  }
  /// For what cannot even be looked up.
  void fails(const std::string& where, const std::string& expected, const std::string& why) {
    judge(where, false, expected, why);
  }
  size_t compared() const { return compared_; }

 private:
  void judge(const std::string& where, bool agree, const std::string& expected, const std::string& found);

  std::vector<Exception> exceptions_;
  std::vector<bool> met_;
  std::vector<std::string> differences_;
  size_t compared_ = 0;
};

/// Calls by name, as the scripting faces do.
Value call(Object& object, std::string_view method, std::vector<Value> arguments = {});
/// The object that a method or a property hands out; the number is passed where one is asked for.
ObjectPtr object_of(Object& owner, std::string_view member, int number = 1);

/// "KWValue[3]" as the property's name and its subscripts.
struct Element {
  std::string name;
  std::vector<int> subscripts;
};
Element element(const std::string& text);

}  // namespace tarn::test
