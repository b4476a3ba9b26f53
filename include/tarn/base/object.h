// What every class of the layer is: an object that knows its class. The by-name faces need nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace tarn {

class Object;
struct ClassInfo;

template <typename T>
using Ptr = std::shared_ptr<T>;
using ObjectPtr = Ptr<Object>;

class Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  virtual const ClassInfo& info() const = 0;
  /// The record of a part, where it lies; empty for other objects.
  virtual std::span<std::byte> part_record() { return {}; }

  /// The object is a part of another one, inside it.
  void belong_to(Object& owner) { owner_ = &owner; }
  /// The object that this one was handed out by as a part; null for others.
  const Object* owner() const { return owner_; }
  /// What keeps the object alive: the outermost object that it is a part of, or itself; null where that is not shared.
  ObjectPtr keeper() { return owner_ ? owner_->keeper() : weak_from_this().lock(); }

 private:
  Object* owner_ = nullptr;
};

/// A part as its owner hands it out: it keeps the owner alive, where the owner is shared.
template <typename P>
Ptr<P> shared_part(Object& owner, P& part) {
  part.belong_to(owner);
  return Ptr<P>(owner.keeper(), &part);
}

/// An outgoing event: at most one listener, which may change the in/out arguments.
template <typename... A>
struct Event {
  std::function<void(A...)> listener;
  void raise(A... arguments) const {
    if (const auto called = listener) called(arguments...);  // which may take itself away
  }
};

}  // namespace tarn
