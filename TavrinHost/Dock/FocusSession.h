#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Profiles/Following.h"
#include "TavrinHost/HostContext.h"
#include "TavrinStorage/Dock/FocusModeMonitor.h"
#include "TavrinStorage/SharedRecord.h"

namespace tavrin {

/// What has no value is as `Following` says at each moment.
struct FocusOptions {
  std::optional<double> interval;
  std::optional<HotkeyModifiers> numbered;
  bool restarts = true;
};

inline constexpr const char* followingChangedNotification = "dev.quellby.tavrin.following-changed";
/// Throws FileError.
SharedRecord<Following> followingRecord(HostContext& context);

/// The profile that a Focus state asks for: without a Focus the first bound to "off", with one the
/// first bound to anything else. Only the state is known, not the mode's name.
std::optional<UUID> profileForFocus(const ProfilesFile& file, bool isFocused);

/// Makes this process the one that follows for this data folder. False where another does; where
/// there is no session bus nobody is known to.
bool claimFollowing(HostContext& context);
bool isFollowed(HostContext& context);
/// Starts a process that follows, apart from this one, and gives it. Throws FileError.
RunningApplications::ProcessID startFollowing(HostContext& context);
/// Where `Following` wants it for the profiles and nobody follows. Whether one was started. Throws
/// FileError.
bool startFollowingWhereWanted(HostContext& context);
/// Ends the process that follows. Whether there was one.
bool stopFollowing(HostContext& context);

/// Follows the Focus state and the shortcuts and switches profiles. When a Focus ends and no
/// profile is bound to "off", the profile from before the Focus comes back. All switching happens
/// on one queue of its own, so that nothing waits for the Dock but that queue.
class FocusSession {
public:
  FocusSession(HostContext& context, const FocusOptions& options);

  void start();
  void stop();

private:
  void focusChanged(bool isFocused);
  /// Runs on the queue; what fails is a remark.
  void switchTo(const UUID& id);
  /// Takes up what has changed of the profiles' shortcuts and of `Following`.
  void refresh();
  void look(double interval);
  void tellLog(const std::exception& error);
  void bind(const std::vector<GlobalShortcuts::Shortcut>& shortcuts);
  void remark(const GlobalShortcuts::Refusal& refusal);

  HostContext& context_;
  FocusOptions options_;
  std::vector<GlobalShortcuts::Shortcut> bound_;
  bool hasBound_ = false;
  // Touched on the queue alone.
  std::optional<bool> lastFocus_;
  std::optional<UUID> beforeFocus_;
  std::optional<UUID> duringFocus_;
  double interval_ = 0;
  TokenPtr refresh_;
  Lifetime alive_;
  std::optional<FocusModeMonitor> monitor_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
