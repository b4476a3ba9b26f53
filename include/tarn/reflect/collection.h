// A list of values that a member hands out.
#pragma once

#include <vector>

#include "tarn/base/value.h"

namespace tarn {

class Collection final : public Object {
 public:
  const ClassInfo& info() const override;

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// 1 to Count. Error `SubscriptOutOfRange`.
  Value Item(int32_t nIndex) const;
  void add(const Value& value);
  void clear() { items_.clear(); }

 private:
  std::vector<Value> items_;
};

}  // namespace tarn
