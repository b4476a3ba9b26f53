// Values of a record: numbers that are none, values and codes that cannot be, the type of a rate, and transfer
// functions that are not those of the layers.
#include <cmath>
#include <cstdio>

#include "base/measures.h"
#include "check/implausible.h"
#include "check/inspection.h"
#include "reflect/allowed.h"
#include "tarn/base/log.h"
#include "tarn/construction.h"
#include "tarn/utility_rate.h"

namespace tarn {
namespace {

/// One field of an entity, or of one of its parts.
struct Place {
  Object& owner;
  const Member& field;
  const std::string& prefix;
};

/// Whether the bytes of an element need a closer look: most do not, and hourly results have many.
bool is_plain(const RecordField& field, const std::byte* at) {
  bool plain = false;
  const bool number = with_number(field.wire, at, [&plain](auto value) {
    if constexpr (std::is_floating_point_v<decltype(value)>) plain = std::isfinite(value) && value >= 0;
  });
  return !number || plain;
}

bool is_finite(const Value& value) {
  if (const auto* single = std::get_if<float>(&value)) return std::isfinite(*single);
  const auto* real = std::get_if<double>(&value);
  return !real || std::isfinite(*real);
}

/// What is wrong with an element; empty for nothing.
std::string fault_of(const Place& place, Subscripts at) {
  try {
    Value value;
    place.field.get_stored(place.owner, at, value);
    check_allowed(place.owner, place.field, value, Given::WithRecord);
    return {};
  } catch (const Error& error) {
    return error.description();
  }
}

/// NaN and infinity.
void for_each_number_that_is_none(Object& owner, const Member& member, const std::function<void(Subscripts)>& action) {
  const RecordField& field = *member.field();
  if (field.wire != Wire::Real32 && field.wire != Wire::Real64) return;
  for_each_element(member, [&](Subscripts at) {
    bool finite = true;
    with_number(field.wire, field.place(owner, member.bounds, at),
                [&finite](auto number) { finite = std::isfinite(static_cast<double>(number)); });
    if (!finite) action(at);
  });
}

/// Sets every number of the object that is none to 0.
void clear_numbers_that_are_none(Object& object) {
  for_each_field(object, [](Object& owner, const Member& member, const std::string&) {
    for_each_number_that_is_none(owner, member, [&](Subscripts at) {
      write(*member.field(), member.field()->place(owner, member.bounds, at), Value(0.0));
    });
  });
}

class FieldFaults {
 public:
  FieldFaults(Inspection& on, InspectedKind& kind, int16_t index) : on_(on), kind_(kind), index_(index) {}

  void look_at(const Place& place) {
    const RecordField& field = *place.field.field();
    if (field.wire == Wire::Text || field.wire == Wire::Boolean || field.wire == Wire::Scaled) return;
    count_ = 0;
    if (place.field.in_place()) {
      const size_t elements = place.field.elements(), width = field.size / elements;
      const std::byte* at = place.field.place(place.owner);
      bool plain = true;
      for (size_t i = 0; i < elements && plain; ++i) plain = is_plain(field, at + i * width);
      if (plain) return;
    }
    for_each_element(place.field, [&](Subscripts at) { look_at(place, at); });
    if (count_ > 1) on_.damages.back().told.what += " So have " + std::to_string(count_ - 1) + " others of the array.";
  }

 private:
  /// Only the first element of an array is told.
  void look_at(const Place& place, Subscripts at) {
    const std::string fault = fault_of(place, at);
    if (fault.empty() || count_++ > 0) return;
    CheckFinding told = on_.of(kind_, index_, place.prefix + element_name(place.field, at));
    told.what = "The record has a value that cannot be: " + fault + ".";
    Value value;
    place.field.get_stored(place.owner, at, value);
    if (is_finite(value)) {
      told.severity = Severity::Warning;
      told.remedy = "Set the property to a value that is allowed.";
      return on_.add(told);
    }
    told.remedy = "Repair sets it to 0 and marks what rests on it; then set the right value, or calculate again.";
    on_.add(told, [&kind = kind_, index = index_] {
      kind.entity->read_stored(index);
      clear_numbers_that_are_none(*kind.entity);
      store_mended(kind);
    });
  }

  Inspection& on_;
  InspectedKind& kind_;
  int16_t index_;
  int count_ = 0;
};

std::string percent(double part) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2g %%", part * 100);
  return text;
}

bool has_coefficients(const CA_ConstructionAssly& built) {
  for (int i = 1; i <= built.CoeffUBound(); ++i) {
    if (built.BTrans(i) != 0 || built.DTrans(i) != 0) return true;
  }
  return built.CTrans != 0;
}

/// Transfer functions of other layers are off by much more; those that 12 terms cannot hold better are these layers'
/// own.
constexpr double kForeignError = 0.01;

/// The mend of what a construction computes from its layers.
std::function<void()> computed_anew(InspectedKind& kind, int16_t index, void (*compute)(CA_ConstructionAssly&)) {
  return [&kind, index, compute] {
    auto& mended = dynamic_cast<CA_ConstructionAssly&>(*kind.entity);
    mended.read_stored(index);
    compute(mended);
    store_mended(kind);
  };
}

/// How far the coefficients are off what the layers' own would be off; 0 for the layers' own, infinite for coefficients
/// of layers that have none.
double foreign_error(CA_ConstructionAssly& built) {
  double error = HUGE_VAL;
  try {
    error = built.coefficient_accuracy().worst();
  } catch (const Error&) {
    return has_coefficients(built) ? HUGE_VAL : 0;
  }
  if (error <= kForeignError) return 0;
  if (!built.CalcTransferCoefficients()) return has_coefficients(built) ? error : 0;
  return error > 2 * built.coefficient_accuracy().worst() ? error : 0;
}

void inspect_coefficients(Inspection& on, InspectedKind& kind, int16_t index) {
  if (kind.row.class_name != "CA_ConstructionAssly" || index == 0) return;
  auto& built = dynamic_cast<CA_ConstructionAssly&>(*kind.entity);
  const double error = foreign_error(built);
  built.read_stored(index);  // as it stands
  if (error == 0) return;
  CheckFinding told = on.of(kind, index, "BTrans, DTrans, CTrans");
  told.what = std::isinf(error)
                  ? "It has transfer functions, but its layers have none."
                  : "The transfer functions are not those of the layers: they are " + percent(error) + " off.";
  told.remedy = "Repair computes them from the layers and marks what rests on it.";
  on.add(told, computed_anew(kind, index, [](CA_ConstructionAssly& mended) { mended.CalcTransferCoefficients(); }));
}

/// A U-value that a person set, or that an edit of the layers left behind; a part in a thousand is rounding.
void inspect_u_value(Inspection& on, InspectedKind& kind, int16_t index) {
  constexpr double kRounding = 1e-3;
  if (kind.row.class_name != "CA_ConstructionAssly" || index == 0) return;
  const auto& built = dynamic_cast<const CA_ConstructionAssly&>(*kind.entity);
  const double stored = built.OverallUValue, of_layers = built.layers_u_value();
  if (!std::isfinite(stored) || !std::isfinite(of_layers) || std::abs(stored - of_layers) <= kRounding * of_layers)
    return;
  CheckFinding told = on.of(kind, index, "OverallUValue");
  told.severity = Severity::Warning;
  told.what =
      "The U-value is " + six_digits(stored) + " Btu/(hr.ft2.F); that of the layers is " + six_digits(of_layers) + ".";
  told.remedy = "Repair computes it from the layers and marks what rests on it.";
  on.add(told, computed_anew(kind, index, [](CA_ConstructionAssly& mended) { mended.ComputeSummary(); }));
}

void inspect_plausibility(Inspection& on, InspectedKind& kind, int16_t index) {
  if (index == 0) return;
  for (const Implausible& each : implausible_inputs(*kind.entity, on.database)) {
    CheckFinding told = on.of(kind, index, each.property);
    told.severity = Severity::Warning;
    told.what = each.what;
    told.remedy = each.remedy;
    on.add(told);
  }
}

void inspect_rate_type(Inspection& on, InspectedKind& kind, int16_t index) {
  auto* rate = dynamic_cast<URT_UtilityRate*>(kind.entity.get());
  if (!rate) return;
  const Member& type = rate->info().find("RateType");
  const int stored = static_cast<const UtilityRateRecord&>(*rate->operator->()).RateType.raw;
  const auto own = static_cast<int16_t>(rate->RateType());
  if (stored == own) return;
  CheckFinding told = on.of(kind, index, "RateType");
  told.what = "The record says rate type " + std::to_string(stored) + "; it is in the file of type " +
              std::to_string(own) + ".";
  told.remedy = "Repair sets the type of the file.";
  on.add(told, [&kind, index, own, &type] {
    kind.entity->read_stored(index);
    type.let_stored(*kind.entity, {}, Value(own));
    kind.entity->file().write(index, {.form = SaveContext::Form::AsGiven});
  });
}

}  // namespace

std::string number_that_is_none(Object& object) {
  std::string found;
  for_each_field(object, [&](Object& owner, const Member& member, const std::string& prefix) {
    for_each_number_that_is_none(owner, member, [&](Subscripts at) {
      if (found.empty()) found = std::string(object.info().name) + "." + prefix + element_name(member, at);
    });
  });
  return found;
}

void inspect_values(Inspection& on, InspectedKind& kind, int16_t index) {
  FieldFaults faults(on, kind, index);
  for_each_field(*kind.entity, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (kind.row.class_name == "URT_UtilityRate" && field.name == "RateType") return;
    faults.look_at({owner, field, prefix});
  });
  inspect_rate_type(on, kind, index);
  inspect_plausibility(on, kind, index);
  inspect_u_value(on, kind, index);
  inspect_coefficients(on, kind, index);
}

}  // namespace tarn
