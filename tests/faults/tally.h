// Points that were tried, and those that ended in a wrong state.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace tarn::faults {

class Tally {
 public:
  explicit Tally(std::string what) : what_(std::move(what)) {}
  /// A point; `wrong` says what is wrong with it, empty for nothing.
  void add(const std::string& point, const std::string& wrong);
  /// Prints the numbers; false where a point was wrong, or none was tried.
  bool told() const;

 private:
  std::string what_;
  size_t points_ = 0, wrong_ = 0;
};

/// A process of its own, and what it says. Its file calls are watched, and so nothing is synced.
class Child {
 public:
  using Says = std::function<void(const std::string&)>;
  explicit Child(const std::function<void(const Says&)>& work);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  /// What it says next, a line; empty at its end.
  std::string line();
  /// The rest of what it says, to its end.
  std::string rest();
  void kill();
  /// Its exit status, -1 where a signal has ended it.
  int status();
  /// A word to it, which it gets by `heard`.
  void tell();
  static bool heard();

 private:
  pid_t process_ = -1;
  int from_ = -1, to_ = -1, status_ = 0;
};

/// The lines that differ, the first few.
std::string difference(const std::string& is, const std::string& wanted);

}  // namespace tarn::faults
