#include "tarn/base/log.h"

namespace tarn {
namespace {

class QuietLog final : public Log {
 public:
  void message(std::string_view) override {}
  void error(std::string_view, std::string_view, std::string_view, std::string_view) override {}
};

QuietLog quiet_log;
thread_local Log* current_log = &quiet_log;
thread_local bool strict_thread = false;

}  // namespace

Log& log() { return *current_log; }

Log* set_log(Log* log) { return std::exchange(current_log, log ? log : &quiet_log); }

void log_current_exception(std::string_view class_name, std::string_view procedure) {
  try {
    throw;
  } catch (const std::exception& failure) {
    log().error(kComponent, class_name, procedure, failure.what());
  }
}

void raise_current_exception(std::string_view class_name, std::string_view procedure) {
  const auto source = [&] { return std::string(class_name) + "." + std::string(procedure); };
  try {
    throw;
  } catch (Error& error) {
    if (error.source().empty()) error.set_source(source());
    throw;
  } catch (const std::exception& other) {
    throw Error(static_cast<int>(ErrorNumber::DatabaseFailure), source(), other.what());
  }
}

bool is_strict() { return strict_thread; }

bool set_strict(bool strict) { return std::exchange(strict_thread, strict); }

void trap_current_exception(std::string_view class_name, std::string_view procedure) {
  if (is_strict()) raise_current_exception(class_name, procedure);
  log_current_exception(class_name, procedure);
}

}  // namespace tarn
