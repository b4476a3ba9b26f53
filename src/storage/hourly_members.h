// The members tables of hourly results.
#pragma once

#include "tarn/reflect/describe.h"
#include "tarn/storage/hourly_results.h"

namespace tarn {

template <typename C>
consteval auto hourly_results_members() {
  return describe<C>(Failures::Raised, property<&HourlyResultRecord::HourlyResult>, method<&C::ResetData>);
}

template <typename C>
consteval auto hourly_list_members() {
  return describe<C>(Failures::Raised, parts<&C::Item, &C::Count, &C::Resize>("vntIndexKey"), property<&C::Count>,
                     property<&C::NewEnum>, method<&C::Add>, method<&C::Resize>("numItems"),
                     method<&C::Remove>("vntIndexKey"), method<&C::ResetData>);
}

}  // namespace tarn
