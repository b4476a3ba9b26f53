#include "tally.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <sstream>
#include <vector>

#include "calls.h"

namespace tarn::faults {

void Tally::add(const std::string& point, const std::string& wrong) {
  constexpr size_t kShown = 10;
  ++points_;
  if (!wrong.empty() && ++wrong_ <= kShown) std::cout << "WRONG, " << point << ": " << wrong << std::endl;
}

bool Tally::told() const {
  std::cout << what_ << ": " << points_ << " points, " << wrong_ << " wrong" << std::endl;
  return wrong_ == 0 && points_ > 0;
}

namespace {
int heard_from = -1;
}

Child::Child(const std::function<void(const Says&)>& work) {
  int says[2], hears[2];
  if (pipe(says) != 0 || pipe(hears) != 0) std::abort();
  std::cout.flush();
  process_ = fork();
  if (process_ != 0) {
    close(says[1]);
    close(hears[0]);
    from_ = says[0];
    to_ = hears[1];
    return;
  }
  close(says[0]);
  close(hears[1]);
  heard_from = hears[0];
  watch("/", [](const Call&) { return Fate::Passes; });
  work([&says](const std::string& text) {
    for (size_t done = 0; done < text.size();)
      done += static_cast<size_t>(::write(says[1], text.data() + done, text.size() - done));
  });
  _exit(0);
}

Child::~Child() {
  if (from_ < 0) return;
  rest();
  status();
  close(from_);
  close(to_);
}

std::string Child::line() {
  std::string text;
  for (char next = 0; ::read(from_, &next, 1) == 1 && next != '\n';) text += next;
  return text;
}

std::string Child::rest() {
  std::string text;
  char part[4096];
  for (ssize_t got = 0; (got = ::read(from_, part, sizeof part)) > 0;) text.append(part, static_cast<size_t>(got));
  return text;
}

void Child::kill() { ::kill(process_, SIGKILL); }

int Child::status() {
  if (process_ > 0) waitpid(process_, &status_, 0);
  process_ = -1;
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

void Child::tell() {
  if (::write(to_, "x", 1) != 1) std::abort();
}

bool Child::heard() {
  pollfd ready{heard_from, POLLIN, 0};
  return poll(&ready, 1, 0) == 1;
}

std::string difference(const std::string& is, const std::string& wanted) {
  const auto lines = [](const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> all;
    for (std::string line; std::getline(in, line);) all.push_back(line);
    return all;
  };
  const auto found = lines(is), expected = lines(wanted);
  std::string text;
  for (const auto& line : found)
    if (std::find(expected.begin(), expected.end(), line) == expected.end()) text += " +" + line;
  for (const auto& line : expected)
    if (std::find(found.begin(), found.end(), line) == found.end()) text += " -" + line;
  return text.substr(0, 300);
}

}  // namespace tarn::faults
