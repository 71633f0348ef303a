#include "TavrinStorage/Dock/ProfileSwitcher.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

/// Items count as they read in the Dock: a profile that was written by hand may put them otherwise.
bool isSame(const DockSnapshot& layout, const DockSnapshot& dock) {
  return !DockChangeDetector::diff(asRead(layout), asRead(dock)).hasChanges();
}

void pruneIfPossible(const BackupManager& backup) {
  try {
    backup.prune(BackupManager::defaultLimit);
  } catch (const FileError&) {
    // A backup too many does no harm.
  }
}

} // namespace

bool applyWithBackup(const DockSwapper& swapper, const BackupManager& backup,
                     const DockSwapper::Plan& plan, const Clock& clock,
                     const BackupObserver& didBackUp) {
  bool isBackedUp = false;
  const auto planWithBackup = [&] {
    auto target = plan();
    if (target && !std::exchange(isBackedUp, true)) {
      const auto file = backup.snapshot(clock.now());
      if (didBackUp)
        didBackUp(file);
    }
    return target;
  };
  try {
    const bool isWritten = swapper.change(planWithBackup);
    if (isBackedUp)
      pruneIfPossible(backup);
    return isWritten;
  } catch (...) {
    if (isBackedUp)
      pruneIfPossible(backup);
    throw;
  }
}

Profile ProfileSwitcher::requiredProfile(const UUID& id) const {
  auto profile = store_.profile(id);
  if (!profile)
    throw DockError::profileNotFound(id.text());
  return std::move(*profile);
}

bool ProfileSwitcher::apply(const DockSwapper::Plan& plan) {
  return applyWithBackup(swapper_, backup_, plan, clock_, didBackUp);
}

bool ProfileSwitcher::switchTo(UUID profileID) {
  requiredProfile(profileID);
  if (store_.file().activeProfileId == profileID)
    return false;
  apply([&] {
    store_.reload();
    return std::optional(requiredProfile(profileID).snapshot(clock_.now()));
  });
  // Of two switches at once the one whose layout stands makes its profile the active one.
  std::shared_ptr<void> access;
  try {
    access = swapper_.writer.backend->exclusiveAccess();
  } catch (const DockError&) {
    // The Dock has the layout all the same; left open is the moment between look and mark.
  }
  store_.reload();
  if (!isReplaced(profileID))
    activate(profileID);
  return true;
}

/// Whether the Dock shows another profile's layout.
bool ProfileSwitcher::isReplaced(const UUID& id) const {
  const DockSnapshot dock = swapper_.snapshot(clock_.now());
  const auto isShown = [&](const Profile& profile) {
    return isSame(profile.snapshot(dock.capturedAt), dock);
  };
  const auto& profiles = store_.file().profiles;
  return std::ranges::any_of(profiles, isShown) &&
         std::ranges::none_of(profiles, [&](const Profile& profile) {
           return profile.id == id && isShown(profile);
         });
}

bool ProfileSwitcher::captureCurrentDock() {
  const DockSnapshot dock = swapper_.snapshot(clock_.now());
  const auto active = store_.activeProfile();
  return active && capture(active->id, dock);
}

bool ProfileSwitcher::capture(UUID profileID, const DockSnapshot& dock) {
  bool isChanged = false;
  store_.change(profileID, [&](Profile& profile) {
    isChanged = !isSame(profile.snapshot(dock.capturedAt), dock);
    if (isChanged) {
      profile.items = dock.apps;
      profile.others = dock.others;
    }
    return isChanged;
  });
  return isChanged;
}

void ProfileSwitcher::activate(UUID profileID) {
  const Profile profile = store_.activate(profileID);
  if (const auto observer = workspaceObserver.lock())
    observer->profileBecameActive(profile);
}

bool ProfileSwitcher::applyActiveProfile() {
  const auto plan = [&]() -> std::optional<DockSnapshot> {
    store_.reload();
    const auto profile = store_.activeProfile();
    if (!profile)
      return std::nullopt;
    auto layout = profile->snapshot(clock_.now());
    return isSame(layout, swapper_.snapshot(clock_.now())) ? std::nullopt
                                                           : std::optional(std::move(layout));
  };
  return plan() && apply(plan);
}

void ProfileSwitcher::undoLastChange() {
  const auto latest = backup_.latestBackup();
  if (!latest)
    throw DockError::noBackupAvailable();
  const DockSnapshot target = dockPlistReader(*latest).read(clock_.now());
  apply([&] { return std::optional(target); });
  std::error_code error;
  if (!std::filesystem::remove(*latest, error) && error)
    throw FileError(
        failure(translated("delete {latest}", {{"latest", latest->string()}}), error.message()),
        error.message());
  store_.activateFirst(
      [&](const Profile& profile) { return isSame(profile.snapshot(target.capturedAt), target); });
}

} // namespace tavrin
