// The diagnostic log, injected by the client; the default keeps quiet. The library never prints.
#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "tarn/base/error.h"

namespace tarn {

inline constexpr std::string_view kComponent = "TarnDataHandler52";

class Log {
 public:
  virtual ~Log() = default;
  /// A plain message; the operation goes on.
  virtual void message(std::string_view text) = 0;
  /// A trapped failure: the three strings that place it, and its cause.
  virtual void error(std::string_view component, std::string_view class_name, std::string_view procedure,
                     std::string_view detail) = 0;
};

/// The log of this thread.
Log& log();
/// Installs a log for this thread and returns the one before; null installs the quiet default.
Log* set_log(Log* log);

/// Logs the exception being handled as trapped in a procedure of a class.
void log_current_exception(std::string_view class_name, std::string_view procedure);
/// Throws the exception being handled on, as an error with a source, "WIN_Window.Save()", where it has none.
[[noreturn]] void raise_current_exception(std::string_view class_name, std::string_view procedure);

/// Whether this thread wants failures raised by the classes that trap them, too.
bool is_strict();
/// Returns what was set before.
bool set_strict(bool strict);
/// What becomes of the exception being handled in a trapping operation: the log has it, or a strict thread's caller.
void trap_current_exception(std::string_view class_name, std::string_view procedure);

/// Runs an operation that traps by itself: a failure is logged under its label and the fallback is the result.
template <typename F, typename R = std::invoke_result_t<F>>
R trapped(std::string_view class_name, std::string_view procedure, F operation, R fallback) {
  try {
    return operation();
  } catch (const std::exception&) {
    trap_current_exception(class_name, procedure);
    return fallback;
  }
}

}  // namespace tarn
