// Who uses whom in a project: columns from inputs to results, a line for each use. Stale results and what reaches them
// are red, the edits that made them so orange. Everything follows from the graph alone, so that the same project gives
// the same picture.
#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <set>

#include "pictures/svg.h"
#include "project/kinds.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/pictures.h"
#include "tarn/staleness.h"

namespace tarn {
namespace {

using svg::escaped;
using svg::label;
using svg::number;

constexpr double kMargin = 30, kColumnsTop = 90, kBoxWide = 170, kBoxHigh = 18, kRowHigh = 22, kHeadingHigh = 30,
                 kColumnStep = 260;
constexpr double kResultWide = 260;  // its text has a name and a word

/// How a box is drawn: fill, border, and whether it is dashed.
struct Look {
  const char *fill, *stroke, *dash;
};
constexpr Look kPlain{"#f4f6f8", "#8a97a5", ""}, kEdited{"#ffe8cc", "#d9780f", ""}, kStale{"#fde3e0", "#c00", ""},
    kCurrent{"#e4f3e4", "#3c8a3c", ""}, kNever{"#fff", "#8a97a5", "4 3"}, kUnused{"#fff", "#bbb", "2 2"};

struct Tile {
  std::string text, hint;  // the hint shows on hover
  Look look;
  double wide = kBoxWide, x = 0, y = 0;
};

/// A block of a column: boxes under a heading.
struct Block {
  std::string heading;
  std::vector<size_t> boxes;  // places in `Drawing::boxes_`
};

/// Kinds that use nothing are in column 0, the others one after the last that they use.
std::vector<size_t> columns_of_kinds() {
  std::vector<size_t> columns;
  for (const EntityKind& kind : entity_kinds()) {
    size_t& column = columns.emplace_back(0);
    for (const std::string_view used : kinds_referred_to(blank_entity(kind)->info(), [](auto) { return true; })) {
      if (const auto place = place_of(used); place && *place + 1 < columns.size())
        column = std::max(column, columns[*place] + 1);
    }
  }
  return columns;
}

std::string way_text(const StaleResult& result) {
  std::string text;
  for (const EntityName& step : result.way) text += (text.empty() ? "" : " > ") + step.text();
  return text;
}

/// "stale since 2026-11-22 10:00:00 UTC: Wall 3 "Brick" > Space 1 "Office" > System 2 "VAV"".
std::string reason(const StaleResult& result) {
  const std::string what = result.calculated ? "stale" : "never calculated";
  if (!result.edited) return what;
  return what + (result.calculated ? " since " : ", inputs changed at ") + result.since +
         " UTC: " + (result.way.empty() ? result.edited->text() : way_text(result));
}

class Drawing {
 public:
  explicit Drawing(const ProjectGraph& graph) : graph_(graph), users_(graph.entities.size()) {
    for (size_t i = 0; i < graph.entities.size(); ++i) {
      places_[key(graph.entities[i].name)] = i;
      for (const size_t used : graph.entities[i].uses) users_[used].push_back(i);
    }
  }

  std::string svg() {
    add_entities();
    mark_stale();
    add_results();
    const double high = place_columns();
    const double wide = 2 * kMargin + kResultWide + kColumnStep * static_cast<double>(blocks_.size() - 1);
    const size_t stale = static_cast<size_t>(std::ranges::count(graph_.stale, true, &StaleResult::calculated));
    return svg::page(
        std::max(wide, 700.0), high, kMargin, "What rests on what", "What rests on what",
        count_of(graph_.entities.size(), "entity", "entities") + ", " + count_of(lines_.size(), "use", "uses") + ", " +
            count_of(graph_.current.size(), "result", "results") +
            " up to date; each line leads from what is used to what uses it",
        heads_ + drawn_lines() + drawn_boxes(),
        stale == 0 ? "" : count_of(stale, "result", "results") + " (red); edits that made them so are orange");
  }

 private:
  using Key = std::pair<std::string, int32_t>;
  static Key key(const EntityName& name) { return {name.kind, name.index}; }

  static std::string count_of(size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
  }

  size_t add_box(std::string text, std::string hint, const Look& look) {
    boxes_.push_back({std::move(text), std::move(hint), look});
    return boxes_.size() - 1;
  }

  /// Whether anything leads to or from it.
  bool is_connected(size_t entity, const std::set<Key>& with_results) const {
    return !users_[entity].empty() || !graph_.entities[entity].uses.empty() ||
           with_results.contains(key(graph_.entities[entity].name));
  }

  /// A block for each kind that there is, columns from the last to the first, so that entities stand in the order of
  /// those that use them. What nothing leads to or from is one box.
  void add_entities() {
    std::set<Key> with_results;
    for (const StaleResult& each : graph_.stale) {
      with_results.insert(key(each.of));
      if (each.edited) with_results.insert(key(*each.edited));
    }
    for (const CurrentResult& each : graph_.current) with_results.insert(key(each.of));
    const std::vector<size_t> columns = columns_of_kinds();
    blocks_.resize(*std::ranges::max_element(columns) + 2);
    box_of_.resize(graph_.entities.size());
    std::vector<double> rank(graph_.entities.size());
    for (size_t column = blocks_.size() - 1; column-- > 0;) {
      double row = 0;
      for (size_t kind = 0; kind < columns.size(); ++kind) {
        if (columns[kind] != column) continue;
        std::vector<size_t> drawn, alone;
        for (size_t i = 0; i < graph_.entities.size(); ++i) {
          if (graph_.entities[i].name.kind == word_of(kind))
            (is_connected(i, with_results) ? drawn : alone).push_back(i);
        }
        std::ranges::stable_sort(drawn, {}, [&](size_t i) { return mean_of_users(i, rank); });
        for (const size_t i : drawn) rank[i] = row++;
        add_block(column, kind, drawn, alone);
      }
    }
  }

  /// The mean place of those that use an entity; what nothing uses comes last.
  double mean_of_users(size_t entity, const std::vector<double>& rank) const {
    const auto& users = users_[entity];
    if (users.empty()) return HUGE_VAL;
    return std::accumulate(users.begin(), users.end(), 0.0, [&](double sum, size_t user) { return sum + rank[user]; }) /
           static_cast<double>(users.size());
  }

  void add_block(size_t column, size_t kind, const std::vector<size_t>& drawn, const std::vector<size_t>& alone) {
    if (drawn.empty() && alone.empty()) return;
    Block& block = blocks_[column].emplace_back(Block{spoken(entity_kinds()[kind]), {}});
    for (const size_t i : drawn) {
      const EntityName& name = graph_.entities[i].name;
      block.boxes.push_back(box_of_[i] = add_box(name.name, name.text(), kPlain));
      for (const size_t used : graph_.entities[i].uses) lines_.emplace_back(used, i);
    }
    if (alone.empty()) return;
    std::string names;
    for (const size_t i : alone) names += (names.empty() ? "" : ", ") + graph_.entities[i].name.text();
    block.boxes.push_back(add_box(std::to_string(alone.size()) + " without any use", names, kUnused));
  }

  /// The edited entities, and all on the ways from them.
  void mark_stale() {
    for (const StaleResult& each : graph_.stale) {
      if (!each.calculated) continue;
      size_t before = graph_.entities.size();
      for (const EntityName& step : each.way) {
        const auto found = places_.find(key(step));
        if (found == places_.end()) continue;
        if (before != graph_.entities.size()) on_way_.insert({before, found->second});
        before = found->second;
      }
    }
    for (const StaleResult& each : graph_.stale) {
      if (const auto of = places_.find(key(each.of)); each.calculated && of != places_.end())
        mark(boxes_[box_of_[of->second]], kStale, each.results + " " + reason(each));
    }
    for (const StaleResult& each : graph_.stale) {
      if (!each.calculated || !each.edited) continue;
      if (const auto edited = places_.find(key(*each.edited)); edited != places_.end())
        mark(boxes_[box_of_[edited->second]], kEdited, "changed at " + each.since + " UTC");
      else if (each.edited->index == 0)
        add_weather(each);
    }
  }

  static void mark(Tile& box, const Look& look, const std::string& why) {
    box.look = look;
    if (box.hint.find(why) == std::string::npos) box.hint += "\n" + why;
  }

  /// The weather, only where it was edited, as everything rests on it.
  void add_weather(const StaleResult& stale) {
    const EntityName& weather = *stale.edited;
    if (!weather_) {
      weather_ = add_box(weather.name.empty() ? "the weather" : weather.name,
                         weather.text() + "\nchanged at " + stale.since + " UTC", kEdited);
      blocks_[0].insert(blocks_[0].begin(), Block{"weather", {*weather_}});
    }
    if (const auto of = places_.find(key(stale.of)); of != places_.end())
      other_lines_.insert({*weather_, box_of_[of->second], true});
  }

  /// The last column: the results of each entity, in the order of these.
  void add_results() {
    std::map<std::string, std::map<size_t, std::vector<Tile>>> by_kind;  // and by the entity's box
    const auto add = [&](const EntityName& of, Tile result) {
      result.wide = kResultWide;
      if (const auto found = places_.find(key(of)); found != places_.end())
        by_kind[of.kind][box_of_[found->second]].push_back(std::move(result));
    };
    for (const CurrentResult& each : graph_.current)
      add(each.of,
          {each.of.name + ": " + each.results, each.of.text() + ", " + each.results + ": up to date", kCurrent});
    for (const StaleResult& each : graph_.stale)
      add(each.of, {each.of.name + ": " + (each.calculated ? "stale " : "no ") + each.results,
                    each.of.text() + ", " + each.results + ": " + reason(each), each.calculated ? kStale : kNever});
    for (size_t kind = 0; kind < entity_kinds().size(); ++kind) {
      const auto found = by_kind.find(std::string(word_of(kind)));
      if (found == by_kind.end()) continue;
      Block& block =
          blocks_.back().emplace_back(Block{"results of " + std::string(entity_kinds()[kind].one) + "s", {}});
      for (auto& [owner, results] : found->second) {
        for (Tile& result : results) {
          other_lines_.insert({owner, boxes_.size(), result.look.stroke == kStale.stroke});
          block.boxes.push_back(boxes_.size());
          boxes_.push_back(std::move(result));
        }
      }
    }
  }

  static double height_of(const std::vector<Block>& column) {
    double high = 0;
    for (const Block& block : column) high += kHeadingHigh + kRowHigh * static_cast<double>(block.boxes.size());
    return high;
  }

  /// Columns stand about the middle of the highest. Returns the height of the page.
  double place_columns() {
    double most = 0;
    for (const auto& column : blocks_) most = std::max(most, height_of(column));
    for (size_t c = 0; c < blocks_.size(); ++c) {
      const double x = kMargin + kColumnStep * static_cast<double>(c);
      double y = kColumnsTop + (most - height_of(blocks_[c])) / 2;
      for (const Block& block : blocks_[c]) {
        heads_ += label(x, y + 20, escaped(block.heading), "fill=\"#555\" font-weight=\"bold\"");
        y += kHeadingHigh;
        for (const size_t box : block.boxes) {
          boxes_[box].x = x;
          boxes_[box].y = y;
          y += kRowHigh;
        }
      }
    }
    return kColumnsTop + most + 30;
  }

  std::string line(const Tile& from, const Tile& to, bool stale) const {
    const double left = from.x + from.wide, middle = kBoxHigh / 2, bend = (to.x - left) / 2;
    return "<path d=\"M" + number(left) + " " + number(from.y + middle) + "C" + number(left + bend) + " " +
           number(from.y + middle) + " " + number(to.x - bend) + " " + number(to.y + middle) + " " + number(to.x) +
           " " + number(to.y + middle) + "\"" + (stale ? " stroke=\"#c00\" stroke-width=\"1.6\"" : "") + "><title>" +
           hint_line(from) + " &gt; " + hint_line(to) + "</title></path>\n";
  }
  /// The name alone, without what is said of it.
  static std::string hint_line(const Tile& box) { return escaped(box.hint.substr(0, box.hint.find('\n'))); }

  /// Those of stale results over the others.
  std::string drawn_lines() const {
    std::string plain, stale;
    for (const auto& [used, user] : lines_) {
      const bool on_way = on_way_.contains({used, user});
      (on_way ? stale : plain) += line(boxes_[box_of_[used]], boxes_[box_of_[user]], on_way);
    }
    for (const auto& [from, to, is_stale] : other_lines_)
      (is_stale ? stale : plain) += line(boxes_[from], boxes_[to], is_stale);
    return "<style>path:hover{stroke:#000;stroke-width:3}</style>\n<g fill=\"none\" stroke=\"#b8c0c8\">\n" + plain +
           stale + "</g>\n";
  }

  static size_t letters_in(const Tile& box) { return static_cast<size_t>(box.wide / 6.2); }

  std::string drawn_boxes() const {
    std::string out;
    for (const Tile& box : boxes_) {
      std::string hint;
      for (const char c : box.hint) hint += c == '\n' ? "&#10;" : escaped(std::string(1, c));
      out += "<g><title>" + hint + "</title><rect x=\"" + number(box.x) + "\" y=\"" + number(box.y) + "\" width=\"" +
             number(box.wide) + "\" height=\"" + number(kBoxHigh) + "\" rx=\"3\" fill=\"" + box.look.fill +
             "\" stroke=\"" + box.look.stroke + "\"" +
             (*box.look.dash ? " stroke-dasharray=\"" + std::string(box.look.dash) + "\"" : "") + "/>" +
             label(box.x + 6, box.y + 13, escaped(svg::shortened(box.text, letters_in(box))), "font-size=\"11\"") +
             "</g>\n";
    }
    return out;
  }

  struct Line {
    size_t from, to;  // boxes
    bool stale;
    auto operator<=>(const Line&) const = default;
  };

  const ProjectGraph& graph_;
  std::vector<std::vector<size_t>> users_;  // by entity
  std::map<Key, size_t> places_;            // of entities
  std::vector<Tile> boxes_;
  std::vector<size_t> box_of_;                    // by entity
  std::vector<std::vector<Block>> blocks_;        // by column, the last of results
  std::vector<std::pair<size_t, size_t>> lines_;  // used and user
  std::set<std::pair<size_t, size_t>> on_way_;    // of these, the ways to stale results
  std::set<Line> other_lines_;                    // from the weather, and to results
  std::optional<size_t> weather_;
  std::string heads_;
};

}  // namespace

std::string graph_picture(const ProjectGraph& graph) { return Drawing(graph).svg(); }

}  // namespace tarn
