#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"

#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace tavrin {

namespace {

struct Row {
  std::string_view name;
  bool (*holds)(const DesktopFacts&);
  std::array<std::string_view, 2> surfaces;
  StripArrangement arrangement;
  bool isMakeshift;
  /// In English; "{manager}" is the window manager's name.
  const char* reason;
};

bool letsDocksStand(const DesktopFacts& facts) {
  return facts.windowManager && facts.windowManager->knowsDocks &&
         facts.windowManager->keepsStruts && facts.windowManager->tellsWorkArea;
}

bool makesBarsOfDocks(const DesktopFacts& facts) {
  return facts.windowManager && facts.windowManager->knowsDocks &&
         facts.windowManager->keepsStruts && !facts.windowManager->tellsWorkArea;
}

/// A desktop's own X server, not one that is a client of a compositor.
bool isPlainX11(const DesktopFacts& facts) {
  return facts.hasX11 && !facts.hasWayland;
}

bool hasLayerShell(const DesktopFacts& facts) {
  return std::ranges::find(facts.waylandGlobals, layerShellGlobal) != facts.waylandGlobals.end();
}

// The first that holds is taken.
constexpr std::array rows{
    Row{"docks",
        [](const DesktopFacts& facts) { return isPlainX11(facts) && letsDocksStand(facts); },
        {"strip"},
        StripArrangement::docks,
        false,
        marked("The window manager {manager} lets dock windows stand along an edge: the tiles are "
               "a strip there.")},
    Row{"no manager",
        [](const DesktopFacts& facts) { return isPlainX11(facts) && !facts.windowManager; },
        {"strip"},
        StripArrangement::docks,
        false,
        marked("Nobody manages windows here: the tiles are a strip along an edge, and no other "
               "window is kept off it.")},
    Row{"bar",
        [](const DesktopFacts& facts) { return isPlainX11(facts) && makesBarsOfDocks(facts); },
        {"strip"},
        StripArrangement::bar,
        false,
        marked("The window manager {manager} would make bars of dock windows: the tiles are a "
               "strip that it does not manage, on one such bar.")},
    Row{"unmanaged",
        isPlainX11,
        {"strip"},
        StripArrangement::unmanaged,
        false,
        marked("The window manager {manager} knows no dock windows: the tiles are a strip that it "
               "does not manage, and no other window is kept off it.")},
    Row{"layer shell",
        hasLayerShell,
        {"strip"},
        StripArrangement::layers,
        false,
        marked("The compositor lets surfaces choose their place: the tiles are a strip along an "
               "edge.")},
    Row{"docks through XWayland",
        [](const DesktopFacts& facts) { return facts.hasX11 && letsDocksStand(facts); },
        {"strip"},
        StripArrangement::docks,
        false,
        marked("The compositor {manager} lets dock windows of X programs stand along an edge: the "
               "tiles are a strip there.")},
    Row{"tray",
        [](const DesktopFacts& facts) { return facts.hasTrayHost; },
        {"tray"},
        StripArrangement::docks,
        true,
        marked("This desktop has no place for a strip of tiles: they are icons in its tray.")},
    // A panel may start after its slots; until then the picture is all there is to see.
    Row{"tray to come",
        [](const DesktopFacts& facts) { return facts.hasWayland && facts.hasBus; },
        {"tray", "picture"},
        StripArrangement::docks,
        true,
        marked("This desktop has no place for a strip of tiles, and nobody shows tray icons yet: "
               "the tiles are picture files, and icons once there is a tray.")},
    Row{"picture",
        [](const DesktopFacts&) { return true; },
        {"picture"},
        StripArrangement::docks,
        true,
        marked("There is no desktop that could show tiles: they are picture files.")},
};

std::vector<std::string> namesIn(std::string_view wish) {
  std::vector<std::string> names(1);
  for (const char letter : wish) {
    if (letter == ',')
      names.emplace_back();
    else if (std::isspace(static_cast<unsigned char>(letter)) == 0)
      names.back() += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  std::erase(names, "");
  return names;
}

std::string reasonOf(const Row& row, const DesktopFacts& facts) {
  const std::string name = facts.windowManager ? facts.windowManager->name : "";
  const auto called =
      name.empty() ? translated("of this session") : translated("\"{name}\"", {{"name", name}});
  return translated(row.reason, {{"manager", called}});
}

StripArrangement arrangementOn(const DesktopFacts& facts) {
  const auto row = std::ranges::find_if(
      rows, [&](const Row& r) { return r.surfaces.front() == "strip" && r.holds(facts); });
  // Where no strip was to be, a wished one is at least laid over nothing.
  return row == rows.end() ? StripArrangement::unmanaged : row->arrangement;
}

} // namespace

SurfaceChoice chooseSurface(const DesktopFacts& facts, std::string_view wish) {
  if (auto names = namesIn(wish); !names.empty()) {
    std::string list;
    for (const auto& name : names)
      list += (list.empty() ? "" : ", ") + name;
    return {"wish", std::move(names), arrangementOn(facts),
            translated("TAVRIN_SURFACE says what shows the tiles: {list}.", {{"list", list}}),
            false};
  }
  const auto& row = *std::ranges::find_if(rows, [&](const Row& r) { return r.holds(facts); });
  SurfaceChoice choice{row.name, {}, row.arrangement, reasonOf(row, facts), row.isMakeshift};
  for (const auto& name : row.surfaces)
    if (!name.empty())
      choice.surfaces.emplace_back(name);
  return choice;
}

} // namespace tavrin
