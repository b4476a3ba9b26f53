// A plant: a file of its own, of packed records in sections - header, systems, details, results - which are loaded and
// saved as a mask selects them; a row in PlantIndex; links to the systems, equipment, towers and schedules it uses.
#pragma once

#include "plant/plant_results.h"
#include "storage/masked_entity.h"

namespace tarn {

class PLT_Plant final : public CopiedEntity<PLT_Plant, Sized<MaskedEntity>> {
 public:
  PLT_Plant();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  std::string FileName() const { return file_of(Index); }

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
  void Load(int32_t nOpMode, int16_t nRecNum);
  /// Everything.
  void Load(int16_t nRecNum) override;
  /// The header and the selected sections; the others stay as they are in the file, which is replaced whole. A save
  /// that is not made after calculations marks sizing and simulation as changed; where the outputs differ from those of
  /// the file, it drops the hourly results. Errors `InvalidCall` for a name that another plant has, for a used loop
  /// without pumps, and for inputs that were never loaded.
  void Save(int32_t nOpMode, std::optional<bool>& bSaveAfterCalculation);
  void Save(int32_t nOpMode) {
    std::optional<bool> by_user;
    Save(nOpMode, by_user);
  }
  using StoredEntity::Save;
  /// The current plant as a default: its header and inputs.
  void WriteDefaultsFile(const std::string& strFileName) { write_default(strFileName); }

  /// Makes it a plant of a type. Those of the type's loops that have pumps are used. Error `InvalidCall` for an unknown
  /// type.
  void SetType(PLT_PlantTypes type);

 private:
  enum Section : size_t { kHeader, kSystems, kDetails, kSizing, kProfile, kUnmet, kLeed, kHourly, kSections };

  void check_details() const;
  void drop_misplaced_hours();

  Ends ends_of(std::span<const std::byte> header, const std::string& path) const override;
  Blocks blocks(size_t section) override;
  size_t section_count() const override { return kSections; }
  size_t first_result() const override { return kSizing; }
  int32_t mask_of(size_t section) const override;
  /// Hourly results belong to the outputs of the header that they were read with.
  bool keeps(size_t section) const override { return section != kHourly && MaskedEntity::keeps(section); }
  std::string_view name_of(size_t section) const override { return section == kSystems ? "SystemSelect" : "Details"; }
  std::string no_default_message() const override;
  void make_room(size_t section, std::span<const std::byte> header, bool there) override;
  std::string no_file_message(const std::string& path) const override;
  void no_row(int16_t index) override;
  void check_counts(const std::string& path) const override;
  Recordset row_of(int16_t index) const override;
  void write_record(int16_t index) override;
  void read_default() override;
  void before_save() override;
  void before_restore() override;
  bool knows_links(std::string_view kind) const override;
  void after_clearing() override;
  std::function<void()> keep_rest() override;
  std::string stored_name() const override { return General.Name.trimmed(); }
  void store_name(std::string_view name) override { General.Name = name; }

  // What the members table and the index row take.
  int16_t type() const { return General.PlantType.raw; }
  bool sized() const { return General.Sized; }
  bool simulated() const { return General.Simulated; }
  bool sim_has_changed() const { return SimHasChanged; }
  bool des_has_changed() const { return DesHasChanged; }

  friend class PLT_General;
};

}  // namespace tarn
