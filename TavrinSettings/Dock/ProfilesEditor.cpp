#include "TavrinSettings/Dock/ProfilesEditor.h"

#include "TavrinCore/Profiles/ProfileTransfer.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockItems.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinSettings/Editing/ChangeStep.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// A Dock's own preferences, not an export.
bool isDockFile(const std::filesystem::path& file) {
  return file.extension() == ".plist";
}

/// Takes each field that the change touched to where it led, where it stands as the change found
/// it. False where one did not.
bool carry(const Profile& before, const Profile& after, Profile& current) {
  bool isWhole = true;
  const auto one = [&](auto member) {
    if (before.*member == after.*member || current.*member == after.*member)
      return;
    if (current.*member != before.*member)
      isWhole = false;
    else
      current.*member = after.*member;
  };
  one(&Profile::name);
  one(&Profile::color);
  one(&Profile::items);
  one(&Profile::others);
  one(&Profile::stacks);
  one(&Profile::focusModeBinding);
  one(&Profile::hotkey);
  one(&Profile::otherWorkspaceApps);
  one(&Profile::indicatorColorHex);
  return isWhole;
}

} // namespace

std::vector<std::string> ProfileChange::apply(ProfileStore& store) const {
  const auto current = store.profile(before ? before->id : after->id);
  if (!after) {
    if (current && *current != *before)
      return {staysAsChanged(current->name)};
    if (current)
      store.remove(current->id);
    return {};
  }
  if (!before) {
    if (!current)
      store.putBack(*after, predecessors);
    return {};
  }
  if (!current)
    return {translated("\"{name}\" was deleted elsewhere", {{"name", after->name}})};
  bool isWhole = true;
  store.change(current->id, [&](Profile& profile) {
    const Profile was = profile;
    isWhole = carry(*before, *after, profile);
    return profile != was;
  });
  return isWhole ? std::vector<std::string>() : std::vector{staysAsChanged(current->name)};
}

ProfilesEditor::ProfilesEditor(HostContext& context, History& history)
    : context_(context), history_(history), library_(context) {}

void ProfilesEditor::reload() {
  library_.profiles().reload();
  if (onChange)
    onChange();
}

void ProfilesEditor::did(const std::string& title, const std::string& field, ProfileChange change) {
  history_.add(std::make_unique<ChangeStep<ProfileChange>>(
      title, field, std::move(change), [this](const auto& made) { return apply(made); }));
  if (onChange)
    onChange();
}

std::vector<UUID> ProfilesEditor::predecessorsOf(const UUID& id) {
  std::vector<UUID> found;
  for (const auto& profile : file().profiles) {
    if (profile.id == id)
      break;
    found.push_back(profile.id);
  }
  return found;
}

void ProfilesEditor::didAdd(const std::string& title, const Profile& profile) {
  did(title, {}, {std::nullopt, profile, predecessorsOf(profile.id)});
}

std::vector<std::string> ProfilesEditor::apply(const ProfileChange& change) {
  auto remarks = change.apply(library_.profiles());
  if (onChange)
    onChange();
  return remarks;
}

std::string ProfilesEditor::freeName(const std::string& name) {
  std::string made = name;
  for (int number = 2; std::ranges::count(file().profiles, made, &Profile::name) > 0; ++number)
    made = fmt::format("{} {}", name, number);
  return made;
}

UUID ProfilesEditor::create(bool isEmpty) {
  return createFrom(isEmpty ? DockSnapshot() : library_.snapshot(), translated("Layout"));
}

UUID ProfilesEditor::createFrom(DockSnapshot layout, const std::string& name) {
  Profile profile;
  profile.id = UUID::random();
  profile.name = freeName(name);
  profile.items = std::move(layout.apps);
  profile.others = std::move(layout.others);
  library_.profiles().create(profile);
  didAdd(translated("New {name}", {{"name", profile.name}}), profile);
  return profile.id;
}

UUID ProfilesEditor::duplicate(const UUID& id) {
  auto copy = profile(id);
  if (!copy)
    throw HostError(ExitCode::profileNotFound, translated("This layout was deleted elsewhere"));
  copy->id = UUID::random();
  copy->name = freeName(copy->name);
  // One shortcut is one layout's.
  copy->hotkey.reset();
  copy->focusModeBinding.reset();
  library_.profiles().create(*copy);
  didAdd(translated("Duplicate {name}", {{"name", copy->name}}), *copy);
  return copy->id;
}

void ProfilesEditor::remove(const UUID& id) {
  const auto gone = profile(id);
  if (!gone)
    return;
  auto predecessors = predecessorsOf(id);
  library_.profiles().remove(id);
  did(translated("Delete {name}", {{"name", gone->name}}), {},
      {*gone, std::nullopt, std::move(predecessors)});
}

std::optional<UUID> ProfilesEditor::importFrom(const std::filesystem::path& file) {
  if (isDockFile(file))
    return createFrom(library_.layout(file.string()), file.stem().string());
  const auto added = library_.importProfiles(readFile(file).value_or(std::string()), file.string());
  for (const auto& profile : added)
    didAdd(translated("Import {name}", {{"name", profile.name}}), profile);
  return added.empty() ? std::nullopt : std::optional(added.front().id);
}

void ProfilesEditor::exportTo(const std::filesystem::path& file, const std::optional<UUID>& id) {
  const auto chosen = id ? profile(*id) : std::nullopt;
  if (id && !chosen)
    throw HostError(ExitCode::profileNotFound, translated("This layout was deleted elsewhere"));
  if (isDockFile(file) && chosen)
    dockPlistWriter(file).write(chosen->snapshot(context_.platform().clock().now()));
  else
    writeFileAtomically(
        file, ProfileTransfer::exportData(chosen ? std::vector{*chosen} : this->file().profiles));
}

void ProfilesEditor::edit(const UUID& id, const std::string& title, const std::string& field,
                          const std::function<void(Profile&)>& edit) {
  std::optional<Profile> before;
  const auto after = library_.profiles().change(id, [&](Profile& profile) {
    before = profile;
    edit(profile);
    return profile != *before;
  });
  if (after != *before)
    did(title, field.empty() ? field : id.text() + "/" + field, {before, after, {}});
}

std::string differenceWords(const DockSnapshot& before, const DockSnapshot& after) {
  const auto report = DockChangeDetector::diff(asRead(before), asRead(after));
  const auto names = [](const std::vector<DockItem>& items) {
    std::vector<std::string> words;
    for (const auto& item : items)
      words.push_back(item.displayName());
    return enumeration(words);
  };
  std::vector<std::string> parts;
  if (!report.added.empty())
    parts.push_back(translated("adds {items}", {{"items", names(report.added)}}));
  if (!report.removed.empty())
    parts.push_back(translated("removes {items}", {{"items", names(report.removed)}}));
  // Equal spacers are one and the same to the report.
  if (report.reordered || (parts.empty() && (before.apps.size() != after.apps.size() ||
                                             before.others.size() != after.others.size())))
    parts.push_back(translated("changes the order"));
  if (const auto changed = relooked(before, after); !changed.empty())
    parts.push_back(translated("changes the look of {items}", {{"items", names(changed)}}));
  return parts.empty() ? translated("changes nothing") : enumeration(parts);
}

} // namespace tavrin
