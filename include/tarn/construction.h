// A construction of a wall or a roof: ten slots of layers from outside to inside, surface properties, and the
// conduction transfer functions that follow from the layers. Slots 1 and 10 are the fixed outer layers; real layers
// are packed from slot 2 on. Walls and roofs are one class with a record file and tables each.
#pragma once

#include <array>
#include <optional>

#include "tarn/base/labels.h"
#include "tarn/slab.h"
#include "tarn/storage/entity.h"
#include "tarn/storage/part.h"

namespace tarn {

enum class CA_Category : int16_t { CA_CAT_Wall = 0, CA_CAT_Roof = 1 };
template <>
inline constexpr auto code_table<CA_Category> = codes_between<CA_Category::CA_CAT_Wall, CA_Category::CA_CAT_Roof>;

enum class CA_ReturnCodes : int16_t {
  CA_ERR_NOERR = 0,
  CA_ERR_TFCG = -3,  // the layers have no transfer functions
  CA_ERR_SAVE = -4   // any other failure
};
template <>
inline constexpr CodeText<CA_ReturnCodes> code_table<CA_ReturnCodes>[] = {
    {CA_ReturnCodes::CA_ERR_NOERR},
    {CA_ReturnCodes::CA_ERR_TFCG},
    {CA_ReturnCodes::CA_ERR_SAVE},
};

/// A layer's block of the wall and roof files; ten of them follow the header.
struct LayerRecord {
  Text<255> Name;
  Bool LayerUsed;
  R4 Thickness;          // ft
  R4 Conductivity;       // Btu/(hr.ft.F)
  R4 Density;            // lb/ft3
  R4 SpecificHeat;       // Btu/(lb.F)
  R4 ThermalResistance;  // hr.ft2.F/Btu
  R4 Weight;             // lb/ft2
};
static_assert(sizeof(LayerRecord) == 281);

/// The header of a record of the wall and roof files; ten layers follow.
struct ConstructionRecord {
  Text<255> Name;
  R4 Absorptivity;
  I2 Color;
  R4 InsideSurfaceResistance, OutsideSurfaceResistance;  // hr.ft2.F/Btu
  R4 OverallUValue;                                      // Btu/(hr.ft2.F)
  R4 OverallWeight;                                      // lb/ft2
  Array<R4, 12> BTrans, DTrans;                          // element 1 has order 0
  R4 CTrans;                                             // sum of the c terms
};
static_assert(sizeof(ConstructionRecord) == 377);

class CTFCG;

class CA_Layer final : public Part<LayerRecord> {
 public:
  const ClassInfo& info() const override;

  /// In inches, as it was set; the record has feet.
  float ThicknessInches() const;
  void SetThicknessInches(float inches);
  /// The thickness that calculations take, in ft: the inches of the object over 12.
  float ThicknessFeet() const { return ThicknessInches() / 12; }

  /// Resistance and weight from thickness, conductivity and density, where those are there; else those of the record. A
  /// layer without mass (no density, or no specific heat) keeps a resistance that it has: an air space is no slab of
  /// its conductivity.
  float derived_resistance() const;  // hr.ft2.F/Btu
  float derived_weight() const;      // lb/ft2
  /// Sets them.
  void derive();

  /// A layer's whole content, which moves between slots.
  struct Content {
    LayerRecord record;
    float inches = 0;
  };
  Content content() const { return {*this, inches_}; }
  void set_content(const Content& content);

 private:
  float inches_ = 0;  // while a twelfth of it is what the record has; else the record was read since
};

class CA_ConstructionAssly final : public Entity<CA_ConstructionAssly, ConstructionRecord> {
 public:
  static constexpr int kLayers = 10;

  CA_ConstructionAssly();
  const ClassInfo& info() const override;
  /// Error `InvalidCall` where Category and record file contradict each other.
  const Kind& kind() const override;

  /// What the record file keeps, by its name's end (WAL.DAT, ROF.DAT), unless set.
  CA_Category Category() const;
  void SetCategory(CA_Category category) { category_ = category; }

  int16_t CoeffLBound() const { return 1; }
  int16_t CoeffUBound() const { return static_cast<int16_t>(decltype(BTrans)::size); }
  int16_t LayerCount() const { return kLayers; }
  /// A slot, 1 to 10; the object itself, not a copy. Error `SubscriptOutOfRange`.
  Ptr<CA_Layer> GetLayer(int16_t nIndex);
  CA_Layer& layer(int number);

  /// A new used layer directly above the last used one at or below a slot from 2 to 9; returns its slot. What stood in
  /// slot 9 is lost. Any other slot is logged, changes nothing, and gives 0.
  int16_t InsertLayer(int16_t nInsertAt);
  /// Takes out the layer of a slot from 2 to 9; those above move down. Returns the slot, 0 as `InsertLayer`.
  int16_t RemoveLayer(int16_t nRemoveAt);

  /// Sets BTrans, DTrans and CTrans from the used layers. False, and all of them 0, where there are none to find; the
  /// reason is logged.
  bool CalcTransferCoefficients();
  /// As `StoredEntity::Save`, which throws; here a construction without transfer functions is the code CA_ERR_TFCG,
  /// with nothing written. Any other failure is thrown as there, with CA_ERR_SAVE as the code.
  void Save(CA_ReturnCodes& ReturnCode);
  using StoredEntity::Save;

  /// How well the coefficients, as they stand, hold the response of the layers. Error `InvalidCall`, with the reason,
  /// for layers without transfer functions.
  Accuracy coefficient_accuracy() const;
  /// The coefficients, as they stand, are not those of the layers: these have changed since, or another program
  /// computed them badly. Error as above.
  bool coefficients_are_stale() const;
  /// An error above this is told wherever the construction is.
  static constexpr double kToldError = 0.002;
  /// "12 transfer function terms hold the response of the layers to 0.5 % only; what slows it most: layer 2 (4 in
  /// brick)". Empty up to kToldError.
  std::string told(const Accuracy& accuracy) const;
  /// The used layers as calculations have them, outside to inside. Error `InvalidCall`, with the reason.
  std::vector<SlabLayer> slab() const;

  // Over all ten slots, used or not.
  float GetTotalThickness() const;          // in
  float GetTotalThermalResistance() const;  // hr.ft2.F/Btu
  float GetTotalWeight() const;             // lb/ft2
  /// Sets OverallUValue and OverallWeight from the used layers, and the resistance and weight of these first, as
  /// `CA_Layer::derive`. A slot that is not used becomes as `RemoveLayer` leaves it, with zeros.
  void ComputeSummary();
  /// By the used layers as they are now, whatever is stored: Btu/(hr.ft2.F), 0 without resistance; and lb/ft2.
  double layers_u_value() const;
  double layers_weight() const;
  /// What the transfer functions conduct in a steady state, sum b / sum d, in Btu/(hr.ft2.F); 0 where there are none.
  double steady_u_value() const;

 private:
  void before_save(SaveContext& save) override;
  void keep_given_coefficients();
  void copy_rest(const StoredEntity& from, bool content) override;
  CTFCG generator() const;
  std::string generate();
  std::string named() const;

  std::array<CA_Layer, kLayers> layers_;
  std::optional<CA_Category> category_;
};

}  // namespace tarn
