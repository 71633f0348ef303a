#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutPanelView.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <memory>

namespace tavrin {
namespace {

using ResultState = ShortcutResult::State;

struct Look {
  const char* name;
  ShortcutSettings settings;
  ShortcutTileState state;
};

ShortcutSettings settingsOf(const char* symbol, const char* colour) {
  ShortcutSettings settings;
  settings.title = "Back Up";
  settings.command = "rsync -a ~/Documents /media/backup";
  settings.symbolName = symbol;
  settings.colorHex = colour;
  return settings;
}

ShortcutResult resultOf(ResultState state, int status = 0, double duration = 3.4) {
  ShortcutResult result;
  result.state = state;
  result.status = status;
  result.duration = duration;
  return result;
}

std::vector<Look> looks() {
  const auto violet = settingsOf("bolt.fill", "#5E5CE6");
  const QString line = "sent 48,211 bytes  received 35 bytes";
  return {{"ready", violet, {"Back Up", true, resultOf(ResultState::none), {}, false, {}}},
          {"running", violet, {"Back Up", true, resultOf(ResultState::running), 0.35, false, line}},
          {"done", violet, {"Back Up", true, resultOf(ResultState::done), {}, true, {}}},
          {"failed", violet, {"Back Up", true, resultOf(ResultState::failed, 23), {}, false, line}},
          {"timed out",
           settingsOf("globe", "#0A84FF"),
           {"Mirror", true, resultOf(ResultState::timedOut), {}, false, {}}},
          {"yellow",
           settingsOf("sun.max.fill", "#FFD60A"),
           {"Lamp", true, resultOf(ResultState::none), {}, false, {}}},
          {"white",
           settingsOf("house", "#FFFFFF"),
           {"Unknown symbol", true, resultOf(ResultState::stopped), {}, false, {}}},
          {"black",
           settingsOf("moon.fill", "#000000"),
           {"A shortcut with a long name", true, resultOf(ResultState::running), 0.8, false, line}},
          {"nothing", violet, {"Shortcut", false, resultOf(ResultState::none), {}, false, {}}}};
}

/// A run that stands still where the gallery wants it.
GalleryPanel panelOf(const char* name, const ShortcutSettings& settings, ResultState state,
                     const std::string& output) {
  return {
      name, shortcutColour(settings), [=](const PanelAppearance& look) {
        static std::vector<std::unique_ptr<test::FakePlatform>> platforms;
        static std::vector<std::unique_ptr<ShortcutRunner>> runners;
        platforms.push_back(std::make_unique<test::FakePlatform>());
        auto& platform = *platforms.back();
        auto& outcome = platform.fakeProcesses.result;
        if (state == ResultState::failed)
          outcome.status = 23;
        if (state == ResultState::timedOut)
          outcome.outcome = ProcessResult::Outcome::timedOut;
        runners.push_back(std::make_unique<ShortcutRunner>(
            ShortcutRunner::Services{platform.processes(), platform.applications(),
                                     platform.fileManager(), platform.clock(), platform.runLoop()},
            DockWidget(UUID::random(), "Shortcut", 1, settings, 1)));
        auto& runner = *runners.back();
        if (state != ResultState::none) {
          runner.run();
          platform.fakeClock.advance(12.3);
          if (!platform.fakeProcesses.requests.empty())
            platform.fakeProcesses.requests.back().onOutput(output);
          if (state != ResultState::running)
            platform.loop.runPosts();
        }
        return new ShortcutPanelView(look, runner,
                                     {.copy = [](const std::string&) {}, .edit = [] {}});
      }};
}

} // namespace

GallerySheet shortcutGallery() {
  GallerySheet sheet;
  for (const Look& look : looks())
    for (const int span : {1, 2, 3})
      sheet.push_back({look.name, span, [look](const TileSize& size) {
                         return size.isWide() ? shortcutWideTile(
                                                    look.state, look.settings, size, [] {}, [] {})
                                              : shortcutTileIcon(look.state, look.settings, size);
                       }});
  return sheet;
}

GalleryPanels shortcutPanels() {
  const auto violet = settingsOf("bolt.fill", "#5E5CE6");
  auto long_ = settingsOf("globe", "#FFD60A");
  long_.title = "A shortcut whose name is longer than its panel is wide";
  long_.command = "for file in *; do echo \"$file\"; done | sort | uniq -c | sort -rn | head -n 20";
  auto none = violet;
  none.command.reset();
  std::string lines;
  for (int i = 0; i < 30; ++i)
    lines += "Documents/letters/2026/page-" + std::to_string(i) + ".odt\n";
  return {panelOf("ready", violet, ResultState::none, {}),
          panelOf("running", violet, ResultState::running, "sending incremental file list\n"),
          panelOf("done", violet, ResultState::done, lines),
          panelOf("failed", long_, ResultState::failed, "rsync: connection unexpectedly closed\n"),
          panelOf("timed out", violet, ResultState::timedOut, {}),
          panelOf("nothing", none, ResultState::none, {})};
}

const GalleryEntry shortcutEntries[] = {{"shortcut", shortcutGallery},
                                        {"shortcut-panels", shortcutPanels}};

} // namespace tavrin
