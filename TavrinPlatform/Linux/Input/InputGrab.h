#pragma once

#include <filesystem>
#include <memory>
#include <vector>

namespace tavrin {

/// Input devices held by this process, until the object goes or the process ends.
class InputGrab {
public:
  enum class Result { holding, busy, notPermitted, refused };

  virtual ~InputGrab() = default;
  /// Tries once; `busy` may be tried again.
  virtual Result begin(bool locksPointer) = 0;
  /// To be called every half second: takes back what a program or the server made the system give
  /// up, and takes what has come since. False when the hold is lost.
  virtual bool renew() = 0;
  /// Descriptors that become readable when there is input; `renew` may change them.
  virtual std::vector<int> descriptors() const = 0;
  /// Takes what there is, as Quartz event type numbers. False when the hold is lost.
  virtual bool read(std::vector<char>& eventTypes) = 0;

  /// Grabs of the X server that DISPLAY names: XInput 2 grabs of its master devices. The lock keys
  /// act in the server whoever has grabbed: what they were set to is kept.
  static std::unique_ptr<InputGrab> x11();
  /// Exclusive use of the kernel's input devices (EVIOCGRAB) in `folder`, where the user may open
  /// them.
  static std::unique_ptr<InputGrab> evdev(const std::filesystem::path& folder = "/dev/input");
};

} // namespace tavrin
