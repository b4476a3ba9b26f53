// Every stated record layout, where the files have it: each field gets a value of its own by name, the object is saved,
// and the value looked for at its offset in the file.

#include <cstring>
#include <map>

#include "platform/binary_file.h"
#include "support/expected_data.h"
#include "support/temp_project.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

template <typename T>
std::string bytes_of_number(T value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

/// What a field's value is in a file.
std::string encoded(const std::string& type, size_t width, const Value& value, double scale) {
  if (type == "Boolean") return bytes_of_number(static_cast<int16_t>(std::get<bool>(value) ? -1 : 0));
  if (type == "text") {
    std::string text = std::get<std::string>(value);
    text.resize(width, ' ');
    return text;
  }
  if (scale != 0) return bytes_of_number(static_cast<int16_t>(std::lround(real_from(value) * scale)));
  if (type == "I2") return bytes_of_number(static_cast<int16_t>(real_from(value)));
  if (type == "I4") return bytes_of_number(static_cast<int32_t>(real_from(value)));
  if (type == "R4") return bytes_of_number(static_cast<float>(real_from(value)));
  return bytes_of_number(real_from(value));
}

/// The values that no other field has: numbers in a row, texts of them, and Booleans without a pattern.
class Values {
 public:
  Value next(const Json& field) {
    ++count_;
    const std::string type = field["type"];
    const std::string name = field["name"];
    // Of the numbers that have bounds, one within; the sections of results are there where the flags say so.
    static const std::map<std::string, Value> fixed{
        {"NumRows", int16_t{7}}, {"NumColumns", int16_t{13}}, {"Sized", true}, {"Simulated", true}};
    if (const auto at = fixed.find(name); at != fixed.end()) return at->second;
    if (type == "Boolean") return ((count_ * 2654435761U) >> 17 & 1U) != 0;
    if (type == "text") return ("t" + std::to_string(count_)).substr(0, field["width"].get<size_t>());
    if (field.contains("scale")) return static_cast<double>(count_ % 9000) / field["scale"].get<double>();
    if (field.contains("codes")) {
      if (const Value code = code_of(field["codes"]); code.index() != 0) return code;
    }
    if (type == "I2") return static_cast<int16_t>(count_ % 32'000 + 1);
    if (type == "I4") return static_cast<int32_t>(100'000 + count_);
    if (type == "R4") return static_cast<float>(count_) + 0.5F;
    return static_cast<double>(count_) + 0.25;
  }

 private:
  Value code_of(const std::string& enumeration) const {
    const Json& all = test::expected_data("enumerations.json");
    if (!all.contains(enumeration)) return {};
    const Json& codes = all[enumeration];
    return codes[count_ % codes.size()]["value"].get<int16_t>();
  }
  uint32_t count_ = 0;
};

/// An object whose fields lie in a file from a place on; months and days are the first subscripts of theirs.
struct Root {
  std::string record;
  ObjectPtr object;
  size_t offset;
  std::vector<int> first_subscripts;
};

class Layouts {
 public:
  explicit Layouts(test::Comparison& comparison) : comparison_(comparison) {
    for (const Json& each : test::expected_data("record_layouts.json")["records"])
      records_[each["record"].get<std::string>()] = each;
  }

  size_t size_of(const std::string& record) const { return records_.at(record)["size"].get<size_t>(); }
  size_t count() const { return records_.size(); }
  const std::map<std::string, Json>& records() const { return records_; }

  /// Sets every field below the root; `check` looks for them.
  void fill(const Root& root) {
    seen_[root.record] = true;
    for (const Json& field : records_.at(root.record)["fields"]) {
      const size_t at = root.offset + field["offset"].get<size_t>();
      if (field.contains("text")) {
        places_.push_back({root.record + " " + field["text"].get<std::string>(), padded(field), at, nullptr});
      } else if (records_.contains(field["type"].get<std::string>())) {
        fill_parts(root, field, at);
      } else if (!field["name"].is_null() && field["name"] != "reserved") {
        fill_elements(root, field, at);
      }
    }
  }

  /// All that was filled since the last check, in the bytes of its file.
  void check(const std::string& bytes) {
    for (const Place& place : places_) {
      const std::string expected = place.now ? place.now() : place.bytes;
      const std::string found = place.offset < bytes.size() ? bytes.substr(place.offset, expected.size()) : "";
      comparison_.compare(place.title + " at " + std::to_string(place.offset), hexadecimal(expected),
                          hexadecimal(found));
    }
    places_.clear();
  }

  std::string unseen() const {
    std::string names;
    for (const auto& [name, record] : records_) names += seen_.contains(name) ? "" : name + "; ";
    return names;
  }

 private:
  struct Place {
    std::string title;
    std::string bytes;
    size_t offset;
    std::function<std::string()> now;  // of a field that is not the client's to set: what it holds after the save
  };

  static std::string padded(const Json& field) {
    std::string text = field["text"];
    text.resize(field["width"].get<size_t>(), ' ');
    return text;
  }
  static std::string hexadecimal(const std::string& bytes) {
    std::string text;
    char two[3];
    for (const char c : bytes) {
      std::snprintf(two, sizeof two, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      text += two;
    }
    return text;
  }

  /// The subscripts of each element of a list, in the order of the file: the first fastest unless another is stated.
  static std::vector<std::vector<int>> subscripts_of(const Json& field, std::vector<Bounds> bounds) {
    size_t fastest = 0;
    if (field.contains("dims")) {
      bounds.clear();
      for (const Json& dim : field["dims"]) {
        if (dim[0] == field["fastest"]) fastest = bounds.size();
        bounds.emplace_back(dim[1].get<int>(), dim[2].get<int>());
      }
    }
    std::vector<std::vector<int>> all;
    const auto count = field["count"].get<int>();
    for (int i = 0; i < count; ++i) {
      std::vector<int> at(bounds.size());
      int rest = i;
      for (size_t step = 0; step < bounds.size(); ++step) {
        const size_t d = (fastest + step) % bounds.size();
        at[d] = bounds[d].first + rest % bounds[d].size();
        rest /= bounds[d].size();
      }
      all.push_back(at);
    }
    return all;
  }

  void fill_elements(const Root& root, const Json& field, size_t offset) {
    const std::string name = field["name"];
    const Member& member = root.object->info().find(name);
    const std::vector<Bounds> bounds(member.bounds.begin() + static_cast<ptrdiff_t>(root.first_subscripts.size()),
                                     member.bounds.end());
    size_t elements = 1;
    for (const Bounds& b : bounds) elements *= static_cast<size_t>(b.size());
    comparison_.compare(root.record + "." + name + " elements", field["count"], static_cast<int32_t>(elements));
    const auto width = field["width"].get<size_t>();
    for (std::vector<int> at : subscripts_of(field, bounds)) {
      at.insert(at.begin(), root.first_subscripts.begin(), root.first_subscripts.end());
      fill_element(root, field, member, at, offset);
      offset += width;
    }
  }

  void fill_element(const Root& root, const Json& field, const Member& member, const std::vector<int>& at,
                    size_t offset) {
    const std::string title = root.record + "." + element_name(member, at);
    const std::string type = field["type"];
    const auto width = field["width"].get<size_t>();
    const double scale = field.value("scale", 0.0);
    const auto now = [=, object = root.object, name = field["name"].get<std::string>()] {
      return encoded(type, width, get_property(*object, name, at), scale);
    };
    const bool given = member.read_only || title == "URT_UtilityRate.RateType";  // the latter by the factory
    if (given) return places_.push_back({title, {}, offset, now});
    const Value value = values_.next(field);
    constexpr double kInchesInFoot = 12;
    const bool in_inches = title == "CA_Layer.Thickness";  // and kept in feet
    const std::string bytes = encoded(type, width, in_inches ? Value(real_from(value) / kInchesInFoot) : value, scale);
    try {
      let_property(*root.object, member, at, value);
    } catch (const Error& error) {
      return comparison_.fails(title, test::shown(value), error.description());
    }
    places_.push_back({title, bytes, offset, nullptr});
  }

  void fill_parts(const Root& root, const Json& field, size_t offset) {
    static const std::map<std::string, std::string> accessors{{"general", "GetSpace"},
                                                              {"walls 1 to 8", "GetWall"},
                                                              {"roofs 1 to 4", "GetRoof"},
                                                              {"partitions 1 to 2", "GetPartition"},
                                                              {"floor", "GetFloor"},
                                                              {"infiltration", "GetInfiltration"},
                                                              {"people", "GetPeople"},
                                                              {"lighting", "GetLight"},
                                                              {"other loads", "GetOtherLoads"},
                                                              {"Layer", "GetLayer"}};
    const std::string name = field["name"];
    const auto accessor = accessors.find(name);
    const std::string member = accessor == accessors.end() ? name : accessor->second;
    for (const std::vector<int>& at : subscripts_of(field, {Bounds(field["count"].get<int>())})) {
      std::vector<Value> arguments;
      if (field["count"] != 1) arguments.assign(at.begin(), at.end());
      const Value part = root.object->info().find(member).kind == MemberKind::Property
                             ? get_property(*root.object, member)
                             : test::call(*root.object, member, arguments);
      fill({field["type"], std::get<ObjectPtr>(part), offset, {}});
      offset += field["width"].get<size_t>();
    }
  }

  test::Comparison& comparison_;
  std::map<std::string, Json> records_;
  std::map<std::string, bool> seen_;
  std::vector<Place> places_;
  Values values_;
};

class RecordLayouts : public test::ProjectTest {
 protected:
  ObjectPtr made(const std::string& factory) { return test::object_of(project, factory); }
  std::string file(const std::string& suffix) { return test::bytes_of(folder / ("JOB" + suffix)); }

  void record_files(Layouts& layouts, test::Comparison& comparison) {
    const struct {
      std::string record, factory, suffix;
    } kinds[]{{"WIN_Window", "NewWindow", "WIN.DAT"},
              {"DOR_Door", "NewDoor", "DOR.DAT"},
              {"SHD_Shade", "NewShade", "SHD.DAT"},
              {"SCH_Schedule", "NewSchedule", "SCH.DAT"},
              {"SPC_Space", "NewSpace", "SPC.DAT"},
              {"BLR_Boiler", "NewBoiler", "BLR.DAT"},
              {"TWR_CoolingTower", "NewCoolingTower", "TWR.DAT"},
              {"URT_UtilityRate", "NewFuelRate", "FRT.DAT"},
              {"CHL_Chiller", "NewChiller", "CHL.DAT"}};
    for (const auto& kind : kinds) {
      const ObjectPtr entity = made(kind.factory);
      const size_t size = layouts.size_of(kind.record);
      layouts.fill({kind.record, entity, size, {}});  // the first entity has index 1
      test::call(*entity, "Save");
      const std::string bytes = file(kind.suffix);
      layouts.check(bytes);
      comparison.compare(kind.record + " size", 2 * size, static_cast<int32_t>(bytes.size()));
    }
    // A wall is saved with transfer functions that are calculated then; its default record is as it is.
    const ObjectPtr wall = made("NewWall");
    layouts.fill({"CA_ConstructionAssly", wall, 0, {}});
    dynamic_cast<StoredEntity&>(*wall).SaveDefault();
    layouts.check(file("WAL.DAT"));
    comparison.compare("CA_ConstructionAssly size", layouts.size_of("CA_ConstructionAssly"),
                       static_cast<int32_t>(file("WAL.DAT").size()));
    const ObjectPtr preferences = made("NewProjectPrefs");
    layouts.fill({"PRF_ProjectPrefs", preferences, 0, {}});
    test::call(*preferences, "Save");
    layouts.check(file("PRF.DAT"));
    comparison.compare("PRF_ProjectPrefs size", layouts.size_of("PRF_ProjectPrefs"),
                       static_cast<int32_t>(file("PRF.DAT").size()));
  }

  void air_system(Layouts& layouts) {
    constexpr int kZones = 3;
    const ObjectPtr system = made("NewAirSystem");
    test::call(*system, "SetToDefaultsByType", {int16_t{8}});
    const ObjectPtr general = test::object_of(*system, "GetAirSystem");
    test::call(*general, "SetNumZones", {int16_t{kZones}});
    test::call(*general, "SetFlags");
    const std::string inputs = "AS_AirSystem header and inputs";
    layouts.fill({inputs, system, 0, {}});
    const size_t zones = layouts.size_of(inputs), sizing = zones + kZones * layouts.size_of("AS_ZoneData");
    const size_t zone_sizing = sizing + layouts.size_of("AS_AirSizing");
    for (int zone = 1; zone <= kZones; ++zone) {
      const auto before = static_cast<size_t>(zone - 1);
      layouts.fill({"AS_ZoneData",
                    test::object_of(*system, "GetZoneData", zone),
                    zones + before * layouts.size_of("AS_ZoneData"),
                    {}});
      layouts.fill({"AS_ZoneSizingData",
                    test::object_of(*system, "GetZoneSizing", zone),
                    zone_sizing + before * layouts.size_of("AS_ZoneSizingData"),
                    {}});
    }
    layouts.fill({"AS_AirSizing", test::object_of(*system, "GetAirSizing"), sizing, {}});
    layouts.fill({"AS_CoilSize",
                  test::object_of(*system, "GetCoilSize"),
                  zone_sizing + kZones * layouts.size_of("AS_ZoneSizingData"),
                  {}});
    test::call(*system, "Save", {true});
    layouts.check(file("A01.DAT"));
  }

  void building(Layouts& layouts) {
    const ObjectPtr building = made("NewBuilding");
    layouts.fill({"BLD_General", test::object_of(*building, "GetBuildingGeneral"), 0, {}});
    const size_t inputs = layouts.size_of("BLD_General"), profile = layouts.size_of("BLD_Profile");
    layouts.fill({"BLD_Inputs", test::object_of(*building, "GetBuildingInputs"), inputs, {}});
    constexpr size_t kResults = 31'268, kMeters = 8;  // the results are this layer's own
    const size_t profiles = inputs + layouts.size_of("BLD_Inputs") + kResults;
    for (size_t meter = 1; meter <= kMeters; meter += kMeters - 1) {
      layouts.fill({"BLD_Profile",
                    test::object_of(*building, "GetBuildingProfile", static_cast<int>(meter)),
                    profiles + (meter - 1) * profile,
                    {}});
    }
    constexpr int32_t kEverySection = 15;
    test::call(*building, "Save", {kEverySection, true});
    const std::string bytes = file("B01.DAT");
    EXPECT_EQ(bytes.size(), profiles + kMeters * profile);
    layouts.check(bytes);
  }

  void weather(Layouts& layouts) {
    const ObjectPtr weather = made("NewWeather");
    const auto save_and_check = [&](const std::string& suffix, size_t size) {
      test::call(*weather, "Save");
      const std::string bytes = file(suffix);
      EXPECT_EQ(bytes.size(), size) << suffix;
      layouts.check(bytes);
    };
    // The first two tell the step from one to the next, the last tells that all are there.
    layouts.fill({"WTH_Weather design header", weather, 0, {}});
    const size_t month_0 = layouts.size_of("WTH_Weather design header"),
                 month = layouts.size_of("WTH_Weather design month");
    for (const int i : {1, 2, 12})
      layouts.fill({"WTH_Weather design month", weather, month_0 + static_cast<size_t>(i - 1) * month, {i}});
    save_and_check("WTD.DAT", month_0 + 12 * month);
    layouts.fill({"WTH_Weather simulation header", weather, 0, {}});
    const size_t day_0 = layouts.size_of("WTH_Weather simulation header"),
                 day = layouts.size_of("WTH_Weather simulation day");
    for (const int i : {1, 2, 365})
      layouts.fill({"WTH_Weather simulation day", weather, day_0 + static_cast<size_t>(i - 1) * day, {i}});
    save_and_check("WTA.DAT", day_0 + 365 * day);

    const ObjectPtr year = create("HW1ReaderWriter");
    const size_t block = layouts.size_of("HW1ReaderWriter day");
    layouts.fill({"HW1ReaderWriter header", year, 0, {}});
    for (const int i : {1, 2, 365}) layouts.fill({"HW1ReaderWriter day", year, static_cast<size_t>(i) * block, {i}});
    test::call(*year, "Save", {folder / "JOBHW1.DAT"});
    EXPECT_EQ(file("HW1.DAT").size(), 366 * block);
    EXPECT_EQ(file("HW1.DAT").substr(126, 66), std::string(66, ' ')) << "the reserved field";
    layouts.check(file("HW1.DAT"));
  }

  void result_blocks(Layouts& layouts, test::Comparison& comparison) {
    for (const auto& [record, facts] : layouts.records()) {
      if (!record.starts_with("ADL_")) continue;
      const ObjectPtr block = create(record);
      layouts.fill({record, block, 0, {}});
      BinaryFiles& files = BinaryFiles::of_thread();
      const std::string path = folder / record;
      const int16_t number = files.open(path, OpenMode::Create);
      test::call(*block, "Save", {number, int32_t{1}});
      files.close(number);
      layouts.check(test::bytes_of(path));
      comparison.compare(record + " size", facts["size"], static_cast<int32_t>(test::bytes_of(path).size()));
    }
  }
};

TEST_F(RecordLayouts, EveryFieldOfEveryRecordIsWhereItsFileHasIt) {
  test::Comparison comparison;
  Layouts layouts(comparison);
  record_files(layouts, comparison);
  air_system(layouts);
  building(layouts);
  weather(layouts);
  result_blocks(layouts, comparison);
  EXPECT_EQ(layouts.count(), 57U);
  EXPECT_EQ(layouts.unseen(), "");
  EXPECT_EQ(log.errors, std::vector<std::string>{});
}

}  // namespace
}  // namespace tarn
