// What every block of a result file has: load and save at a position, a listing, a copy. A block names the memory of
// its records; the rest follows from that and from the members table. Tables by month and hour lie in one piece in the
// block that owns them, the hour fastest, as the file has them; objects of one hour are views of their record there.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tarn/base/months.h"
#include "tarn/base/object.h"
#include "tarn/base/wire.h"
#include "tarn/reflect/describe.h"
#include "tarn/storage/blocks.h"

namespace tarn {

/// Records of the 24 hours of 12 months: `table(hour, month)`.
template <typename R>
using HourTable = Array<R, Bounds{0, 23}, 12>;

class ResultBlock : public Object {
 public:
  using Spans = Blocks;

  /// Reads the block at a position, from 1, of a file that is open under a number (platform/binary_file.h); the file's
  /// position is then the byte after the block. A failure leaves the block as it was.
  void Load(int16_t nFileHandle, int32_t nCurPos);
  void Save(int16_t nFileHandle, int32_t nCurPos);
  /// Everything in it as text, under "CONTENTS OF " and the class.
  std::string Dump() const;
  /// Takes all that another block of the class holds. Error `TypeMismatch` for an object of another class.
  void CopyFrom(const ObjectPtr& Source);

  /// Appends the pieces of memory that the file holds of the block, in the file's order.
  virtual void add_spans(Spans& all) = 0;
  size_t size_in_file() const;
  /// Blocks in it that the members table does not reach, by name.
  virtual std::vector<std::pair<std::string, ResultBlock*>> rest() const { return {}; }

 protected:
  /// Makes the block as large as another one of its class.
  virtual void fit(const ResultBlock& /*other*/) {}

 private:
  Spans spans() const;
};

/// A block that has its record in itself.
template <typename R>
class RecordBlock : public ResultBlock, public R {
 public:
  using Record = R;
  void add_spans(Spans& all) override { all.push_back(record_bytes(static_cast<R&>(*this))); }
};

/// A block with a record of its own, or a view of one in another object, which it keeps alive. `->` reaches the fields.
template <typename R>
class RecordView : public ResultBlock {
 public:
  using Record = R;
  RecordView() : own_(std::make_unique<R>()), record_(own_.get()) {}
  RecordView(Object& owner, R& record) : owner_(owner.keeper()), record_(&record) {}
  R* operator->() const { return record_; }
  R& operator*() const { return *record_; }
  void add_spans(Spans& all) override { all.push_back(record_bytes(*record_)); }

 private:
  std::unique_ptr<R> own_;
  ObjectPtr owner_;
  R* record_;
};

/// A block whose record `T` is a table by month and hour, with a `View` of each hour.
template <typename T, typename View>
class TableBlock : public RecordBlock<T> {
 public:
  /// Error `SubscriptOutOfRange`, also for the heating design hour.
  typename View::Record& at(Months month, int hour) { return this->Hours(hour, static_cast<int>(month)); }
  const typename View::Record& at(Months month, int hour) const {
    return const_cast<TableBlock*>(this)->at(month, hour);
  }

 protected:
  Ptr<View> view(Months month, int hour) { return std::make_shared<View>(*this, at(month, hour)); }
};

/// The members table of a block: what it is given, and what all blocks have.
template <typename C, typename... Row>
consteval auto describe_block(const Row&... members) {
  return describe<C>(Failures::Trapped, members..., method<&C::Load>("nFileHandle", "nCurPos"),
                     method<&C::Save>("nFileHandle", "nCurPos"), method<&C::Dump>, method<&C::CopyFrom>("Source"));
}

}  // namespace tarn
