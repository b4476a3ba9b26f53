// A plant: a file of its own, of packed records in sections - header, systems, details, results - which are loaded and
// saved as a mask selects them; a row in PlantIndex; links to the systems, equipment, towers and schedules it uses.
#pragma once

#include "tarn/plant_results.h"
#include "tarn/storage/section_entity.h"

namespace tarn {

class PLT_Plant final : public CopiedEntity<PLT_Plant, SectionEntity>, public Sized {
 public:
  PLT_Plant();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  std::string DefFileName;  // the default's file
  std::string FileName() const { return sections_.path_of(Index()); }

  PLT_ServiceHotWater ServiceHotWaterDetails;
  PLT_General General;
  PLT_Details Details;
  PLT_SystemSelect SystemSelect;
  PLT_SizingLoads SizingLoadsClg, SizingLoadsHtg;
  PLT_EqptSizingResults EqptSizingResults;
  PLT_DesignProfile DesignProfile;
  PLT_UnmetLoads UnmetLoadsClg, UnmetLoadsHtg;
  PLT_LEEDUnmetLoads LEEDUnmetLoadsClg, LEEDUnmetLoadsHtg;
  PLT_HourlySimData HourlySimData;

  /// The header, and the sections of a `PLT_ConstituentMasks` value or several joined; references without a link row
  /// are dropped from lists, which close up. Errors `FileNotFound`, `NoCurrentRecord`, `UnknownFormat`; the object is
  /// left as it was.
  void Load(int32_t nOpMode, int16_t nRecNum) { load_selected(nOpMode, nRecNum); }
  using StoredEntity::Load;  // everything
  /// The header and the selected sections; the others stay as they are in the file, which is replaced whole. A save
  /// that is not made after calculations marks sizing and simulation as changed; where the outputs are others than
  /// those of the file, it drops the hourly results. Errors `InvalidCall` for a name that
  /// another plant has, for a used loop without pumps, and for inputs that were never loaded.
  void Save(int32_t nOpMode, std::optional<bool>& bSaveAfterCalculation) {
    save_selected(nOpMode, bSaveAfterCalculation.value_or(false));
  }
  void Save(int32_t nOpMode) {
    std::optional<bool> by_user;
    Save(nOpMode, by_user);
  }
  using StoredEntity::Save;  // what the object holds
  /// The current plant as a default: its header and inputs.
  void WriteDefaultsFile(const std::string& strFileName);

  /// Makes it a plant of a type. Those of the type's loops that have pumps are used, recovered heat where the type has
  /// it. A side that the type lacks gets no capacity, steam no water temperatures. Error `InvalidCall` for an unknown
  /// type.
  void SetType(PLT_PlantTypes type);

 private:
  enum SectionNumber : size_t { kHeader, kSystems, kDetails, kSizing, kProfile, kUnmet, kLeed, kHourly };

  static const SectionForm& form();
  Blocks detail_blocks();
  void check_details(const SaveContext& save) const;
  bool has_other_outputs() const;

  void before_save(SaveContext& save) override;
  void close_up(const std::vector<ClearedReference>& cleared, Sections sections) override;
  std::function<void()> keep_rest() override;

  // What the members table and the index row take.
  int16_t type() const { return General.PlantType.raw; }
  bool sized() const { return General.Sized; }
  bool simulated() const { return General.Simulated; }
  bool has_details() const { return sections_.is_loaded(kDetails); }

  friend class PLT_General;
};

}  // namespace tarn
