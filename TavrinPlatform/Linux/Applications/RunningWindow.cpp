#include "TavrinPlatform/Linux/Applications/RunningWindow.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Linux/Base/X11.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::uint32_t mostWindows = 1024;
constexpr std::string_view entryEnding = ".desktop";

std::string lastPart(const std::string& text, char separator) {
  const auto at = text.rfind(separator);
  return at == std::string::npos ? text : text.substr(at + 1);
}

/// What the windows of an application may be called.
std::vector<std::string> namesOf(const FoundEntry& found) {
  if (!found.entry.startupClass.empty())
    return {asciiLowered(found.entry.startupClass)};
  if (found.entry.runsInTerminal)
    return {};
  std::string id = found.id;
  if (id.ends_with(entryEnding))
    id.resize(id.size() - entryEnding.size());
  std::vector<std::string> names{asciiLowered(id), asciiLowered(lastPart(id, '.'))};
  if (const auto words = execWords(found.entry.exec); !words.empty())
    names.push_back(asciiLowered(lastPart(words.front(), '/')));
  return names;
}

} // namespace

bool isWindowOf(const FoundEntry& found, const std::string& windowClass) {
  const auto names = namesOf(found);
  for (std::size_t begin = 0; begin < windowClass.size();) {
    const auto end = std::min(windowClass.find('\0', begin), windowClass.size());
    const std::string part = asciiLowered(windowClass.substr(begin, end - begin));
    if (!part.empty() && std::ranges::find(names, part) != names.end())
      return true;
    begin = end + 1;
  }
  return false;
}

bool raiseWindowOf(const FoundEntry& found) {
  if (x11::connection() == nullptr || !x11::hasWindowManager())
    return false;
  auto windows = x11::numbers(x11::root(), "_NET_CLIENT_LIST_STACKING", mostWindows);
  if (windows.empty())
    windows = x11::numbers(x11::root(), "_NET_CLIENT_LIST", mostWindows);
  // The uppermost stands last.
  std::ranges::reverse(windows);
  const auto mine = std::ranges::find_if(
      windows, [&](const auto window) { return isWindowOf(found, x11::text(window, "WM_CLASS")); });
  if (mine == windows.end())
    return false;
  x11::requestActive(*mine);
  return true;
}

} // namespace tavrin
