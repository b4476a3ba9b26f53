// The page of a report: its frame, and the sections in their order.
#include "tarn/report.h"

#include "platform/host.h"
#include "report/sections.h"

namespace tarn {

extern const char* const report_style;
extern const char* const report_script;

namespace report {
namespace {

struct Section {
  const char *id, *heading;
  std::string (*html)(const Source&);
};
constexpr Section kSections[]{{"project", "The project", project_section},
                              {"stale", "What is stale, and why", stale_section},
                              {"graph", "Who uses what", graph_section},
                              {"spaces", "Spaces", spaces_section},
                              {"envelope", "Walls and roofs", envelope_section},
                              {"windows", "Windows, doors and shades", windows_section},
                              {"schedules", "Schedules", schedules_section},
                              {"air-systems", "Air systems", systems_section},
                              {"plant", "Plant", plant_section},
                              {"costs", "Buildings and utility rates", costs_section},
                              {"weather", "Weather", weather_section},
                              {"results", "Design results", results_section},
                              {"check", "What the check finds", check_section}};

/// What fails in a section is told in its place, so that the others can be read.
std::string content_of(const Section& section, const Source& source) {
  try {
    return section.html(source);
  } catch (const Error& error) {
    return html::warning("This cannot be shown: " + error.description());
  }
}

std::string contents() {
  std::string items;
  for (const Section& section : kSections)
    items += html::element("li", html::element("a", section.heading, "href=\"#" + std::string(section.id) + "\""));
  return html::element("nav", html::element("ol", items), "aria-label=\"Contents\"");
}

}  // namespace
}  // namespace report

std::string report_html(COM_ProjectData& project, UnitSystem units, const Progress& progress) {
  using namespace report;
  const Source source{project, Measures(units), host().database(project.IndexDBName()), stale_results(project)};
  const std::string title = html::escaped("Project " + project.FilePrefix);
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
      "'unsafe-inline'; script-src 'unsafe-inline'\">\n<title>" +
      title + "</title>\n<style>\n" + report_style + "</style>\n</head>\n<body>\n" +
      html::element("header", html::element("h1", title)) + contents() + "<main>\n";
  size_t done = 0;
  for (const Section& section : kSections) {
    const std::string id(section.id);
    out += html::element("section",
                         html::element("h2", section.heading, "id=\"h-" + id + "\"") + content_of(section, source),
                         "id=\"" + id + "\" aria-labelledby=\"h-" + id + "\"");
    if (progress) progress(++done, std::size(kSections));
  }
  return out + "</main>\n" +
         html::element("footer", html::paragraph("Made on " + host().now() + " UTC. The page needs no network.")) +
         "<script>\n" + report_script + "</script>\n</body>\n</html>\n";
}

}  // namespace tarn
