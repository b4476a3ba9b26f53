#include "tarn/construction.h"

#include <cmath>
#include <cstdio>

#include "base/nearest.h"
#include "envelope/ctf_generator.h"
#include "platform/host.h"
#include "storage/kind.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

constexpr std::string_view kClass = "CA_ConstructionAssly";
constexpr double kForeignError = 0.01;  // of coefficients that come with the layers, and are kept

Kind kind_of(std::string_view word) {
  using C = CA_ConstructionAssly;
  const bool roof = word == "Roof";
  return {.class_name = kClass,
          .index_table = roof ? "RoofIndex" : "WallIndex",
          .default_word = word,
          .missing_row_message = "Cannot find assembly record in DB for index: ",
          .columns = {summary<C, &ConstructionRecord::OverallUValue>("fOverallUValue"),
                      summary<C, &ConstructionRecord::OverallWeight>("fOverallWeight"),
                      computed<C, &C::GetTotalThickness>("fThickness", "in")},
          .reach = roof ? Reach::through_spaces("Space_Roof_Links", "Roof_ID")
                        : Reach::through_spaces("Space_Wall_Links", "Wall_ID"),
          .saved_anew = true};
}

/// A failure of the generator, apart from those of storage; the description ends in the reason.
struct GenerationFailed : Error {
  GenerationFailed(const std::string& who, std::string why)
      : Error(ErrorNumber::InvalidCall, who + " was not saved, as it has no transfer functions: " + why + "."),
        reason(std::move(why)) {}
  std::string reason;
};

/// Lets a user interface handle its pending events.
void let_others_run() {
  if (host().yield) host().yield();
}

std::optional<CA_Category> category_of_file(std::string_view path) {
  const auto ends_in = [path](std::string_view name) {
    return path.size() >= name.size() && same_word(path.substr(path.size() - name.size()), name);
  };
  if (ends_in("ROF.DAT")) return CA_Category::CA_CAT_Roof;
  if (ends_in("WAL.DAT")) return CA_Category::CA_CAT_Wall;
  return std::nullopt;
}

CA_Layer::Content fresh_layer(std::string_view name, bool used) {
  CA_Layer::Content content{};
  content.record.Name = name;
  content.record.LayerUsed = used;
  content.record.Conductivity = 1.0F;
  return content;
}

std::string text_of(double value, const char* format) {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

}  // namespace

float CA_Layer::ThicknessInches() const { return inches_ / 12 == Thickness ? inches_ : Thickness * 12; }

void CA_Layer::SetThicknessInches(float inches) {
  inches_ = inches;
  Thickness = inches / 12;
}

void CA_Layer::set_content(const Content& content) {
  static_cast<LayerRecord&>(*this) = content.record;
  inches_ = content.inches;
}

const ClassInfo& CA_Layer::info() const {
  using R = LayerRecord;
  using C = CA_Layer;
  static constexpr auto members =
      describe<C>(Failures::Trapped, property<&R::Name>.trimmed(), property<&R::LayerUsed>,
                  converted<&R::Thickness, &C::ThicknessInches, &C::SetThicknessInches>("in").stored_in("ft"),
                  property<&R::Conductivity>("Btu/(hr.ft.F)"), property<&R::Density>("lb/ft3"),
                  property<&R::SpecificHeat>("Btu/(lb.F)"), property<&R::ThermalResistance>("hr.ft2.F/Btu"),
                  property<&R::Weight>("lb/ft2"));
  static const ClassInfo info(members);
  return info;
}

CA_ConstructionAssly::CA_ConstructionAssly() {
  for (CA_Layer& each : layers_) add_block(each.bytes());
}

CA_Category CA_ConstructionAssly::Category() const {
  return category_.value_or(category_of_file(FileName).value_or(CA_Category::CA_CAT_Wall));
}

const Kind& CA_ConstructionAssly::kind() const {
  static const Kind wall = kind_of("Wall");
  static const Kind roof = kind_of("Roof");
  const bool is_roof = Category() == CA_Category::CA_CAT_Roof;
  if (category_of_file(FileName).value_or(Category()) != Category()) {
    fail(ErrorNumber::InvalidCall, FileName + " keeps " + (is_roof ? "walls" : "roofs") +
                                       ", but the Category of the construction says " + (is_roof ? "roof" : "wall") +
                                       "; set Category or FileName.");
  }
  return is_roof ? roof : wall;
}

const ClassInfo& CA_ConstructionAssly::info() const {
  using R = ConstructionRecord;
  using C = CA_ConstructionAssly;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::m_bCloning>, property<&C::Category, &C::SetCategory>,
      property<&C::Index>.read_only(), method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"), property<&C::FileName>,
      property<&R::Absorptivity>, property<&C::CoeffLBound>, property<&C::CoeffUBound>, property<&R::Color>,
      property<&R::BTrans>("Btu/(hr.ft2.F)"), another<&R::BTrans>.named("BTransArray")("Btu/(hr.ft2.F)"),
      property<&R::CTrans>("Btu/(hr.ft2.F)"), property<&R::DTrans>, another<&R::DTrans>.named("DTransArray"),
      property<&R::InsideSurfaceResistance>("hr.ft2.F/Btu"), property<&R::Name>.trimmed(),
      property<&R::OutsideSurfaceResistance>("hr.ft2.F/Btu"), property<&R::OverallUValue>("Btu/(hr.ft2.F)"),
      property<&R::OverallWeight>("lb/ft2"), part<&C::GetLayer, kLayers>("nIndex"), property<&C::LayerCount>,
      method<&C::Reset>("bResetAll").by_reference(), method<&C::CalcTransferCoefficients>, method<&C::Clone>("nIndex"),
      method<&C::Delete>("nRecNum"), method<&C::Load>("nRecNum"),
      method<static_cast<void (C::*)(CA_ReturnCodes&)>(&C::Save)>("ReturnCode"), method<&C::CreateDefault>,
      method<&C::InsertLayer>("nInsertAt"), method<&C::RemoveLayer>("nRemoveAt"), method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"), method<&C::ComputeSummary>);
  static const ClassInfo info(members);
  return info;
}

CA_Layer& CA_ConstructionAssly::layer(int number) {
  if (number < 1 || number > kLayers) subscript_out_of_range(number, kLayers);
  return layers_[static_cast<size_t>(number) - 1];
}

Ptr<CA_Layer> CA_ConstructionAssly::GetLayer(int16_t nIndex) { return shared_part(*this, layer(nIndex)); }

namespace {

/// Whether a slot lies between the fixed outer layers; logged, as "Insertion" or "Removal", where it does not.
bool in_sequence(std::string_view what, std::string_view argument, int16_t slot) {
  if (slot > 1 && slot < CA_ConstructionAssly::kLayers) return true;
  log().message(std::string(what) +
                " point cannot be below the lower bound or above the upper bound of the Layer sequence. " +
                std::string(argument) + "=" + std::to_string(slot));
  return false;
}

}  // namespace

int16_t CA_ConstructionAssly::InsertLayer(int16_t nInsertAt) {
  if (!in_sequence("Insertion", "nInsertAt", nInsertAt)) return 0;
  for (int slot = kLayers - 1; slot > nInsertAt; --slot) layer(slot).set_content(layer(slot - 1).content());
  layer(nInsertAt).set_content(fresh_layer("New Layer", true));
  // Close up: unused slots below go to the top, down to slot 2; slot 1 is no part of the sequence.
  int16_t at = nInsertAt;
  for (int16_t below = nInsertAt - 1; below > 1; --below) {
    if (layer(below).LayerUsed) continue;
    RemoveLayer(below);
    --at;
  }
  return at;
}

int16_t CA_ConstructionAssly::RemoveLayer(int16_t nRemoveAt) {
  if (!in_sequence("Removal", "nRemoveAt", nRemoveAt)) return 0;
  for (int slot = nRemoveAt; slot < kLayers - 1; ++slot) layer(slot).set_content(layer(slot + 1).content());
  layer(kLayers - 1).set_content(fresh_layer("Not used", false));
  return nRemoveAt;
}

CTFCG CA_ConstructionAssly::generator() const {
  CTFCG generator;
  int16_t used = 0;
  for (int16_t slot = 1; slot <= kLayers; ++slot) {
    let_others_run();
    const CA_Layer& each = layers_[static_cast<size_t>(slot) - 1];
    if (!each.LayerUsed) continue;
    generator.SetLayer(++used, true, each.Conductivity, each.Density, each.SpecificHeat, each.ThermalResistance,
                       each.ThicknessFeet(), each.Weight, slot);
  }
  let_others_run();
  return generator;
}

Accuracy CA_ConstructionAssly::coefficient_accuracy() const {
  Series b{}, d{};
  for (int i = 1; i <= CoeffUBound(); ++i) {
    b[static_cast<size_t>(i - 1)] = BTrans(i);
    d[static_cast<size_t>(i - 1)] = DTrans(i);
  }
  return generator().accuracy_of(b, d);
}

bool CA_ConstructionAssly::coefficients_are_stale() const {
  return !(coefficient_accuracy().worst() <= kForeignError);  // nothing, where all of them are 0
}

std::vector<SlabLayer> CA_ConstructionAssly::slab() const { return generator().slab(); }

std::string CA_ConstructionAssly::told(const Accuracy& accuracy) const {
  if (accuracy.worst() <= kToldError) return {};
  const std::vector<int16_t> slots = generator().slowest_layers();
  std::string text = "12 transfer function terms hold the response of the layers to " +
                     text_of(accuracy.worst() * 100, "%.2g") +
                     " % only; what slows it most: " + (slots.size() == 1 ? "layer " : "layers ");
  for (size_t i = 0; i < slots.size(); ++i) {
    if (i > 0) text += i + 1 < slots.size() ? ", " : " and ";
    text += std::to_string(slots[i]);
    const std::string name = layers_[static_cast<size_t>(slots[i]) - 1].Name.trimmed();
    if (!name.empty()) text += " (" + name + ")";
  }
  return text;
}

/// Fills the coefficients, or zeroes them and returns why there are none.
std::string CA_ConstructionAssly::generate() {
  CTFCG table = generator();
  TransferFunctions found;
  const bool success = table.Generate(found, let_others_run);
  for (int i = 1; i <= CoeffUBound(); ++i) {
    BTrans(i) = static_cast<float>(found.b[static_cast<size_t>(i - 1)]);
    DTrans(i) = static_cast<float>(found.d[static_cast<size_t>(i - 1)]);
  }
  CTrans = static_cast<float>(found.c_sum);
  if (!success) return table.failure();
  if (const std::string text = told(found.accuracy); !text.empty()) log().message(named() + ": " + text + ".");
  return {};
}

/// "Wall 3 (Brick veneer)", as far as it is known.
std::string CA_ConstructionAssly::named() const {
  std::string text(Category() == CA_Category::CA_CAT_Roof ? "Roof" : "Wall");
  if (Index() != 0) text += " " + std::to_string(Index());
  const std::string name = Name.trimmed();
  return name.empty() ? text : text + " (" + name + ")";
}

bool CA_ConstructionAssly::CalcTransferCoefficients() {
  const std::string failure = generate();
  if (!failure.empty()) log().message(named() + " has no transfer functions: " + failure + ".");
  return failure.empty();
}

void CA_ConstructionAssly::before_save(SaveContext& save) {
  if (save.form == SaveContext::Form::Default) return;
  if (save.form == SaveContext::Form::AsGiven) return keep_given_coefficients();
  if (const std::string failure = generate(); !failure.empty()) throw GenerationFailed(named(), failure);
}

/// Coefficients that come with the layers are kept where they fit the layers, whoever computed them. Layers without
/// transfer functions have none, whatever came with them.
void CA_ConstructionAssly::keep_given_coefficients() {
  double error = HUGE_VAL;
  try {
    const Accuracy accuracy = coefficient_accuracy();
    error = accuracy.worst();
    if (error <= kForeignError) {
      if (const std::string text = told(accuracy); !text.empty()) log().message(named() + ": " + text + ".");
      return;
    }
  } catch (const Error&) {  // `generate` tells why
  }
  const std::string failure = generate();
  if (!failure.empty())
    log().message(named() + " has no transfer functions: " + failure + ". Its coefficients are 0.");
  else if (error < HUGE_VAL)
    log().message(named() + ": its coefficients were " + text_of(error * 100, "%.2g") +
                  " % off the response of its layers, and are computed anew.");
}

void CA_ConstructionAssly::Save(CA_ReturnCodes& ReturnCode) {
  try {
    StoredEntity::Save();
    ReturnCode = CA_ReturnCodes::CA_ERR_NOERR;
  } catch (const GenerationFailed& failure) {
    log().message(GenerationFailed(named(), failure.reason).description());
    for (R4& term : BTrans.items) term = 0;
    for (R4& term : DTrans.items) term = 0;
    CTrans = 0;
    ReturnCode = CA_ReturnCodes::CA_ERR_TFCG;
  } catch (...) {
    ReturnCode = CA_ReturnCodes::CA_ERR_SAVE;
    throw;
  }
}

void CA_ConstructionAssly::copy_rest(const StoredEntity& from, bool content) {
  const auto& other = dynamic_cast<const CA_ConstructionAssly&>(from);
  category_ = other.category_;
  if (!content) return;
  for (size_t i = 0; i < layers_.size(); ++i) layers_[i].set_content(other.layers_[i].content());
}

namespace {

template <typename F>
float total(const std::array<CA_Layer, CA_ConstructionAssly::kLayers>& layers, std::string_view label, F value) {
  return trapped(
      kClass, label,
      [&] {
        float sum = 0;
        for (const CA_Layer& each : layers) sum += value(each);
        return sum;
      },
      0.0F);
}

}  // namespace

float CA_ConstructionAssly::GetTotalThickness() const {
  return total(layers_, "GetTotalThickness", [](const CA_Layer& l) { return l.ThicknessInches(); });
}
float CA_ConstructionAssly::GetTotalThermalResistance() const {
  return total(layers_, "GetTotalThermalResistance", [](const CA_Layer& l) { return float{l.ThermalResistance}; });
}
float CA_ConstructionAssly::GetTotalWeight() const {
  return total(layers_, "GetTotalWeight", [](const CA_Layer& l) { return float{l.Weight}; });
}

float CA_Layer::derived_resistance() const {
  const bool has_mass = Density > 0 && SpecificHeat > 0;
  const bool follows = Thickness > 0 && Conductivity > 0 && (has_mass || ThermalResistance == 0);
  return follows ? ThicknessFeet() / Conductivity : float{ThermalResistance};
}

float CA_Layer::derived_weight() const {
  return Thickness > 0 && Density > 0 ? ThicknessFeet() * Density : float{Weight};
}

void CA_Layer::derive() {
  ThermalResistance = derived_resistance();
  Weight = derived_weight();
}

namespace {

template <typename F>
double used_total(const std::array<CA_Layer, CA_ConstructionAssly::kLayers>& layers, F value) {
  double sum = 0;
  for (const CA_Layer& each : layers) {
    if (each.LayerUsed) sum += double{value(each)};
  }
  return sum;
}

}  // namespace

double CA_ConstructionAssly::layers_u_value() const {
  const double resistance = used_total(layers_, [](const CA_Layer& l) { return l.derived_resistance(); });
  return resistance > 0 ? 1 / resistance : 0;
}

double CA_ConstructionAssly::layers_weight() const {
  return used_total(layers_, [](const CA_Layer& l) { return l.derived_weight(); });
}

double CA_ConstructionAssly::steady_u_value() const {
  double b = 0, d = 0;
  for (int i = 1; i <= CoeffUBound(); ++i) {
    b += double{BTrans(i)};
    d += double{DTrans(i)};
  }
  return d > 0 ? b / d : 0;
}

void CA_ConstructionAssly::ComputeSummary() {
  for (CA_Layer& each : layers_) {
    if (each.LayerUsed)
      each.derive();
    else
      each.set_content(fresh_layer("Not used", false));
  }
  OverallUValue = static_cast<float>(layers_u_value());
  OverallWeight = static_cast<float>(layers_weight());
}

}  // namespace tarn
