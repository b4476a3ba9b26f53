// Windows, doors and shades from the openings of surfaces, a type for each size.
#include <cmath>

#include "gbxml/children.h"
#include "gbxml/library.h"
#include "reflect/json_text.h"
#include "tarn/door.h"
#include "tarn/shade.h"
#include "tarn/window.h"

namespace tarn {
namespace {

std::string short_text(double feet) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4g", feet);
  return text;
}

std::string size_text(const OpeningType& type) {
  return short_text(type.width) + " x " + short_text(type.height) + " ft";
}

std::string key_of(const Shading& shading) {
  std::string key;
  for (const double number : {shading.reveal, shading.overhang, shading.overhang_height, shading.overhang_right,
                              shading.overhang_left, shading.right_separation, shading.right_fin, shading.right_height,
                              shading.left_separation, shading.left_fin, shading.left_height})
    key += short_text(number) + " ";
  return key;
}

/// "Overhang 2 ft, fins 1 ft": of what there is.
std::string title_of(const Shading& shading) {
  std::string title;
  const auto part = [&](const char* what, double feet) {
    if (feet > 0) title += (title.empty() ? "" : ", ") + std::string(what) + " " + short_text(feet) + " ft";
  };
  part("Reveal", shading.reveal);
  part(title.empty() ? "Overhang" : "overhang", shading.overhang);
  part(title.empty() ? "Fins" : "fins", std::max(shading.right_fin, shading.left_fin));
  return title;
}

/// Of the type's content, so that it is found again after the next import.
std::string key_of(const OpeningType& type) {
  std::string key = std::string(type.glazing) + "|" + std::string(type.construction) + "|" + size_text(type);
  for (const auto& number : {type.u_value, type.shade_coefficient}) key += "|" + (number ? short_text(*number) : "");
  return key + "|" + key_of(type.shading);
}

void set_panes(WIN_Window& window, const DrawnGlazing& glazing) {
  for (int slot = 1; slot <= 3; ++slot) {
    const auto number = static_cast<size_t>(slot) - 1;
    const bool there = number < glazing.panes.size();
    const DrawnPane pane = there ? glazing.panes[number] : DrawnPane{};
    constexpr int16_t kClear = 1, kCoated = 15;  // codes of the window method
    window.GlassTypeID(slot) = !there ? int16_t{0} : pane.low_emissivity ? kCoated : kClear;
    window.GlassNameEnglish(slot) = fitted(pane.name, 25).text;
    window.GlassNameMetric(slot) = fitted(pane.name, 25).text;
    window.GlassTrans(slot) = static_cast<float>(pane.transmittance);
    window.GlassReflect(slot) = static_cast<float>(pane.reflectance);
    window.GlassAbsorp(slot) =
        there ? static_cast<float>(std::max(1 - pane.transmittance - pane.reflectance, 0.0)) : 0.0F;
    window.GlassThickness(slot) = static_cast<float>(pane.thickness);
    window.GlassConductivity(slot) = static_cast<float>(pane.conductivity);
  }
  window.GapTypeID = glazing.gap;
  window.FrameType = glazing.frame;
}

}  // namespace

const DrawnGlazing* Library::glazing(std::string_view id) const {
  const auto found = filling_.drawing.glazings.find(id);
  if (found == filling_.drawing.glazings.end()) {
    if (!id.empty())
      filling_.tally.note("openings refer to the window type \"" + std::string(id) +
                          "\", which the file does not have");
    return nullptr;
  }
  used_glazings_.insert(id);
  return &found->second;
}

std::string Library::title(const OpeningType& type) const {
  const DrawnGlazing* const glass = type.glazing.empty() ? nullptr : glazing(type.glazing);
  const DrawnConstruction* const solid = construction(type.construction);
  std::string_view name = glass ? glass->name : solid ? solid->name : std::string_view{};
  if (name.empty()) name = type.is_door ? "Door" : "Window";
  const std::string size = " " + size_text(type);
  if (name.ends_with(size)) return std::string(name);  // as it was exported
  return fitted(name, 255 - size.size()).text + size;
}

LibraryType Library::window(const OpeningType& type) {
  const auto [known, is_new] = windows_.try_emplace(type);
  if (is_new) known->second = make_window(type);
  return known->second;
}

LibraryType Library::door(const OpeningType& type) {
  const auto [known, is_new] = doors_.try_emplace(type);
  if (is_new) known->second = make_door(type);
  return known->second;
}

LibraryType Library::make_window(const OpeningType& type) {
  const DrawnGlazing* const glass = glazing(type.glazing);
  const DrawnConstruction* const solid = construction(type.construction);
  const auto object = filling_.project.NewWindow();
  const int16_t index = filling_.entity(object, key_of(type), [&](WIN_Window& window, bool) {
    window.Name = filling_.name_for(window, title(type), "Window", 255);
    window.Width = static_cast<float>(type.width);
    window.Height = static_cast<float>(type.height);
    const bool has_panes = glass && !glass->panes.empty();
    std::optional<double> u_value = type.u_value, shading = type.shade_coefficient;
    if (!u_value && glass) u_value = glass->u_value;
    if (!u_value && !glass && solid) u_value = solid->u_value;
    if (!shading && glass) shading = glass->shade_coefficient;
    const bool is_stated = u_value && shading;
    if (has_panes || is_stated) set_panes(window, glass ? *glass : DrawnGlazing{});
    if (has_panes || !is_stated) window.CalculatePerformance();
    window.OverallUValue = static_cast<float>(u_value.value_or(window.OverallUValue));
    window.OverallShadeCo = static_cast<float>(shading.value_or(window.OverallShadeCo));
    if (!has_panes && !is_stated)
      filling_.tally.note(
          "windows have no panes and not both a U-value and an SHGC; what is missing is the default window's");
  });
  return {index, object->OverallUValue};
}

LibraryType Library::make_door(const OpeningType& type) {
  const DrawnGlazing* const glass = type.glazing.empty() ? nullptr : glazing(type.glazing);
  const auto object = filling_.project.NewDoor();
  const int16_t index = filling_.entity(object, key_of(type), [&](DOR_Door& door, bool) {
    door.Name = filling_.name_for(door, title(type), "Door", 255);
    door.Width = static_cast<float>(type.width);
    door.Height = static_cast<float>(type.height);
    door.AreaSpec = DOR_AreaSpec::DAS_HEIGHT_AND_WIDTH;
    door.GrossArea = static_cast<float>(type.width * type.height);
    const double solid = type.u_value ? *type.u_value : u_value(type.construction, kInsideFilm + kOutsideFilm);
    if (solid > 0)
      door.SolidUValue = static_cast<float>(solid);
    else if (!glass)
      filling_.tally.note("doors have no construction with a U-value; they conduct as the default door");
    door.GlassArea = glass ? door.GrossArea.value : 0.0F;
    if (glass && glass->u_value) door.GlassUValue = static_cast<float>(*glass->u_value);
    if (glass && glass->shade_coefficient) door.GlassShadeCo = static_cast<float>(*glass->shade_coefficient);
  });
  return {index, glass ? object->GlassUValue : object->SolidUValue};
}

int16_t Library::shade(const OpeningType& type) {
  const Shading& drawn = type.shading;
  if (drawn.is_none()) return 0;
  const auto [known, is_new] = shades_.try_emplace(drawn);
  if (!is_new) return known->second;
  return known->second = filling_.entity(filling_.project.NewShade(), key_of(drawn), [&](SHD_Shade& shade, bool) {
    shade.Name = filling_.name_for(shade, title_of(drawn), "Shade", 30);
    const auto set = [](R4& field, double feet) { field = static_cast<float>(feet); };
    set(shade.RevealDepth, drawn.reveal);
    set(shade.OvhgExt, drawn.overhang);
    set(shade.OvhgHeight, drawn.overhang_height);
    set(shade.OvhgRHExt, drawn.overhang_right);
    set(shade.OvhgLHExt, drawn.overhang_left);
    set(shade.RHFinSep, drawn.right_separation);
    set(shade.RHFinExt, drawn.right_fin);
    set(shade.RHFinHeight, drawn.right_height);
    set(shade.LHFinSep, drawn.left_separation);
    set(shade.LHFinExt, drawn.left_fin);
    set(shade.LHFinHeight, drawn.left_height);
  });
}

void Library::count_children(const DrawnConstruction& drawn) {
  Children children(drawn.element);
  for (const char* const name : {"Name", "U-value", "LayerId"}) children.take(name);
  const bool is_wall_or_roof = slabs_.contains({drawn.id, false}) || slabs_.contains({drawn.id, true});
  each_child(drawn.element, "Absorptance", [&](Element absorptance) {
    if (is_wall_or_roof && attribute(absorptance, "type") == "ExtSolar") children.take(absorptance);
  });
  constexpr LeftOut kLeftOut[]{
      {"Absorptance", "only the solar absorptance of the outside is taken, of walls and roofs"},
      {"Description", "a construction has a name alone"},
      {"CADObjectId", "it is a number of the drawing program"},
  };
  children.count(filling_.document, filling_.tally, kLeftOut, "a construction has no place for it");
}

void Library::count_used() {
  Tally& tally = filling_.tally;
  for (size_t i = 0; i < used_constructions_.size(); ++i) tally.taken("Construction");
  for (size_t i = 0; i < used_glazings_.size(); ++i) tally.taken("WindowType");
  for (const auto& [id, drawn] : filling_.drawing.constructions) {
    if (used_constructions_.contains(id))
      count_children(drawn);
    else
      tally.left(filling_.document, drawn.element, "Construction",
                 "no outer surface, opening, floor or partition uses it");
  }
  for (const Element element : filling_.document.all("WindowType")) {
    if (!used_glazings_.contains(attribute(element, "id")))
      tally.left(filling_.document, element, "WindowType", "no opening that is taken uses it");
  }
}

}  // namespace tarn
