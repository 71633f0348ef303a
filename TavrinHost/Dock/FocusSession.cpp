#include "TavrinHost/Dock/FocusSession.h"

#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinHost/FoldedName.h"
#include "TavrinStorage/StoragePath.h"

#include <fmt/format.h>

namespace tavrin {
namespace {

/// Seconds between two looks at what is to be followed.
constexpr double refreshInterval = 3;

bool isBoundToOff(const Profile& profile) {
  return profile.focusModeBinding && folded(*profile.focusModeBinding) == "off";
}

std::vector<GlobalShortcuts::Shortcut> shortcutsOf(const ProfilesFile& file,
                                                   const Following& following) {
  std::vector<GlobalShortcuts::Shortcut> shortcuts;
  const auto bindings = following.bindings(file.profiles);
  for (const auto& profile : file.profiles)
    if (const auto found = bindings.find(profile.id); found != bindings.end())
      shortcuts.push_back({profile.id.text(),
                           translated("Switch to {name}", {{"name", profile.name}}),
                           found->second});
  return shortcuts;
}

std::string followerIdentifier(HostContext& context) {
  return folderIdentifier(context, "dev.quellby.Tavrin.Focus");
}

std::filesystem::path followerProgram(HostContext& context) {
  return context.platform().program().replace_filename("tavrin");
}

} // namespace

bool claimFollowing(HostContext& context) {
  auto& applications = context.platform().applications();
  return !applications.knowsIdentifiers() ||
         applications.claimIdentifier(followerIdentifier(context));
}

bool isFollowed(HostContext& context) {
  return context.platform().applications().processOwning(followerIdentifier(context)).has_value();
}

RunningApplications::ProcessID startFollowing(HostContext& context) {
  return context.platform().applications().launch(
      {followerProgram(context), {"focus"}, {}, context.stateFolder() / "focus.log"});
}

SharedRecord<Following> followingRecord(HostContext& context) {
  auto& platform = context.platform();
  return {StoragePath(platform.fileManager(), platform.mainBundle()).followingFileURL(),
          followingChangedNotification, platform.notifications()};
}

bool startFollowingWhereWanted(HostContext& context) {
  // Without a session bus nobody would know of the one that follows.
  if (!context.platform().applications().knowsIdentifiers() || isFollowed(context) ||
      !followingRecord(context).value().isWanted(DockLibrary(context).profiles().file()))
    return false;
  startFollowing(context);
  return true;
}

bool stopFollowing(HostContext& context) {
  auto& applications = context.platform().applications();
  const auto owner = applications.processOwning(followerIdentifier(context));
  if (!owner || applications.programOf(*owner) != followerProgram(context))
    return false;
  applications.terminate(*owner, false);
  return true;
}

std::optional<UUID> profileForFocus(const ProfilesFile& file, bool isFocused) {
  for (const auto& profile : file.profiles)
    if (profile.focusModeBinding && !profile.focusModeBinding->empty() &&
        isBoundToOff(profile) == !isFocused)
      return profile.id;
  return std::nullopt;
}

FocusSession::FocusSession(HostContext& context, const FocusOptions& options)
    : context_(context), options_(options),
      queue_(context.platform().dockServices().runLoop().makeSerialQueue()) {
  auto& services = context.platform().dockServices();
  // Made here, so that the queue does not make them at the same time as the main thread.
  services.preferences();
  services.dockProcess();
}

void FocusSession::start() {
  auto& services = context_.platform().dockServices();
  if (!services.focusStatus().isAuthorized())
    context_.remark(
        translated("The Focus state cannot be read here; shortcuts alone switch profiles"));
  refresh();
  refresh_ = services.runLoop().repeat(refreshInterval, [this] { refresh(); });
}

void FocusSession::look(double interval) {
  if (monitor_ && interval == interval_)
    return;
  interval_ = interval;
  auto& services = context_.platform().dockServices();
  monitor_.emplace(services.runLoop(), services.focusStatus(), interval,
                   Log(services.log(), "focus"));
  monitor_->start(
      [this](bool isFocused) { queue_->run([this, isFocused] { focusChanged(isFocused); }); });
}

void FocusSession::stop() {
  // Waits for the question that runs: its answer goes to the queue.
  monitor_.reset();
  refresh_.reset();
  alive_.end();
  queue_.reset();
}

void FocusSession::focusChanged(bool isFocused) {
  // Whoever looks at another interval begins with what is known.
  if (std::exchange(lastFocus_, isFocused) == isFocused)
    return;
  try {
    const auto file = DockLibrary(context_).profiles().file();
    auto wanted = profileForFocus(file, isFocused);
    if (isFocused && wanted) {
      beforeFocus_ = file.activeProfileId;
      duringFocus_ = wanted;
    } else if (!isFocused && !wanted && file.activeProfileId == duringFocus_) {
      wanted = beforeFocus_;
    }
    if (!isFocused)
      beforeFocus_ = duringFocus_ = std::nullopt;
    if (wanted)
      switchTo(*wanted);
  } catch (const std::exception& error) {
    context_.remark(fmt::format("tavrin: {}", printable(error.what())));
  }
}

void FocusSession::switchTo(const UUID& id) {
  try {
    DockLibrary library(context_, options_.restarts);
    const auto profile = library.profiles().profile(id);
    if (!profile || library.profiles().file().activeProfileId == id)
      return;
    library.switcher().switchTo(id);
    context_.say(
        translated("\"{name}\" is the active profile", {{"name", printable(profile->name)}}));
  } catch (const std::exception& error) {
    context_.remark(fmt::format("tavrin: {}", printable(error.what())));
  }
}

void FocusSession::tellLog(const std::exception& error) {
  context_.platform().dockServices().log().write(LogLevel::error, Log::subsystem, "focus",
                                                 error.what());
}

void FocusSession::refresh() {
  queue_->run([this, alive = alive_.watch()] {
    Following following;
    std::optional<std::vector<GlobalShortcuts::Shortcut>> shortcuts;
    try {
      following = followingRecord(context_).value();
    } catch (const std::exception& error) {
      tellLog(error);
    }
    following.interval = options_.interval.value_or(following.boundedInterval());
    following.numbered = options_.numbered.value_or(following.numbered);
    try {
      shortcuts = shortcutsOf(DockLibrary(context_).profiles().file(), following);
    } catch (const std::exception& error) {
      tellLog(error);
    }
    context_.platform().dockServices().runLoop().post(
        [this, alive, shortcuts = std::move(shortcuts), interval = following.interval] {
          if (!alive.lock())
            return;
          look(interval);
          if (shortcuts)
            bind(*shortcuts);
        });
  });
}

void FocusSession::bind(const std::vector<GlobalShortcuts::Shortcut>& shortcuts) {
  if (hasBound_ && shortcuts == bound_)
    return;
  hasBound_ = true;
  bound_ = shortcuts;
  auto& service = context_.platform().dockServices().globalShortcuts();
  service.onRefused = [this, alive = alive_.watch()](const auto& refusal) {
    if (alive.lock())
      remark(refusal);
  };
  const auto refusals = service.bind(shortcuts, [this](const std::string& text) {
    if (const auto id = UUID::parse(text); id && queue_)
      queue_->run([this, id = *id] { switchTo(id); });
  });
  for (const auto& refusal : refusals)
    remark(refusal);
}

void FocusSession::remark(const GlobalShortcuts::Refusal& refusal) {
  for (const auto& shortcut : bound_)
    if (shortcut.id == refusal.id)
      context_.remark(printable(
          translated("Failed to register {hotkey} because {reason}",
                     {{"hotkey", hotkeyText(shortcut.hotkey)}, {"reason", refusal.reason}})));
}

} // namespace tavrin
