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

}  // namespace tarn
