#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"

#include <QTimer>
#include <map>

namespace tavrin {

/// When the strip is away, where the Dock's preferences say `autohide`: while no slot has a reason
/// to have it there. Slots tell each other of theirs on the session bus; without one each tile
/// comes and goes for itself.
class StripAutohide {
public:
  /// What keeps the strip there. An attention keeps the one tile alone.
  enum Reason : unsigned {
    edge = 1,
    pointer = 2,
    drag = 4,
    panel = 8,
    keyboard = 16,
    attention = 32
  };

  /// `bus` may be null, else it outlives this. `changed` is told when `isHidden` has changed.
  StripAutohide(Bus* bus, std::function<void()> changed);

  /// Whether the preferences want the strip hidden at all.
  void setWanted(bool isWanted);
  bool isWanted() const { return isWanted_; }
  void hold(Reason reason, bool isHeld);
  /// The pointer has come to the edge, or something else that wants the strip for a moment.
  void touch();
  /// The same by an attention, for as long as the eye needs to find it.
  void attend();
  bool isHidden() const { return isHidden_; }

private:
  void follow();
  void heard(const std::string& sender, bool isHeld);
  void tell();
  void update();

  Bus* const bus_;
  const std::function<void()> changed_;
  bool isWanted_ = false;
  bool isHidden_ = false;
  bool hasTold_ = false;
  unsigned reasons_ = 0;
  /// The connections of others that have a reason, each with the watch for its end.
  std::map<std::string, TokenPtr> others_;
  TokenPtr held_;
  TokenPtr asked_;
  QTimer hides_;
  QTimer touched_;
  QTimer attended_;
};

} // namespace tavrin
