#pragma once

#include <string>

namespace tavrin {

/// Whether the placed widgets are put on the screen whenever the user's session begins, and so come
/// back after a session or its display has ended.
class Autostart {
public:
  struct Status {
    bool isOn = false;
    /// Whether this system has a way to do it.
    bool isAvailable = true;
    /// Says which of the two it is, and by what; for the user.
    std::string sentence;
  };

  virtual ~Autostart() = default;
  virtual Status status() = 0;
  /// Takes effect with the next session; neither starts nor ends a widget. Throws FileError.
  virtual Status set(bool isOn) = 0;
};

} // namespace tavrin
