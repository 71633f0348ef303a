#pragma once

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tavrin {

/// A file, pipe end or process handle that closes itself; below zero where there is none.
class Descriptor {
public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    close();
    number_ = std::exchange(other.number_, -1);
    return *this;
  }
  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  void close() {
    if (number_ >= 0)
      ::close(number_);
    number_ = -1;
  }

private:
  int number_ = -1;
};

/// Both ends are closed in programs that are started.
struct Pipe {
  Descriptor reading;
  Descriptor writing;

  /// Without ends where the system gave none; errno says why.
  static Pipe make() {
    int ends[2] = {-1, -1};
#ifdef __APPLE__
    // Programs are started with POSIX_SPAWN_CLOEXEC_DEFAULT, so that the moment between is safe.
    if (::pipe(ends) != 0)
      return {};
    for (const int end : ends)
      ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends, O_CLOEXEC) != 0)
      return {};
#endif
    return {Descriptor(ends[0]), Descriptor(ends[1])};
  }
};

} // namespace tavrin
