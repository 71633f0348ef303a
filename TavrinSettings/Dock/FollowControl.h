#pragma once

#include "TavrinHost/Dock/FocusSession.h"
#include "TavrinSettings/Editing/History.h"

namespace tavrin {

/// What follows shortcuts and Focus, as the window sees and sets it: each change is a step of the
/// history, and a program that follows is started and ended as it is wanted.
class FollowControl {
public:
  FollowControl(HostContext& context, History& history) : context_(context), history_(history) {}

  /// Throws FileError.
  Following following() const { return followingRecord(context_).value(); }
  bool isFollowed() const;
  /// Whether `tavrin start`, which starts what follows, runs when the user logs in.
  bool startsWithSession() const { return context_.platform().autostart().status().isOn; }
  /// Throws FileError.
  void startWithSession() { context_.platform().autostart().set(true); }

  /// Throws FileError.
  void set(const std::string& title, const std::string& field,
           const std::function<void(Following&)>& edit);
  /// Starts what follows where the layouts want it, nobody does it and it was not switched off.
  /// Throws FileError.
  void keepUp();
  /// Starts it even so.
  void follow();

  std::function<void()> onChange;

private:
  struct Change;

  std::vector<std::string> apply(const Change& change);
  void start();

  HostContext& context_;
  History& history_;
  /// Until it is known by its identifier.
  std::optional<RunningApplications::ProcessID> started_;
};

} // namespace tavrin
