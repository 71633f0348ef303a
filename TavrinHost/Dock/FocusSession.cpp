#include "TavrinHost/Dock/FocusSession.h"

#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinHost/FoldedName.h"

#include <fmt/format.h>

namespace tavrin {
namespace {

/// Seconds between two looks at the profiles' shortcuts.
constexpr double shortcutInterval = 3;

bool isBoundToOff(const Profile& profile) {
  return profile.focusModeBinding && folded(*profile.focusModeBinding) == "off";
}

std::vector<GlobalShortcuts::Shortcut> shortcutsOf(const ProfilesFile& file,
                                                   std::optional<HotkeyModifiers> numbered) {
  std::vector<GlobalShortcuts::Shortcut> shortcuts;
  const auto bindings = WorkspaceHotkeys::bindings(file.profiles, numbered);
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

} // namespace

bool claimFollowing(HostContext& context) {
  auto& applications = context.platform().applications();
  return !applications.knowsIdentifiers() ||
         applications.claimIdentifier(followerIdentifier(context));
}

bool isFollowed(HostContext& context) {
  return context.platform().applications().processOwning(followerIdentifier(context)).has_value();
}

void startFollowing(HostContext& context) {
  auto& platform = context.platform();
  platform.applications().launch({platform.program().replace_filename("tavrin"),
                                  {"focus"},
                                  {},
                                  context.stateFolder() / "focus.log"});
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
  monitor_.emplace(services.runLoop(), services.focusStatus(), options.interval,
                   Log(services.log(), "focus"));
  // Made here, so that the queue does not make them at the same time as the main thread.
  services.preferences();
  services.dockProcess();
}

void FocusSession::start() {
  auto& services = context_.platform().dockServices();
  if (!services.focusStatus().isAuthorized())
    context_.remark(
        translated("The Focus state cannot be read here; shortcuts alone switch profiles"));
  refreshShortcuts();
  refresh_ = services.runLoop().repeat(shortcutInterval, [this] { refreshShortcuts(); });
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

void FocusSession::refreshShortcuts() {
  queue_->run([this, alive = alive_.watch()] {
    std::vector<GlobalShortcuts::Shortcut> shortcuts;
    try {
      shortcuts = shortcutsOf(DockLibrary(context_).profiles().file(), options_.numbered);
    } catch (const std::exception& error) {
      context_.platform().dockServices().log().write(LogLevel::error, Log::subsystem, "focus",
                                                     error.what());
      return;
    }
    context_.platform().dockServices().runLoop().post(
        [this, alive, shortcuts = std::move(shortcuts)] {
          if (alive.lock())
            bind(shortcuts);
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
