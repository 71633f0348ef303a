#include "TavrinHost/Dock/DockLibrary.h"

#include "TavrinCore/Profiles/ProfileTransfer.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockItems.h"
#include "TavrinHost/NamedReference.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/Dock/CFPreferencesBackend.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/SystemDockReloader.h"

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// Shorter starts of an identifier are taken for names only.
constexpr std::size_t shortestIdentifierStart = 4;

StoragePath paths(HostContext& context) {
  return {context.platform().fileManager(), context.platform().mainBundle()};
}

std::shared_ptr<DockPreferencesBackend> userDock(HostContext& context) {
  auto& platform = context.platform();
  return std::make_shared<CFPreferencesBackend>(platform.dockServices().preferences(),
                                                platform.fileManager().homeFolder());
}

std::shared_ptr<DockReloader> reloader(HostContext& context, bool restarts) {
  if (!restarts)
    return std::make_shared<NoOpDockReloader>();
  return std::make_shared<SystemDockReloader>(context.platform().dockServices().dockProcess());
}

bool startsAs(std::string_view text, std::string_view start) {
  return !start.empty() && folded(text).starts_with(folded(start));
}

[[noreturn]] void throwNoProfile(std::string_view reference, const std::vector<Profile>& all) {
  std::vector<std::string> names;
  for (const auto& profile : all)
    names.push_back(profile.name);
  throw HostError(ExitCode::profileNotFound, noneCalled("profile", reference, names));
}

const Profile* ownerOf(const std::optional<Hotkey>& hotkey, const std::vector<Profile>& all) {
  const auto found = std::ranges::find_if(
      all, [&](const Profile& profile) { return hotkey && profile.hotkey == hotkey; });
  return found == all.end() ? nullptr : &*found;
}

std::string describedProfile(const Profile& profile) {
  return fmt::format("\"{}\" ({})", profile.name, profile.id.text().substr(0, 8));
}

} // namespace

DockLibrary::DockLibrary(HostContext& context, bool restarts)
    : context_(context), dock_(userDock(context)),
      swapper_(DockSwapper::over(dock_, reloader(context, restarts))),
      backups_{paths(context).appSupportDirectory(true) / BackupManager::directoryName, dock_},
      didBackUp_([&context](const fs::path& backup) {
        context.remark(
            translated("The Dock before is kept as {filename}; `tavrin dock undo` brings it back",
                       {{"filename", backup.filename().string()}}));
      }) {}

ProfileStore& DockLibrary::profiles() {
  if (!profiles_)
    profiles_.emplace(paths(context_).profilesFileURL());
  return *profiles_;
}

ProfileSwitcher& DockLibrary::switcher() {
  if (!switcher_) {
    switcher_.emplace(profiles(), swapper_, backups_, context_.platform().clock());
    switcher_->didBackUp = didBackUp_;
  }
  return *switcher_;
}

bool DockLibrary::change(const DockSwapper::Plan& plan) {
  return applyWithBackup(swapper_, backups_, plan, context_.platform().clock(), didBackUp_);
}

bool DockLibrary::put(const UUID& id) {
  const auto wanted = profiles().profile(id);
  if (!wanted)
    throw DockError::profileNotFound(id.text());
  const auto target = wanted->snapshot(context_.platform().clock().now());
  const bool isActive = profiles().file().activeProfileId == id;
  if (showTheSame(snapshot(), target)) {
    switcher().activate(id);
    return false;
  }
  // What the switcher takes for the same may have other names and options.
  return isActive ? put(target) : switcher().switchTo(id);
}

bool DockLibrary::put(const DockSnapshot& layout) {
  return change(
      [&] { return showTheSame(snapshot(), layout) ? std::nullopt : std::optional(layout); });
}

DockSnapshot DockLibrary::snapshot() const {
  return DockPlistReader{dock_}.read(context_.platform().clock().now());
}

const Profile& DockLibrary::profile(std::string_view reference) {
  const auto id = UUID::parse(reference);
  const auto found = nearest<Profile>(
      profiles().file().profiles,
      {[&](const Profile& one) { return id && one.id == *id; },
       [&](const Profile& one) { return one.name == reference; },
       [&](const Profile& one) { return folded(one.name) == folded(reference); },
       [&](const Profile& one) {
         return startsAs(one.name, reference) ||
                (reference.size() >= shortestIdentifierStart && startsAs(one.id.text(), reference));
       }});
  if (found.empty())
    throwNoProfile(reference, profiles().file().profiles);
  if (found.size() > 1)
    throwAmbiguous(reference, found, describedProfile);
  return *found.front();
}

bool DockLibrary::hasProfile(std::string_view name) {
  return std::ranges::count(profiles().file().profiles, name, &Profile::name) > 0;
}

void DockLibrary::requireFree(const Hotkey& hotkey, const UUID& profile) {
  auto others = profiles().file().profiles;
  std::erase_if(others, [&](const Profile& one) { return one.id == profile; });
  if (const auto* owner = ownerOf(hotkey, others))
    throw HostError(ExitCode::refusedValue,
                    translated("{shortcut} is the shortcut of \"{name}\"",
                               {{"shortcut", hotkeyText(hotkey)}, {"name", owner->name}}));
}

std::vector<Profile> DockLibrary::importProfiles(std::string_view text, const std::string& source) {
  std::vector<Profile> imported;
  const auto refuse = [&](const std::exception& error) {
    throw FileError(failure(translated("read {file}", {{"file", source}}), error.what()),
                    error.what());
  };
  try {
    imported = ProfileTransfer::profiles(text);
  } catch (const JSONError& error) {
    refuse(error);
  } catch (const CodingError& error) {
    refuse(error);
  }
  std::vector<Profile> known = profiles().file().profiles;
  for (auto& profile : imported) {
    if (const auto* owner = ownerOf(profile.hotkey, known)) {
      context_.remark(
          translated("\"{name}\" comes without its shortcut {shortcut}, which is the one "
                     "of \"{other}\"",
                     {{"name", profile.name},
                      {"shortcut", hotkeyText(*profile.hotkey)},
                      {"other", owner->name}}));
      profile.hotkey.reset();
    }
    known.push_back(profile);
  }
  // Desktops are named by the machine they are on; none of this one's names is known here.
  return profiles().merge(imported, {});
}

DockSnapshot DockLibrary::layout(const std::string& reference) {
  const Date now = context_.platform().clock().now();
  if (reference == "dock")
    return snapshot();
  for (const auto& backup : backups_.listBackups())
    if (backup.filename() == reference || backup.stem() == reference)
      return dockPlistReader(backup).read(now);
  const bool isPath = reference.ends_with(".plist") || reference.find('/') != std::string::npos;
  const auto file = absolutePath(context_, reference);
  std::error_code error;
  // A profile's name may look like a path, so what is no file may be one.
  const bool isProfile = !isPath || (!fs::exists(file, error) && hasProfile(reference));
  return isProfile ? profile(reference).snapshot(now) : dockPlistReader(file).read(now);
}

ExitCode exitCode(const DockError& error) {
  switch (error.kind()) {
  case DockError::Case::plistNotFound:
    return ExitCode::dockPlistNotFound;
  case DockError::Case::plistReadFailed:
    return ExitCode::dockPlistUnreadable;
  case DockError::Case::plistMalformed:
    return ExitCode::dockPlistMalformed;
  case DockError::Case::plistWriteFailed:
    return ExitCode::dockPlistUnwritable;
  case DockError::Case::unsupportedItemType:
    return ExitCode::unsupportedDockItem;
  case DockError::Case::dockReloadFailed:
    return ExitCode::dockReloadFailed;
  case DockError::Case::fileNotFound:
    return ExitCode::fileNotFound;
  case DockError::Case::profileNotFound:
    return ExitCode::profileNotFound;
  case DockError::Case::noBackupAvailable:
    return ExitCode::noBackup;
  }
  return ExitCode::failed;
}

fs::path absolutePath(HostContext& context, const std::string& path) {
  if (path == "~" || path.starts_with("~/"))
    return context.platform().fileManager().homeFolder() / path.substr(path == "~" ? 1 : 2);
  return fs::absolute(path).lexically_normal();
}

} // namespace tavrin
