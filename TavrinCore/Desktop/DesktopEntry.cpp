#include "TavrinCore/Desktop/DesktopEntry.h"

#include "TavrinCore/Desktop/KeyFile.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace tavrin {
namespace {

constexpr std::string_view mainGroup = "Desktop Entry";
constexpr std::string_view actionGroup = "Desktop Action ";
constexpr std::size_t mostItems = 256;

/// The values of one group, each with the rank of the language it was written for.
class Group {
public:
  void take(std::string_view key, std::string_view value, const std::vector<std::string>& locales) {
    std::size_t rank = locales.size();
    if (const auto bracket = key.find('['); bracket != std::string_view::npos) {
      if (!key.ends_with(']'))
        return;
      const auto ending = key.substr(bracket + 1, key.size() - bracket - 2);
      rank = static_cast<std::size_t>(std::ranges::find(locales, ending) - locales.begin());
      if (rank == locales.size())
        return;
      key = key.substr(0, bracket);
    }
    if (!isUTF8(value) || value.find('\0') != std::string_view::npos)
      return;
    const auto [place, isNew] = values_.try_emplace(std::string(key), rank, value);
    // Of two for the same language the first one counts.
    if (!isNew && rank < place->second.first)
      place->second = {rank, value};
  }

  std::string_view raw(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::string_view() : found->second.second;
  }
  std::string text(std::string_view key) const {
    const auto items = unescaped(raw(key), '\0');
    return items.empty() ? std::string() : items.front();
  }
  std::vector<std::string> list(std::string_view key) const { return unescaped(raw(key), ';'); }
  bool flag(std::string_view key) const { return trimmed(raw(key)) == "true"; }
  bool has(std::string_view key) const { return values_.contains(key); }

private:
  /// Escapes undone; parted at `separator`, unless that is escaped.
  static std::vector<std::string> unescaped(std::string_view value, char separator) {
    constexpr auto escapes = std::to_array<std::pair<char, char>>(
        {{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}});
    std::vector<std::string> items;
    std::string item;
    const auto finish = [&] {
      if (!item.empty() && items.size() < mostItems)
        items.push_back(std::exchange(item, {}));
      item.clear();
    };
    for (std::size_t i = 0; i < value.size(); ++i) {
      const char c = value[i];
      if (separator != '\0' && c == separator) {
        finish();
        continue;
      }
      if (c != '\\' || i + 1 == value.size()) {
        item.push_back(c);
        continue;
      }
      const char next = value[++i];
      const auto* escape = std::ranges::find(escapes, next, &std::pair<char, char>::first);
      if (escape != escapes.end()) {
        item.push_back(escape->second);
      } else {
        // Unknown ones stand for themselves: "\;" parts nothing, and Exec has escapes of its own.
        if (separator == '\0' || next != separator)
          item.push_back('\\');
        item.push_back(next);
      }
    }
    finish();
    return items;
  }

  std::map<std::string, std::pair<std::size_t, std::string_view>, std::less<>> values_;
};

bool meets(const std::vector<std::string>& names, std::string_view desktops) {
  while (!desktops.empty()) {
    const auto end = std::min(desktops.find(':'), desktops.size());
    const auto desktop = desktops.substr(0, end);
    if (!desktop.empty() && std::ranges::find(names, desktop) != names.end())
      return true;
    desktops.remove_prefix(std::min(end + 1, desktops.size()));
  }
  return false;
}

} // namespace

std::vector<std::string> localeKeys(std::string_view locale) {
  const auto at = std::min(locale.find('@'), locale.size());
  const std::string modifier(locale.substr(at));
  const std::string_view place = locale.substr(0, std::min(locale.find('.'), at));
  const std::string_view language = place.substr(0, std::min(place.find('_'), place.size()));
  if (language.empty() || language == "C" || language == "POSIX")
    return {};
  std::vector<std::string> keys;
  const auto add = [&](std::string key) {
    if (std::ranges::find(keys, key) == keys.end())
      keys.push_back(std::move(key));
  };
  add(std::string(place) + modifier);
  add(std::string(place));
  add(std::string(language) + modifier);
  add(std::string(language));
  return keys;
}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text, std::string_view locale) {
  const auto locales = localeKeys(locale);
  std::map<std::string, Group, std::less<>> groups;
  eachKeyFileLine(text.substr(0, maximumSize), [&](auto group, auto key, auto value) {
    if (group != mainGroup && !group.starts_with(actionGroup))
      return;
    auto found = groups.find(group);
    if (found == groups.end()) {
      if (groups.size() == mostItems)
        return;
      found = groups.try_emplace(std::string(group)).first;
    }
    found->second.take(key, value, locales);
  });
  const auto found = groups.find(mainGroup);
  if (found == groups.end())
    return std::nullopt;
  const Group& main = found->second;
  DesktopEntry entry{.type = main.text("Type"),
                     .name = main.text("Name"),
                     .genericName = main.text("GenericName"),
                     .comment = main.text("Comment"),
                     .icon = main.text("Icon"),
                     .exec = main.text("Exec"),
                     .tryExec = main.text("TryExec"),
                     .workingFolder = main.text("Path"),
                     .startupClass = main.text("StartupWMClass"),
                     .keywords = main.list("Keywords"),
                     .categories = main.list("Categories"),
                     .onlyShowIn = main.list("OnlyShowIn"),
                     .notShowIn = main.list("NotShowIn"),
                     .actions = {},
                     .isHidden = main.flag("Hidden"),
                     .isNoDisplay = main.flag("NoDisplay"),
                     .runsInTerminal = main.flag("Terminal"),
                     .isActivatedOnBus = main.flag("DBusActivatable"),
                     .notifiesStartup = std::nullopt};
  if (main.has("StartupNotify"))
    entry.notifiesStartup = main.flag("StartupNotify");
  for (const auto& id : main.list("Actions")) {
    const auto group = groups.find(std::string(actionGroup) + id);
    if (group == groups.end() || entry.action(id) != nullptr)
      continue;
    const Group& action = group->second;
    if (auto name = action.text("Name"); !name.empty())
      entry.actions.push_back({id, std::move(name), action.text("Icon"), action.text("Exec")});
  }
  return entry;
}

bool DesktopEntry::isApplication() const {
  return type == "Application" && !isHidden && !name.empty() && (isActivatedOnBus || !exec.empty());
}

bool DesktopEntry::isShownIn(std::string_view desktops) const {
  return isApplication() && !isNoDisplay && (onlyShowIn.empty() || meets(onlyShowIn, desktops)) &&
         !meets(notShowIn, desktops);
}

bool DesktopEntry::hasCategory(std::string_view category) const {
  return std::ranges::find(categories, category) != categories.end();
}

bool DesktopEntry::isMadeFor(std::string_view desktops) const {
  return meets(onlyShowIn, desktops) || meets(categories, desktops);
}

const DesktopEntry::Action* DesktopEntry::action(std::string_view id) const {
  const auto found = std::ranges::find(actions, id, &Action::id);
  return found == actions.end() ? nullptr : &*found;
}

} // namespace tavrin
