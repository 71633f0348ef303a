#pragma once

#include <csignal>
#include <functional>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tavrin {

/// Work in a process of its own, forked from this one. Killed and waited for when this goes.
class ChildProcess {
public:
  using Ready = std::function<void()>;

  /// `work` may tell that it is ready. The process ends with 0, or with 1 where `work` throws.
  explicit ChildProcess(const std::function<void(const Ready&)>& work) {
    int ends[2];
    if (::pipe(ends) != 0)
      throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ < 0)
      throw std::runtime_error("no process");
    if (process_ == 0) {
      ::close(ends[0]);
      int status = 0;
      try {
        work([&] { [[maybe_unused]] const auto written = ::write(ends[1], "r", 1); });
      } catch (...) {
        status = 1;
      }
      ::_exit(status);
    }
    ::close(ends[1]);
    readiness_ = ends[0];
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() {
    kill();
    ::close(readiness_);
  }

  /// Waits until it says so; false when it ended before.
  bool isReady() const {
    char letter = 0;
    return ::read(readiness_, &letter, 1) == 1;
  }
  void kill() {
    if (process_ <= 0)
      return;
    ::kill(process_, SIGKILL);
    wait();
  }
  /// Waits for its end; below zero where a signal ended it.
  int exitStatus() {
    wait();
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
  }

private:
  void wait() {
    if (process_ > 0)
      ::waitpid(process_, &status_, 0);
    process_ = 0;
  }

  pid_t process_ = 0;
  int readiness_ = -1;
  int status_ = 0;
};

} // namespace tavrin
