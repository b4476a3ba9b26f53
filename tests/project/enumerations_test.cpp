// Every enumeration as clients meet it, its codes, names and texts as a whole, beside a list that was made without
// this program: tests/data/enumerations.json.
#include "project/enumerations.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "support/expected_data.h"

namespace tarn {
namespace {

/// "3 ST_ELEC_RESIST" for each label, with its text where the list states one; by code, names of one code in their
/// order.
using Lines = std::vector<std::pair<int32_t, std::string>>;
Lines by_code(Lines lines) {
  std::stable_sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  return lines;
}

TEST(Enumerations, HaveTheCodesNamesAndTextsOfTheInterface) {
  const Json& expected = test::expected_data("enumerations.json");
  EXPECT_EQ(expected.size(), 92u);
  for (const auto& [name, rows] : expected.items()) {
    const Enumeration* found = find_enumeration(name);
    if (!found || found->name != name) {
      ADD_FAILURE() << "the product lacks " << name;
      continue;
    }
    std::map<std::string, std::string> stated;
    Lines wanted, got;
    for (const auto& row : rows) {
      std::string line = row["name"];
      if (!row["text"].is_null()) line += " | " + (stated[row["name"]] = row["text"]);
      wanted.emplace_back(row["value"], line);
    }
    if (name == "CA_ReturnCodes") wanted.emplace_back(-4, "CA_ERR_SAVE");  // of this program alone
    for (const Label& label : found->codes) {
      std::string line(label.name);
      if (stated.contains(line)) line += " | " + std::string(label.text);
      got.emplace_back(label.code, line);
      EXPECT_EQ(std::strlen(label.name.data()), label.name.size()) << label.name;
      EXPECT_EQ(std::strlen(label.text.data()), label.text.size()) << label.name;
    }
    EXPECT_EQ(by_code(got), by_code(wanted)) << name;
  }
}

}  // namespace
}  // namespace tarn
