#include "tarn/report.h"

#include <map>
#include <regex>

#include "support/sample_test.h"

namespace tarn {
namespace {

class ReportTest : public test::SampleTest {
 protected:
  /// A section, from its tag to the next one's.
  static std::string section(const std::string& page, const std::string& id) {
    const size_t from = page.find("<section id=\"" + id + "\"");
    return from == std::string::npos ? "" : page.substr(from, page.find("</section>", from) - from);
  }
};

TEST_F(ReportTest, EverySectionHasWhatTheProjectHas) {
  const std::string page = report_html(project);
  const std::pair<const char*, std::vector<const char*>> expected[]{
      {"project", {"<th scope=\"row\">windows</th><td class=\"n\">2</td>", "inch-pound"}},
      {"graph", {"<svg role=\"img\"", "VAV 1"}},
      {"spaces", {"<th scope=\"row\">Office</th>", "2 of South"}},
      {"envelope", {"Wall 1: Brick", "Roof 1: Deck", "coefficients off at a step"}},
      {"windows", {"<th scope=\"row\">South</th>", "Door 1: Door", "Shade 1: Overhang"}},
      {"schedules", {"Schedule 2: Lights", "columns of a month"}},
      {"air-systems", {"System 2: VAV 2", "supply fan", "<td>Office</td>"}},
      {"plant", {"Plant 1: Chilled water", "Chiller 1: Chiller", "Boiler 1: Boiler", "Tower 1: Tower"}},
      {"costs", {"<td>VAV 1</td>", "Day: properties", "Gas: properties"}},
      {"weather", {"Colorado", "A year of hourly weather"}},
      {"results", {"System 1: VAV 1", "Sizes of the zones of VAV 1"}},
      {"check", {"<h2 id=\"h-check\">"}}};
  for (const auto& [id, texts] : expected) {
    for (const char* text : texts) EXPECT_TRUE(says(section(page, id), text)) << id << ": " << text;
  }
  EXPECT_TRUE(says(section(report_html(project, UnitSystem::SI), "spaces"), "<small>m2</small>"));
}

TEST_F(ReportTest, StaleResultsAreToldWhereverTheyStand) {
  EXPECT_FALSE(says(section(report_html(project), "results"), "stale"));
  host().database(project.IndexDBName())->Execute("UPDATE AirSystemIndex SET bSized = -1");
  test::edit_window(project);
  const std::string page = report_html(project), why = "Window 1 &quot;South&quot; changed at 2026-11-22 10:00:00 UTC";
  for (const char* id : {"stale", "results", "air-systems"}) EXPECT_TRUE(says(section(page, id), why)) << id;
  EXPECT_TRUE(says(section(page, "stale"), "Space 1 &quot;Office&quot;")) << "the way to it";
}

TEST_F(ReportTest, NothingIsLoadedFromElsewhereAndNamesAreNoMarkup) {
  const auto window = project.NewWindow();
  window->Load(1);
  window->Name = "<script src=//x>&\"";
  window->Save();
  const std::string page = report_html(project);
  EXPECT_TRUE(says(page, "&lt;script src=//x&gt;&amp;&quot;"));
  EXPECT_FALSE(std::regex_search(page, std::regex("<(link|img|iframe|script src|base)\\b|@import|url\\(")));
  EXPECT_TRUE(says(page, "default-src 'none'"));
  std::map<std::string, int> ids;
  const std::regex id(" id=\"([^\"]*)\"");
  for (auto each = std::sregex_iterator(page.begin(), page.end(), id); each != std::sregex_iterator(); ++each)
    EXPECT_EQ(++ids[(*each)[1]], 1) << (*each)[1];
}

TEST_F(ReportTest, WhatCannotBeReadIsToldInItsPlace) {
  std::filesystem::resize_file(project.WallFilename(), 100);
  std::filesystem::remove(project.WindowFilename());
  const std::string page = report_html(project);
  EXPECT_TRUE(says(section(page, "envelope"), "The wall 1 cannot be shown: "));
  EXPECT_TRUE(says(section(page, "windows"), "The window 2 cannot be shown: "));
  EXPECT_TRUE(says(section(page, "spaces"), "Office"));
  EXPECT_TRUE(says(section(page, "check"), "error"));
}

}  // namespace
}  // namespace tarn
