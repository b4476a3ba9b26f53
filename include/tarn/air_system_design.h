// The results of an air system's design calculation: one file for each system. The file has no counts; the numbers of
// zones and spaces are those that the system has when it is set.
#pragma once

#include "tarn/air_system.h"
#include "tarn/system_results.h"
#include "tarn/zone_results.h"

namespace tarn {

class ADL_AirSystemDesign final : public Object {
 public:
  ADL_AirSystemDesign();
  const ClassInfo& info() const override;

  Ptr<AS_AirSystem> AirSystem() const { return air_system_; }
  /// The collections get new objects for the system's zones and their spaces, and the header gets its name. Error
  /// `UnknownFormat` for implausible counts; then everything stays as it was. Null removes the system and the zones.
  void SetAirSystem(const Ptr<AS_AirSystem>& system);

  ADL_DXXFileHeader DXXFileHeader;
  ADL_Weather Weather;
  ADL_SSAir SSAir;
  ADL_HLAir HLAir;
  ADL_SPAir SPAir;
  ADL_DLAir DLAir;

  // The design's own lists, not copies, and their objects by number, from 1. Error `SubscriptOutOfRange`.
  Ptr<Collection> TSZones() const { return ts_zones_.list; }
  Ptr<Collection> HLZones() const { return hl_zones_.list; }
  Ptr<Collection> DLZones() const { return dl_zones_.list; }
  Ptr<ADL_TSZone> TSZone(int16_t nIndex) const { return ts_zones_.at(nIndex); }
  Ptr<ADL_HLZone> HLZone(int16_t nIndex) const { return hl_zones_.at(nIndex); }
  Ptr<ADL_DLZone> DLZone(int16_t nIndex) const { return dl_zones_.at(nIndex); }

  std::string WorkPath, FilePrefix;
  std::string sWorkPath() const { return WorkPath; }

  /// The file of the system's index. A missing system, name or file is logged. Error `UnknownFormat` for a file whose
  /// length does not match the system's zones and spaces, or which carries another name than the system's row in the
  /// index; the object is left as it was.
  void Load();
  /// Replaces the file of an index whole; a failure leaves the old one.
  void Save(int16_t nIndex);
  /// The whole tree as text.
  std::string Dump() const;

  /// Full path of the file of an index; empty without a prefix.
  std::string file_of(int16_t index) const;
  /// The system's name that the file of an index carries; empty where there is no file.
  std::string system_in_file(int16_t index) const;
  uint64_t size_in_file() const;
  /// In the order of the file.
  std::vector<ResultBlock*> blocks() const;

 private:
  template <typename Z>
  struct Zones {
    std::vector<Ptr<Z>> items;
    Ptr<Collection> list = std::make_shared<Collection>();

    Ptr<Z> at(int number) const {
      const auto count = static_cast<int>(items.size());
      if (number < 1 || number > count) subscript_out_of_range(number, count);
      return items[static_cast<size_t>(number) - 1];
    }
    void become(std::vector<Ptr<Z>> all) {
      items = std::move(all);
      list->clear();
      for (const auto& item : items) list->add(std::static_pointer_cast<Object>(item));
    }
  };
  void check_system(const std::string& path) const;
  ResultBlock::Spans spans() const;

  Ptr<AS_AirSystem> air_system_;
  Zones<ADL_TSZone> ts_zones_;
  Zones<ADL_HLZone> hl_zones_;
  Zones<ADL_DLZone> dl_zones_;
};

}  // namespace tarn
