// A building: a file of its own, of packed records in sections - general, inputs, results, meter profiles - which are
// loaded and saved as a mask selects them; a row in BuildingIndex; links to the systems, plants, rates and schedules it
// uses. Nothing else refers to a building.
#pragma once

#include "tarn/building_parts.h"
#include "tarn/storage/section_entity.h"

namespace tarn {

class BLD_Building final : public CopiedEntity<BLD_Building, SectionEntity> {
 public:
  BLD_Building();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  std::string DefFileName;  // the default's file
  bool HasChanged = false;  // since the last simulation

  // The parts themselves, not copies; the profile of a meter from 1 to 8, error `SubscriptOutOfRange`.
  Ptr<BLD_General> GetBuildingGeneral() { return shared_part(*this, general_); }
  Ptr<BLD_Inputs> GetBuildingInputs() { return shared_part(*this, inputs_); }
  Ptr<BLD_Results> GetBuildingResults() { return shared_part(*this, results_); }
  Ptr<BLD_Profile> GetBuildingProfile(int16_t meter) { return shared_part(*this, profiles_(meter)); }

  /// The general data, and the sections of a `BLD_ConstituentMasks` value or several joined. References of the inputs
  /// without a link row are cleared, a system's multiplier with it. Errors `NoCurrentRecord`, `FileNotFound`,
  /// `UnknownFormat`; the object is left as it was.
  void Load(int32_t Section, int32_t RecordNumber) { load_selected(Section, RecordNumber); }
  using StoredEntity::Load;  // everything
  /// The general data and the selected sections; the others stay as they are in the file, which is replaced whole. A
  /// save that is not made after calculations marks the building as changed and not simulated. Error `InvalidCall` for
  /// inputs that were never loaded.
  void Save(int32_t Section, std::optional<bool> bSaveAfterCalculations = {}) {
    save_selected(Section, bSaveAfterCalculations.value_or(false));
  }
  using StoredEntity::Save;  // what the object holds

 private:
  enum SectionNumber : size_t { kGeneral, kInputs, kResults, kProfiles };

  static const SectionForm& form();
  void before_save(SaveContext& save) override;
  void close_up(const std::vector<ClearedReference>& cleared, Sections sections) override;

  // What the members table and the index row take.
  int profile_count() const { return sections_.is_there(kProfiles) ? kMeters : 0; }
  bool simulated() const { return general_.Simulated; }

  BLD_General general_;
  BLD_Inputs inputs_;
  BLD_Results results_;
  Parts<BLD_Profile, kMeters> profiles_;
};

}  // namespace tarn
