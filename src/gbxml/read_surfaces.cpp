// Surfaces and their openings: what each is to the spaces beside it, how large it is and which way it faces.
#include <algorithm>
#include <cmath>

#include "gbxml/drawing.h"

namespace tarn {
namespace {

constexpr double kToldPart = 0.01;    // of an area, where two statements of it disagree
constexpr double kToldDegrees = 3.6;  // of a direction: a hundredth of the compass
constexpr double kLeastArea = 1e-6;   // ft2

/// What a surface or an opening consists of, found in one pass: a large building has millions of elements.
struct Parts {
  explicit Parts(Element of) : element(of) {
    for (Element part = element.first_child(); part; part = part.next_sibling()) {
      const std::string_view name = name_of(part);
      if (name == "PlanarGeometry" && !plane)
        plane = part;
      else if (name == "RectangularGeometry" && !rectangle)
        rectangle = part;
      else if (name == "AdjacentSpaceId")
        adjacent.push_back(part);
      else if (name == "Opening")
        openings.push_back(part);
    }
  }
  Element element, plane, rectangle;  // the geometries are null where it has none
  std::vector<Element> adjacent, openings;
};

struct Beside {
  size_t space;           // its place in the drawing
  std::string_view type;  // as that space has it, where the file tells
};

/// What a surface with one space is, by its type. Surfaces between two are judged by these.
constexpr struct {
  std::string_view type;
  Role role;
} kOuter[]{{"ExteriorWall", Role::Wall},
           {"Roof", Role::Roof},
           {"UndergroundWall", Role::UndergroundWall},
           {"SlabOnGrade", Role::SlabOnGrade},
           {"UndergroundSlab", Role::SlabBelowGrade},
           {"ExposedFloor", Role::FloorOverOutdoors},
           {"RaisedFloor", Role::FloorOverOutdoors}};
constexpr std::string_view kInner[]{"InteriorWall", "InteriorFloor", "Ceiling"};

class SurfaceReader {
 public:
  explicit SurfaceReader(Drawing& drawing) : drawing_(drawing), document_(drawing.document), tally_(drawing.tally) {
    const Element north = child(document_.first("Location"), "CADModelAzimuth");
    if (north && !text_of(north).empty()) north_ = document_.number(north);
  }

  void read(Element element) {
    tally_.found("Surface");
    if (attribute(element, "surfaceType") == "Shade")
      read_shade(element);
    else
      read_surface(element);
  }

  /// After all surfaces, as a body may stand anywhere in the file.
  void shade_windows() {
    if (bodies_.bodies().empty()) return;
    for (DrawnSpace& space : drawing_.spaces) {
      for (DrawnSurface& surface : space.surfaces) {
        for (DrawnOpening& opening : surface.openings) shade(opening);
      }
    }
    for (const ShadingBodies::Body& body : bodies_.bodies()) {
      if (body.is_used)
        tally_.taken("Surface");
      else
        tally_.left(document_, body.element, "Surface Shade", "it is no overhang and no fin of a window",
                    body.facing.area);
    }
  }

 private:
  void read_shade(Element element) {
    bodies_.add(element, points(child(element, "PlanarGeometry")));
    tally_.drawn("Shade", bodies_.bodies().back().facing.area);
  }

  void shade(DrawnOpening& opening) {
    if (opening.is_door) return;
    const std::vector<Point> loop = points(child(opening.element, "PlanarGeometry"));
    const double reveal = opening.shading.reveal;
    opening.shading = bodies_.shading_of(loop, facing_of(loop));
    opening.shading.reveal = reveal;
  }

  void read_surface(Element element) {
    const Parts parts(element);
    DrawnSurface surface;
    surface.element = element;
    surface.construction = attribute(element, "constructionIdRef");
    const std::string_view type = attribute(element, "surfaceType");
    const Facing facing = outline(parts, surface);
    tally_.drawn(type, facing.area);
    if (facing.area < kLeastArea) return leave(surface, parts, "its area is 0");
    if (facing.off_plane > kToldPart * std::sqrt(facing.area))
      tally_.note(document_, element,
                  "the points of its PolyLoop do not lie in a plane; its area is that of their mean plane");
    cross_check(parts, facing);
    surface.area = facing.area;
    surface.tilt = facing.tilt;
    surface.azimuth = facing.azimuth;
    place(surface, parts, type, facing);
  }

  void leave(const DrawnSurface& surface, const Parts& parts, const std::string& reason) {
    tally_.left(document_, surface.element, "Surface " + std::string(attribute(surface.element, "surfaceType")), reason,
                surface.area);
    for (const Element opening : parts.openings) {
      tally_.found("Opening");
      const double area = facing_of(points(child(opening, "PlanarGeometry"))).area;
      tally_.drawn(attribute(opening, "openingType"), area);
      tally_.left(document_, opening, "Opening " + std::string(attribute(opening, "openingType")),
                  "its surface was left out", area);
    }
  }

  /// Of a PlanarGeometry.
  std::vector<Point> points(Element geometry) {
    std::vector<Point> loop;
    loop.reserve(8);
    const double feet = document_.feet(geometry);
    for (Element point = child(geometry, "PolyLoop").first_child(); point; point = point.next_sibling()) {
      double at[3]{};
      size_t coordinate = 0;
      for (Element number = point.first_child(); number; number = number.next_sibling()) {
        if (coordinate < 3) at[coordinate] = document_.number(number) * feet;
        ++coordinate;
      }
      if (coordinate != 3)
        document_.refuse(point, "found " + std::to_string(coordinate) + " coordinates, wanted 3: x, y and z");
      loop.push_back({at[0], at[1], at[2]});
    }
    return loop;
  }

  /// Sets what of the surface depends on single points.
  Facing outline(const Parts& parts, DrawnSurface& surface) {
    const std::vector<Point> loop = points(parts.plane);
    if (loop.size() < 3) {
      tally_.note(document_, parts.element,
                  "it has no PlanarGeometry with a PolyLoop of 3 points or more; a RectangularGeometry alone does not "
                  "tell its place");
      return {};
    }
    const Facing facing = facing_of(loop);
    const Point along{facing.normal.y, -facing.normal.x, 0};  // horizontal, in the plane
    double first = 1e300, last = -1e300;
    surface.low = 1e300;
    surface.high = -1e300;
    for (const Point& at : loop) {
      surface.low = std::min(surface.low, at.z);
      surface.high = std::max(surface.high, at.z);
      first = std::min(first, dot(at, along));
      last = std::max(last, dot(at, along));
    }
    const double level = std::hypot(along.x, along.y);
    surface.width = level > 0 ? (last - first) / level : 0;
    return facing;
  }

  /// Of an inner surface it is open which side its rectangle faces.
  static bool is_outer(std::string_view type) {
    return std::ranges::find(kOuter, type, [](const auto& row) { return row.type; }) != std::end(kOuter);
  }

  void cross_check(const Parts& parts, const Facing& facing) {
    if (!parts.rectangle) return;
    const double feet = document_.feet(parts.rectangle);
    const auto stated = [&](const char* name) {
      const Element number = child(parts.rectangle, name);
      return number && !text_of(number).empty() ? std::optional(document_.number(number)) : std::nullopt;
    };
    const auto width = stated("Width"), height = stated("Height");
    if (width && height && std::abs(*width * *height * feet * feet - facing.area) > kToldPart * facing.area)
      tally_.note(
          document_, parts.element,
          "the area of its RectangularGeometry differs by more than 1 % from that of its PolyLoop, which is taken");
    if (!is_outer(attribute(parts.element, "surfaceType"))) return;
    const auto tilt = stated("Tilt"), azimuth = stated("Azimuth");
    const bool is_level = facing.tilt < 1 || facing.tilt > 179;
    const bool other_tilt = tilt && std::abs(*tilt - facing.tilt) > kToldDegrees;
    const bool other_azimuth = azimuth && !is_level && between(*azimuth, facing.azimuth) > kToldDegrees;
    if (other_tilt || other_azimuth)
      tally_.note(document_, parts.element,
                  "azimuth or tilt of its RectangularGeometry differ by more than 3.6 degrees from those of its "
                  "PolyLoop, which are taken");
  }

  std::vector<Beside> beside(const Parts& parts) {
    std::vector<Beside> spaces;
    for (const Element adjacent : parts.adjacent) {
      const std::string_view id = attribute(adjacent, "spaceIdRef");
      const auto found = drawing_.space_of_id.find(id);
      if (found == drawing_.space_of_id.end())
        document_.refuse(adjacent, "it refers to the space \"" + std::string(id) + "\", which the file does not have");
      spaces.push_back({found->second, attribute(adjacent, "surfaceType")});
    }
    return spaces;
  }

  DrawnSpace& space(size_t place) { return drawing_.spaces[place]; }

  void place(DrawnSurface& surface, const Parts& parts, std::string_view type, const Facing& facing) {
    const auto spaces = beside(parts);
    if (type == "Air") return leave(surface, parts, "it is an opening between spaces");
    if (type.ends_with("Column")) return leave(surface, parts, "columns are no part of the envelope");
    if (spaces.empty()) return leave(surface, parts, "no space lies beside it");
    for (const auto& row : kOuter) {
      if (row.type == type) return add_outer(surface, parts, row.role, spaces.front(), facing);
    }
    const bool is_inner = std::ranges::find(kInner, type) != std::end(kInner);
    if (type == "UndergroundCeiling") {
      surface.role = Role::CeilingToUnconditioned;
      return add(surface, parts, spaces.front());
    }
    if (!is_inner) document_.refuse(surface.element, "the surfaceType \"" + std::string(type) + "\" is none of gbXML");
    add_inner(surface, parts, spaces, facing);
  }

  void add_outer(DrawnSurface& surface, const Parts& parts, Role role, const Beside& one, const Facing& facing) {
    surface.role = role;
    if (role == Role::Roof && facing.tilt > 90) {
      tally_.note(document_, surface.element,
                  "the points of its PolyLoop run so that it faces down; it is taken as facing up");
      surface.tilt = 180 - facing.tilt;
      surface.azimuth = std::fmod(facing.azimuth + 180, 360);
    }
    if (role == Role::Wall && std::abs(facing.tilt - 90) > 30)
      tally_.note(document_, surface.element, "it leans more than 30 degrees; a wall of a space stands upright");
    surface.azimuth = std::fmod(surface.azimuth + north_ + 720, 360);
    add(surface, parts, one);
  }

  void add_inner(DrawnSurface& surface, const Parts& parts, const std::vector<Beside>& spaces, const Facing& facing) {
    if (spaces.size() < 2) return leave(surface, parts, "only one space lies beside it, and it is no outer surface");
    const Beside &first = spaces[0], &second = spaces[1];
    if (first.space == second.space) return leave(surface, parts, "the same space lies on both its sides");
    const bool level = facing.tilt < 45 || facing.tilt > 135;
    // The loop turns its outer side to the second space, unless the file says what it is to the first.
    const bool second_above = first.type == "Ceiling" || (first.type != "InteriorFloor" && facing.normal.z > 0);
    if (space(first.space).conditioned == space(second.space).conditioned) {
      if (level && space(first.space).conditioned) {
        DrawnSurface floor = surface;
        floor.role = Role::FloorOverConditioned;
        space((second_above ? second : first).space).surfaces.push_back(std::move(floor));
      }
      return leave(surface, parts,
                   space(first.space).conditioned ? "it lies between two conditioned spaces"
                                                  : "it lies between two unconditioned spaces");
    }
    const bool first_inside = space(first.space).conditioned;
    const Beside& inside = first_inside ? first : second;
    surface.role = !level                         ? Role::WallToUnconditioned
                   : first_inside == second_above ? Role::CeilingToUnconditioned
                                                  : Role::FloorOverUnconditioned;
    add(surface, parts, inside);
  }

  void add(DrawnSurface& surface, const Parts& parts, const Beside& to) {
    tally_.taken("Surface");
    const bool has_openings = surface.role == Role::Wall || surface.role == Role::Roof;
    double open = 0;
    for (const Element element : parts.openings) {
      tally_.found("Opening");
      add_opening(surface, element, has_openings);
      if (!surface.openings.empty() && surface.openings.back().element == element)
        open += surface.openings.back().area();
    }
    if (open > surface.area * (1 + kToldPart))
      tally_.note(document_, surface.element, "its openings are larger than the surface itself");
    space(to.space).surfaces.push_back(std::move(surface));
  }

  void add_opening(DrawnSurface& surface, Element element, bool has_openings) {
    const Parts parts(element);
    const std::string_view type = attribute(element, "openingType");
    const Facing facing = facing_of(points(parts.plane));
    const std::string name = "Opening " + std::string(type);
    tally_.drawn(type, facing.area);
    const auto left = [&](const char* why) { tally_.left(document_, element, name, why, facing.area); };
    if (facing.area < kLeastArea) return left("its area is 0");
    if (!has_openings) return left("only outer walls and roofs of a space have windows and doors");
    if (type == "Air")
      return left("it is a hole, which is neither window nor door; its area stays part of the surface");
    DrawnOpening opening;
    opening.element = element;
    opening.is_door = type.ends_with("Door");
    if (opening.is_door && surface.role == Role::Roof)
      return left("a roof of a space has no doors; its area stays part of the roof");
    cross_check(parts, facing);
    const Element height = child(parts.rectangle, "Height");
    opening.height =
        height && !text_of(height).empty() ? document_.number(height) * document_.feet(parts.rectangle) : 0;
    if (opening.height <= 0) opening.height = std::sqrt(facing.area);
    opening.width = facing.area / opening.height;
    opening.glazing = attribute(element, "windowTypeIdRef");
    opening.construction = attribute(element, "constructionIdRef");
    opening.u_value = document_.child_value(element, "U-value", "Btu/(hr.ft2.F)");
    opening.shade_coefficient = shade_coefficient_of(document_, element);
    opening.shading.reveal = std::round(1000 * document_.child_value(element, "Setback", "ft").value_or(0)) / 1000;
    tally_.taken("Opening");
    surface.openings.push_back(opening);
  }

  Drawing& drawing_;
  const GbxmlDocument& document_;
  Tally& tally_;
  ShadingBodies bodies_;
  double north_ = 0;  // deg clockwise from true north to the drawing's
};

}  // namespace

void read_surfaces(Drawing& drawing) {
  SurfaceReader reader(drawing);
  for (const Element element : drawing.document.all("Surface")) reader.read(element);
  reader.shade_windows();
}

}  // namespace tarn
