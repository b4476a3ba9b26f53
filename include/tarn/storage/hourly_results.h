// Hourly results: a year of values each for what an entity's output flags select. Their members tables are made by
// storage/hourly_members.h.
#pragma once

#include <vector>

#include "tarn/reflect/collection.h"
#include "tarn/storage/part.h"

namespace tarn {

constexpr int kHoursInYear = 8760;

struct HourlyResultRecord {
  Array<R4, kHoursInYear> HourlyResult;
};
static_assert(sizeof(HourlyResultRecord) == 35040);

/// A year of one output.
struct HourlyResults : Part<HourlyResultRecord> {
  void ResetData() { static_cast<HourlyResultRecord&>(*this) = {}; }
};

/// One block of hourly results, an `Item`, for each output that the flags of an entity's header select, numbered from
/// 1.
template <typename ItemType>
class HourlyList : public Object {
 public:
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// Error `SubscriptOutOfRange`.
  Ptr<ItemType> Item(int32_t vntIndexKey) const { return items_[place(vntIndexKey)]; }
  /// All of them, in order.
  Ptr<Collection> NewEnum() const {
    auto all = std::make_shared<Collection>();
    for (const auto& item : items_) all->add(std::static_pointer_cast<Object>(item));
    return all;
  }
  void Add() { items_.push_back(std::make_shared<ItemType>()); }
  /// New blocks are zero.
  void Resize(int32_t numItems) {
    if (numItems < 0) subscript_out_of_range(numItems, {0, INT16_MAX});
    while (Count() > numItems) items_.pop_back();
    while (Count() < numItems) Add();
  }
  void Remove(int32_t vntIndexKey) { items_.erase(items_.begin() + static_cast<ptrdiff_t>(place(vntIndexKey))); }
  void ResetData() {
    for (const auto& item : items_) item->ResetData();
  }

  const std::vector<Ptr<ItemType>>& items() const { return items_; }
  void set_items(std::vector<Ptr<ItemType>> items) { items_ = std::move(items); }

 private:
  size_t place(int32_t number) const {
    if (number < 1 || number > Count()) subscript_out_of_range(number, Count());
    return static_cast<size_t>(number) - 1;
  }

  std::vector<Ptr<ItemType>> items_;
};

}  // namespace tarn
