#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Profiles/WorkspaceHotkeys.h"
#include "TavrinHost/HostContext.h"
#include "TavrinStorage/Dock/FocusModeMonitor.h"

namespace tavrin {

struct FocusOptions {
  /// Seconds between two looks at the Focus state.
  double interval = 2;
  /// The modifiers of the numbered shortcuts; none for no such shortcuts.
  std::optional<HotkeyModifiers> numbered = WorkspaceHotkeys::defaultModifiers;
  bool restarts = true;
};

/// The profile that a Focus state asks for: without a Focus the first bound to "off", with one the
/// first bound to anything else. Only the state is known, not the mode's name.
std::optional<UUID> profileForFocus(const ProfilesFile& file, bool isFocused);

/// Makes this process the one that follows for this data folder. False where another does; where
/// there is no session bus nobody is known to.
bool claimFollowing(HostContext& context);
bool isFollowed(HostContext& context);
/// Starts a process that follows, apart from this one. Throws FileError.
void startFollowing(HostContext& context);

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
  /// Registers the shortcuts anew where the profiles' have changed.
  void refreshShortcuts();
  void bind(const std::vector<GlobalShortcuts::Shortcut>& shortcuts);
  void remark(const GlobalShortcuts::Refusal& refusal);

  HostContext& context_;
  FocusOptions options_;
  std::vector<GlobalShortcuts::Shortcut> bound_;
  bool hasBound_ = false;
  /// Touched on the queue alone.
  std::optional<UUID> beforeFocus_;
  std::optional<UUID> duringFocus_;
  TokenPtr refresh_;
  Lifetime alive_;
  std::optional<FocusModeMonitor> monitor_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace tavrin
