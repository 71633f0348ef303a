#pragma once

#include <map>
#include <memory>

struct _XDisplay;

namespace tavrin {

/// What Caps Lock, Num Lock and the like have set on the X server's keyboards, and the chosen
/// layout, kept as it is by setting it back at once: so there is nothing left to be done when this
/// process is killed. Without the keyboard extension it keeps nothing.
class LockedModifiers {
public:
  LockedModifiers();
  ~LockedModifiers();
  LockedModifiers(const LockedModifiers&) = delete;
  LockedModifiers& operator=(const LockedModifiers&) = delete;

  /// Keeps what the keyboard with the extension's number `device` is set to now; once for each.
  void keep(unsigned device);
  /// Takes the events there are, and sets back what they tell of.
  void restore();
  /// Readable when there is something to set back; -1 without the extension.
  int descriptor() const;

private:
  struct Setting {
    unsigned modifiers = 0;
    unsigned layout = 0;
    bool operator==(const Setting&) const = default;
  };
  void setBack(unsigned device, const Setting& found);

  struct Close {
    void operator()(_XDisplay* display) const;
  };
  std::unique_ptr<_XDisplay, Close> display_;
  int firstEvent_ = 0;
  std::map<unsigned, Setting> kept_;
};

} // namespace tavrin
