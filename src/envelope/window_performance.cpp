#include "envelope/window_performance.h"

#include <cmath>

#include "tarn/window.h"

// Lengths in ft, glass thickness in inches, resistances in hr.ft2.F/Btu. docs/windows.md explains each step.

namespace tarn {
namespace {

constexpr double kInsideFilm = 1.46;  // Btu/(hr.ft2.F)
constexpr double kOutsideFilmWinter = 5.1;
constexpr double kOutsideFilmSummer = 4.0;
constexpr double kLeast = 0.0001;         // conductivities, resistances and determinants below count as none
constexpr double kEdgeBand = 2.5 / 12.0;  // ft
constexpr double kEdgeBelow = 0.7;        // centre U-value under which the edge of the glass differs
constexpr double kShadeResistance = 0.3;
constexpr double kReferenceGain = 0.87;  // solar heat gain of the reference glass
constexpr double kFrameAbsorptance = 0.9;

struct GapResistance {
  double low_e, plain;
};
constexpr GapResistance kGaps[]{{1.22549, 0.83333}, {1.89394, 1.09649}, {1.73611, 0.99206},
                                {2.31481, 1.22549}, {2.60417, 1.22549}, {2.45098, 1.26263}};

struct Frame {
  double area_share, u_value;
};
constexpr Frame kFrames[]{{0, 0}, {0.15, 1.0}, {0.15, 1.9}, {0.18, 0.4}, {0.18, 0.3}};

struct Shade {
  double transmitted, reflected;
};
constexpr Shade kShades[]{{1.0, 0},     {0.58, 0.06}, {0.49, 0.26}, {0.39, 0.54}, {0.41, 0.11}, {0.29, 0.39},
                          {0.18, 0.72}, {0.17, 0.20}, {0.11, 0.51}, {0.05, 0.81}, {0.25, 0.15}, {0, 0.35},
                          {0, 0.80},    {0.05, 0.40}, {0.05, 0.60}, {0, 0.23}};

template <typename T, size_t N>
T entry(const T (&table)[N], int code) {
  return code >= 0 && code < static_cast<int>(N) ? table[code] : T{};
}

/// The glazing, absent layers transparent.
struct Glazing {
  double transmitted[3], reflected[3], absorbed[3];
  bool present[3];
  double gaps[2]{};  // resistance in front of the second and third present layer
  int layers = 0;
  double conduction = 0;  // resistance of the glass itself
};

Glazing glazing_of(const WindowRecord& window) {
  Glazing g{};
  for (int i = 0; i < 3; ++i) {
    const int type = window.GlassTypeID(i + 1);
    g.present[i] = type >= 1;
    g.transmitted[i] = g.present[i] ? window.GlassTrans(i + 1) : 1.0;
    g.reflected[i] = g.present[i] ? window.GlassReflect(i + 1) : 0.0;
    g.absorbed[i] = g.present[i] ? window.GlassAbsorp(i + 1) : 0.0;
    if (!g.present[i]) continue;
    if (g.layers > 0) {
      const bool low_e = type >= 15 && type <= 17;
      const GapResistance gap = entry(kGaps, window.GapTypeID);
      g.gaps[g.layers - 1] = low_e ? gap.low_e : gap.plain;
    }
    const double conductivity = window.GlassConductivity(i + 1);
    if (conductivity > kLeast) g.conduction += window.GlassThickness(i + 1) / 12.0 / conductivity;
    ++g.layers;
  }
  return g;
}

double centre_u_value(const Glazing& g, double outside_film) {
  const double resistance = 1 / kInsideFilm + 1 / outside_film + g.conduction + g.gaps[0] + g.gaps[1];
  return resistance > kLeast ? 1 / resistance : 0;
}

/// Areas of the window, ft2.
struct Areas {
  double gross, frame, centre, edge;
};

Areas areas_of(double height, double width, bool framed, bool edged, double frame_share) {
  Areas a{};
  a.gross = height * width;
  a.frame = frame_share * a.gross;
  const double half = height + width;
  const double band = framed ? (half - std::sqrt(half * half - 4 * a.frame)) / 4 : 0;
  const double inset = 2 * band + 2 * (edged ? kEdgeBand : 0);
  a.centre = (height - inset) * (width - inset);
  a.edge = a.gross - a.centre - a.frame;
  return a;
}

/// Solar heat gained inside over that on the glass.
double glazing_solar_factor(const Glazing& g, const Shade& shade) {
  const double* t = g.transmitted;
  const double* r = g.reflected;
  const double d = (1 - r[2] * r[1]) * (1 - r[1] * r[0]) - t[1] * t[1] * r[0] * r[2];
  double through = 0;
  double back = r[0];
  if (d > kLeast) {
    through = t[0] * t[1] * t[2] / d;
    back += (t[0] * t[0] * t[1] * t[1] * r[2] + (1 - r[2] * r[1]) * t[0] * t[0] * r[1]) / d;
  }
  const double summer_u = centre_u_value(g, kOutsideFilmSummer);
  double inward = 0;
  double gaps_before = 0;
  int layer = 0;
  for (int i = 0; i < 3; ++i) {
    if (!g.present[i]) continue;
    if (layer > 0) gaps_before += g.gaps[layer - 1];
    inward += (summer_u * gaps_before + summer_u / kOutsideFilmSummer) * g.absorbed[i];
    ++layer;
  }
  const double absorbing = 1 - shade.transmitted - shade.reflected;
  const double bounced = 1 - back * absorbing;
  return (1 + through * absorbing / bounced) * inward + (1 - absorbing) * through / bounced;
}

}  // namespace

WindowPerformance window_performance(const WindowRecord& window) {
  const Glazing g = glazing_of(window);
  const int frame_type =
      window.FrameType >= 0 && window.FrameType < static_cast<int>(std::size(kFrames)) ? window.FrameType : 0;
  const Frame frame = kFrames[frame_type];
  const bool edged = g.layers > 1 && frame_type != 0;
  const double centre_u = centre_u_value(g, kOutsideFilmWinter);
  const double edge_u =
      edged && centre_u < kEdgeBelow ? 0.7321 * centre_u * centre_u + 0.0375 * centre_u + 0.4057 : centre_u;
  const Areas a = areas_of(window.Height, window.Width, frame_type > 0, edged, frame.area_share);
  if (a.gross == 0)
    fail(ErrorNumber::DivisionByZero, "Division by zero: the window has no area; set its Height and Width.");

  const double u = (a.centre * centre_u + a.edge * edge_u + a.frame * frame.u_value) / a.gross;
  const double shade_resistance = window.ShadeType > 0 ? kShadeResistance : 0;
  const double glass_factor = glazing_solar_factor(g, entry(kShades, window.ShadeType));
  const double frame_factor = frame.u_value * kFrameAbsorptance / kOutsideFilmSummer;
  const double gain = ((a.gross - a.frame) * glass_factor + a.frame * frame_factor) / a.gross;
  const WindowPerformance result{static_cast<float>(1 / (1 / u + shade_resistance)),
                                 static_cast<float>(gain / kReferenceGain)};
  if (!std::isfinite(result.u_value) || !std::isfinite(result.shade_coefficient)) {
    fail(ErrorNumber::Overflow, "Overflow: the window's layers, frame and size give no finite result; check them.");
  }
  return result;
}

}  // namespace tarn
