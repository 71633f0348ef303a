#include "TavrinStorage/Dock/ProfileSwitcher.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

namespace tavrin {
namespace {

bool isSame(const DockSnapshot& one, const DockSnapshot& other) {
  return !DockChangeDetector::diff(one, other).hasChanges();
}

} // namespace

Profile ProfileSwitcher::requiredProfile(const UUID& id) const {
  auto profile = store_.profile(id);
  if (!profile)
    throw DockError::profileNotFound(id.text());
  return std::move(*profile);
}

std::optional<Profile> ProfileSwitcher::activeProfile() const {
  const auto& id = store_.file().activeProfileId;
  return id ? store_.profile(*id) : std::nullopt;
}

void applyWithBackup(const DockSwapper& swapper, const BackupManager& backup,
                     const DockSnapshot& target, const BackupObserver& didBackUp) {
  const auto file = backup.snapshot(target.capturedAt);
  if (didBackUp)
    didBackUp(file);
  swapper.swap(target);
  try {
    backup.prune(BackupManager::defaultLimit);
  } catch (const FileError&) {
    // A backup too many does no harm.
  }
}

void ProfileSwitcher::setActive(const Profile& profile) {
  if (store_.file().activeProfileId != profile.id)
    store_.setActive(profile.id);
  if (const auto observer = workspaceObserver.lock())
    observer->profileBecameActive(profile);
}

void ProfileSwitcher::switchTo(const UUID& profileID) {
  const Profile profile = requiredProfile(profileID);
  if (store_.file().activeProfileId == profileID)
    return;
  applyWithBackup(swapper_, backup_, profile.snapshot(clock_.now()), didBackUp);
  setActive(profile);
}

bool ProfileSwitcher::captureCurrentDock() {
  const DockSnapshot dock = swapper_.snapshot(clock_.now());
  auto profile = activeProfile();
  if (!profile || isSame(profile->snapshot(clock_.now()), dock))
    return false;
  profile->items = dock.apps;
  profile->others = dock.others;
  store_.update(*profile);
  return true;
}

void ProfileSwitcher::activate(const UUID& profileID) {
  setActive(requiredProfile(profileID));
}

bool ProfileSwitcher::applyActiveProfile() {
  const DockSnapshot dock = swapper_.snapshot(clock_.now());
  const auto profile = activeProfile();
  if (!profile || isSame(profile->snapshot(clock_.now()), dock))
    return false;
  applyWithBackup(swapper_, backup_, profile->snapshot(clock_.now()), didBackUp);
  return true;
}

void ProfileSwitcher::undoLastChange() {
  const auto latest = backup_.latestBackup();
  if (!latest)
    throw DockError::noBackupAvailable();
  const DockSnapshot target = dockPlistReader(*latest).read(clock_.now());
  const auto kept = backup_.snapshot(clock_.now());
  if (didBackUp)
    didBackUp(kept);
  swapper_.swap(target);
  backup_.prune(BackupManager::defaultLimit);
  std::error_code error;
  if (!std::filesystem::remove(*latest, error) && error)
    throw FileError(failure("delete " + latest->string(), error.message()), error.message());
  std::optional<UUID> active;
  for (const auto& profile : store_.file().profiles) {
    if (!isSame(profile.snapshot(clock_.now()), target))
      continue;
    active = profile.id;
    break;
  }
  store_.setActive(active);
}

} // namespace tavrin
