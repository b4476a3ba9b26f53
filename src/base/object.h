// What every class of the layer is: an object that knows its class. The by-name faces need nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace tarn {

class Object;
struct ClassInfo;

template <typename T>
using Ptr = std::shared_ptr<T>;
using ObjectPtr = Ptr<Object>;

/// A value on its way through a by-name face. The order of the alternatives is that of `ValueType`, which has `Any`
/// besides: a result whose type shows only when it is there.
using Value = std::variant<std::monostate, bool, int16_t, int32_t, float, double, std::string, ObjectPtr>;

enum class ValueType : uint8_t { Empty, Boolean, Int16, Int32, Real32, Real64, Text, Object, Any };

class Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  virtual const ClassInfo& info() const = 0;
};

/// An outgoing event: at most one listener, which may change the in/out arguments.
template <typename... A>
struct Event {
  std::function<void(A...)> listener;
  void raise(A... arguments) const {
    if (listener) listener(arguments...);
  }
};

}  // namespace tarn
