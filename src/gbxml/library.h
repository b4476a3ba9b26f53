// The types that the surfaces of a drawing share: walls, roofs, windows, doors and shades, each made when it is first
// used.
#pragma once

#include "gbxml/filling.h"

namespace tarn {

/// An entity of the library and what it conducts.
struct LibraryType {
  int16_t index = 0;
  double u_value = 0;  // Btu/(hr.ft2.F)
};

/// What makes two openings one type.
struct OpeningType {
  bool is_door = false;
  std::string_view glazing, construction;
  std::optional<double> u_value, shade_coefficient;
  double width = 0, height = 0;  // ft, thousandths
  Shading shading;

  auto operator<=>(const OpeningType&) const = default;
};

class Library {
 public:
  explicit Library(Filling& filling) : filling_(filling) {}

  LibraryType wall(std::string_view construction) { return slab(construction, false); }
  LibraryType roof(std::string_view construction) { return slab(construction, true); }
  LibraryType window(const OpeningType& type);
  LibraryType door(const OpeningType& type);
  /// 0 without reveal, overhang and fins.
  int16_t shade(const OpeningType& type);
  /// What a partition or a floor conducts: the file's U-value or, where that is of the layers alone, that with air
  /// films of `films` hr.ft2.F/Btu on both sides together.
  double u_value(std::string_view construction, double films) const;
  /// Constructions that no wall, roof, door, floor or partition uses are left out and counted.
  void count_used();

 private:
  LibraryType slab(std::string_view construction, bool is_roof);
  LibraryType make_slab(const DrawnConstruction* drawn, std::string_view id, bool is_roof);
  LibraryType make_window(const OpeningType& type);
  LibraryType make_door(const OpeningType& type);
  void count_children(const DrawnConstruction& drawn);
  const DrawnConstruction* construction(std::string_view id) const;
  const DrawnGlazing* glazing(std::string_view id) const;
  std::string title(const OpeningType& type) const;

  Filling& filling_;
  std::map<std::pair<std::string_view, bool>, LibraryType> slabs_;
  std::map<OpeningType, LibraryType> windows_, doors_;
  std::map<Shading, int16_t> shades_;
  mutable std::set<std::string_view> used_constructions_, used_glazings_;
};

/// Still air inside and the wind of winter outside, as in the product's default walls and roofs.
inline constexpr double kInsideFilm = 0.685, kOutsideFilm = 0.333;  // hr.ft2.F/Btu

}  // namespace tarn
