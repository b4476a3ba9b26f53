#include "cli/progress.h"

#include <unistd.h>

#include <chrono>
#include <iostream>

namespace tarn::cli {
namespace {

using Clock = std::chrono::steady_clock;

/// Ends the line of the bar, however the work ends.
class Bar {
 public:
  explicit Bar(std::string what) : what_(std::move(what)) {}
  Bar(const Bar&) = delete;
  Bar& operator=(const Bar&) = delete;
  ~Bar() {
    if (shown_) std::cerr << "\r\033[K" << std::flush;
  }

  void show(size_t done, size_t total) {
    constexpr size_t kWidth = 40;
    const auto now = Clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(200);
    shown_ = true;
    const size_t filled = total == 0 ? 0 : kWidth * std::min(done, total) / total;
    std::cerr << "\r\033[K"
              << (total == 0 ? "" : "[" + std::string(filled, '#') + std::string(kWidth - filled, ' ') + "] ") << done
              << (total == 0 ? "" : " of " + std::to_string(total)) << ' ' << what_ << std::flush;
  }

 private:
  std::string what_;
  Clock::time_point next_ = Clock::now() + std::chrono::seconds(1);
  bool shown_ = false;
};

}  // namespace

Progress progress_bar(const std::string& what) {
  if (isatty(STDERR_FILENO) == 0) return [](size_t, size_t) {};
  return [bar = std::make_shared<Bar>(what)](size_t done, size_t total) { bar->show(done, total); };
}

}  // namespace tarn::cli
