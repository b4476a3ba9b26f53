#include "tarn/reflect/collection.h"

#include "tarn/reflect/describe.h"

namespace tarn {

const ClassInfo& Collection::info() const {
  using C = Collection;
  static constexpr auto members = describe<C>(Failures::Raised, property<&C::Count>, method<&C::Item>("nIndex"));
  static const ClassInfo info(members);
  return info;
}

void Collection::add(const Value& value) { items_.push_back(value); }

Value Collection::Item(int32_t nIndex) const {
  if (nIndex < 1 || nIndex > Count()) subscript_out_of_range(nIndex, Count());
  return items_[static_cast<size_t>(nIndex) - 1];
}

}  // namespace tarn
