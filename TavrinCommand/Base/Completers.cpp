#include "TavrinCommand/Base/Completers.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"

#include <algorithm>

namespace tavrin {

Completer completeWidgets(CommandContext& context, bool takesSeveral) {
  return [&context, takesSeveral](const std::vector<std::string>& words, auto) {
    std::vector<Suggestion> found;
    if (!words.empty() && !takesSeveral)
      return found;
    const WidgetLibrary library(context);
    for (const auto& widget : library.file().widgets)
      if (std::ranges::count(words, widget.name) == 0)
        found.push_back({widget.name, std::string(widget.kind.title())});
    return found;
  };
}

Completer completeKinds() {
  return [](const auto&, auto) {
    std::vector<Suggestion> found;
    for (const auto& kind : allKinds())
      found.push_back({std::string(kind.key), translated(kind.title)});
    return found;
  };
}

Completer completeProfiles(CommandContext& context) {
  return [&context](const std::vector<std::string>&, auto) {
    std::vector<Suggestion> found;
    for (const auto& profile : DockLibrary(context).profiles().file().profiles)
      found.push_back({profile.name, std::string(nameOf(profile.color))});
    return found;
  };
}

Completer completeDockItems(CommandContext& context) {
  return [&context](const std::vector<std::string>& words, auto) {
    std::vector<Suggestion> found;
    for (const auto& one : placedItems(DockLibrary(context).snapshot()))
      if (const auto label = one.item.displayName();
          one.item.spacer() == nullptr && std::ranges::count(words, label) == 0)
        found.push_back({label, addressOf(one.item)});
    return found;
  };
}

Completer completeLayouts(CommandContext& context) {
  return [&context](const std::vector<std::string>&, auto) {
    std::vector<Suggestion> found = {{"dock", translated("the Dock as it is")}};
    DockLibrary library(context);
    for (const auto& profile : library.profiles().file().profiles)
      found.push_back({profile.name, translated("profile")});
    for (const auto& backup : library.backups().listBackups())
      found.push_back({backup.filename().string(), translated("backup")});
    return found;
  };
}

} // namespace tavrin
