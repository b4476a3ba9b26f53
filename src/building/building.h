// A building: a file of its own, of packed records in sections - general, inputs, results, meter profiles - which are
// loaded and saved as a mask selects them; a row in BuildingIndex; links to the systems, plants, rates and schedules it
// uses. Nothing else refers to a building.
#pragma once

#include "building/building_parts.h"
#include "storage/masked_entity.h"

namespace tarn {

class BLD_Building final : public CopiedEntity<BLD_Building, MaskedEntity> {
 public:
  BLD_Building();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  bool HasChanged = false;  // since the last simulation

  // The parts themselves, not copies; the profile of a meter from 1 to 8, error `SubscriptOutOfRange`.
  Ptr<BLD_General> GetBuildingGeneral() { return shared_part(*this, general_); }
  Ptr<BLD_Inputs> GetBuildingInputs() { return shared_part(*this, inputs_); }
  Ptr<BLD_Results> GetBuildingResults() { return shared_part(*this, results_); }
  Ptr<BLD_Profile> GetBuildingProfile(int16_t meter) { return shared_part(*this, profiles_(meter)); }

  /// The general data, and the sections of a `BLD_ConstituentMasks` value or several joined. References of the inputs
  /// without a link row are cleared, a system's multiplier with it. Errors `NoCurrentRecord`, `FileNotFound`,
  /// `UnknownFormat`; the object is left as it was.
  void Load(int32_t Section, int32_t RecordNumber);
  void Load(int16_t RecordNumber) override { Load(FS_ALL, RecordNumber); }
  /// The general data and the selected sections; the others stay as they are in the file, which is replaced whole. A
  /// save that is not made after calculations marks the building as changed and not simulated. Error `InvalidCall` for
  /// inputs that were never loaded.
  void Save(int32_t Section, std::optional<bool> bSaveAfterCalculations = {}) {
    save(Section, bSaveAfterCalculations.value_or(false));
  }
  using StoredEntity::Save;

 private:
  enum Sections : size_t { kGeneral, kInputs, kResults, kProfiles, kSections };

  Ends ends_of(std::span<const std::byte> header, const std::string& path) const override;
  Blocks blocks(size_t section) override;
  size_t section_count() const override { return kSections; }
  size_t first_result() const override { return kResults; }
  int32_t mask_of(size_t section) const override;
  std::string_view name_of(size_t /*section*/) const override { return "BuildingInputs"; }
  std::vector<RowFlag> row_flags() override { return {{"bHasChanged", &HasChanged}}; }
  size_t name_width() const override { return decltype(BuildingGeneralRecord::Name)::width; }
  std::string no_file_message(const std::string& path) const override;
  std::string no_default_message() const override;
  void read_default() override;
  void write_record(int16_t index) override;
  void before_save() override;
  void before_restore() override {}  // names may be shared
  void clear_references(const std::string& title, const std::function<bool(const Use&)>& lost) override;
  bool knows_links(std::string_view /*kind*/) const override { return selected(kInputs); }
  std::string stored_name() const override { return general_.Name.trimmed(); }
  void store_name(std::string_view name) override { general_.Name = name; }

  // What the members table and the index row take.
  int profile_count() const { return is_there(kProfiles) ? kMeters : 0; }
  bool simulated() const { return general_.Simulated; }
  bool has_changed() const { return HasChanged; }

  BLD_General general_;
  BLD_Inputs inputs_;
  BLD_Results results_;
  Numbered<BLD_Profile, kMeters> profiles_;
};

}  // namespace tarn
