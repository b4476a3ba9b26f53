// Around each call of the library: whether failures are raised, what handlers raised meanwhile, errors as exceptions.
#pragma once

#include "extension/objects.h"

namespace tarn::python {

/// Whether the classic objects of this thread raise all failures, too.
extern thread_local constinit bool strict_thread;

/// While the library works for an object.
class Strictness {
 public:
  explicit Strictness(Face face) : before_(tarn_set_strict(face == Face::Daily || strict_thread ? 1 : 0)) {}
  ~Strictness() { tarn_set_strict(before_); }
  Strictness(const Strictness&) = delete;
  Strictness& operator=(const Strictness&) = delete;

 private:
  int32_t before_;
};
inline bool is_strict(const Object& object) { return object.face == Face::Daily || strict_thread; }

/// Keeps the Python error of a handler, which cannot cross the library, until the call that led to it is back.
void keep_handler_error();

[[noreturn]] void raise(int32_t number, const std::string& source, const std::string& description,
                        PyObject* object = nullptr, const MemberInfo* member = nullptr);
/// Raises what a handler raised, else the error of a status that is not `TARN_OK`; `object` may be null.
void check(tarn_status status, PyObject* object = nullptr, const MemberInfo* member = nullptr);

/// The last entry of this thread's log.
std::string& last_message();

}  // namespace tarn::python
