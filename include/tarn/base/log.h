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

/// Runs an operation that traps by itself: a failure is logged under its label and the fallback is the result.
template <typename F, typename R = std::invoke_result_t<F>>
R trapped(std::string_view class_name, std::string_view procedure, F operation, R fallback) {
  try {
    return operation();
  } catch (const std::exception&) {
    log_current_exception(class_name, procedure);
    return fallback;
  }
}

}  // namespace tarn
