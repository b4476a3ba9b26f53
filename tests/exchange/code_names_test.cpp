#include "tarn/code_names.h"

#include <cstdlib>
#include <fstream>

#include "support/temp_project.h"
#include "tarn/base/error.h"
#include "tarn/exchange.h"
#include "tarn/space.h"

namespace tarn {
namespace {

/// A firm's own catalogue, for as long as the object lives.
struct OwnCatalogue {
  OwnCatalogue(const std::string& folder, const std::string& text) : path(folder + "/codes.json") {
    std::ofstream(path) << text;
    setenv("TARN_CODES", path.c_str(), 1);
  }
  ~OwnCatalogue() { unsetenv("TARN_CODES"); }
  std::string path;
};

std::string name_of(const Object& object, const char* property, int code) {
  for (const Label& label : codes_of(object, object.info().find(property))) {
    if (label.code == code) return std::string(label.name);
  }
  return {};
}

class CodeNamesTest : public test::ProjectTest {};

TEST_F(CodeNamesTest, AreTheShippedOnesOrAFirmsOwn) {
  const SPC_Roof roof;
  EXPECT_EQ(name_of(roof, "Exposure", 17), "horizontal");
  EXPECT_EQ(name_of(roof, "Exposure", 18), "");
  EXPECT_EQ(name_of(roof, "SkylightQty", 1), "") << "a number is no code";
  {
    const OwnCatalogue own(folder.path, R"({"ours": {"properties": ["SPC_Roof.Exposure"], "names": {"1": "South"}}})");
    EXPECT_EQ(name_of(roof, "Exposure", 1), "South");
    EXPECT_EQ(name_of(roof, "Exposure", 17), "") << "it replaces the shipped one";
  }
  EXPECT_EQ(name_of(roof, "Exposure", 1), "N");
}

TEST_F(CodeNamesTest, ImportsTakeThem) {
  const auto imported = [&](const std::string& exposure) {
    return import_project(project,
                          R"({"tarn": 1, "SPC_Space": [{"index": 1, "Roof": [{"Exposure": )" + exposure +
                              R"(}, {"Exposure": 9}, {}, {}]}]})",
                          [](size_t, size_t) {})
        .entities;
  };
  EXPECT_EQ(imported("\"nne\""), 1U);
  const auto space = project.NewSpace();
  space->Load(1);
  EXPECT_EQ(space->GetRoof(1)->Exposure, 2);
  EXPECT_EQ(space->GetRoof(2)->Exposure, 9);
  try {
    imported("\"NNEE\"");
    FAIL() << "a name that is none was taken";
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("did you mean NNE?"), std::string::npos) << error.what();
  }
}

TEST_F(CodeNamesTest, AWrongCatalogueIsToldWithItsLine) {
  const std::string head = "{\"list\": {\n\"properties\": [";
  struct {
    std::string text, told;
  } const cases[]{
      {"{\n\"list\": ", ", line 2"},
      {"[]", "wanted an object with a list of codes under each name"},
      {"{\n\"list\": {}}", ", line 2: wanted an object with \"properties\" and \"names\""},
      {head + "\"SPC_Roof.Exposer\"], \"names\": {}}}",
       ", line 2: SPC_Roof has no member Exposer; did you mean Exposure?"},
      {head + "\"SPC_Ruf.Exposure\"], \"names\": {}}}", ", line 2: "},
      {head + "7], \"names\": {}}}", ", line 2: wanted a property, \"SPC_Roof.Exposure\""},
      {head + "\"SPC_Roof.GrossArea\"], \"names\": {}}}", "SPC_Roof.GrossArea takes no codes of a catalogue"},
      {head + "\"SPC_Roof.RoofType\"], \"names\": {}}}", "SPC_Roof.RoofType takes no codes of a catalogue"},
      {head + "\"SPC_Roof.Exposure\",\n\"SPC_Roof.Exposure\"], \"names\": {}}}",
       ", line 3: SPC_Roof.Exposure has two lists of codes"},
      {head + "],\n\"names\": {\n\"one\": \"N\"}}}", ", line 4: found the code \"one\", wanted a whole number"},
      {head + "],\n\"names\": {\"1\": \"N\",\n\"2\": \"n\"}}}", ", line 4: the codes 1 and 2 are both \"n\""},
      {head + "],\n\"names\": {\"1\": 7}}}", ", line 3: wanted a name for the code 1"}};
  const SPC_Roof roof;
  for (const auto& row : cases) {
    const OwnCatalogue own(folder.path, row.text);
    try {
      name_of(roof, "Exposure", 1);
      ADD_FAILURE() << "taken: " << row.text;
    } catch (const Error& error) {
      EXPECT_EQ(error.description().find("The code catalogue " + own.path), 0U) << error.description();
      EXPECT_NE(error.description().find(row.told), std::string::npos) << error.description();
    }
  }
  setenv("TARN_CODES", (folder / "none.json").c_str(), 1);
  EXPECT_THROW(name_of(roof, "Exposure", 1), Error);
  unsetenv("TARN_CODES");
}

}  // namespace
}  // namespace tarn
