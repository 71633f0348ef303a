#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutPanelView.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <memory>

namespace tavrin {
namespace {

using State = ShortcutResult::State;

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

ShortcutResult resultOf(State state, int status = 0, double duration = 3.4) {
  ShortcutResult result;
  result.state = state;
  result.status = status;
  result.duration = duration;
  return result;
}

std::vector<Look> looks() {
  const auto violet = settingsOf("bolt.fill", "#5E5CE6");
  const QString line = "sent 48,211 bytes  received 35 bytes";
  return {{"ready", violet, {"Back Up", true, resultOf(State::none), {}, false, {}}},
          {"running", violet, {"Back Up", true, resultOf(State::running), 0.35, false, line}},
          {"done", violet, {"Back Up", true, resultOf(State::done), {}, true, {}}},
          {"failed", violet, {"Back Up", true, resultOf(State::failed, 23), {}, false, line}},
          {"timed out",
           settingsOf("globe", "#0A84FF"),
           {"Mirror", true, resultOf(State::timedOut), {}, false, {}}},
          {"yellow",
           settingsOf("sun.max.fill", "#FFD60A"),
           {"Lamp", true, resultOf(State::none), {}, false, {}}},
          {"white",
           settingsOf("house", "#FFFFFF"),
           {"Unknown symbol", true, resultOf(State::stopped), {}, false, {}}},
          {"black",
           settingsOf("moon.fill", "#000000"),
           {"A shortcut with a long name", true, resultOf(State::running), 0.8, false, line}},
          {"nothing", violet, {"Shortcut", false, resultOf(State::none), {}, false, {}}}};
}

/// A run that stands still where the gallery wants it.
GalleryPanel panelOf(const char* name, const ShortcutSettings& settings, State state,
                     const std::string& output) {
  return {
      name, shortcutColour(settings), [=](const PanelAppearance& look) {
        static std::vector<std::unique_ptr<test::FakePlatform>> platforms;
        static std::vector<std::unique_ptr<ShortcutRunner>> runners;
        platforms.push_back(std::make_unique<test::FakePlatform>());
        auto& platform = *platforms.back();
        auto& outcome = platform.fakeProcesses.result;
        if (state == State::failed)
          outcome.status = 23;
        if (state == State::timedOut)
          outcome.outcome = ProcessResult::Outcome::timedOut;
        runners.push_back(std::make_unique<ShortcutRunner>(
            ShortcutRunner::Services{platform.processes(), platform.applications(),
                                     platform.fileManager(), platform.clock(), platform.runLoop()},
            DockWidget(UUID::random(), "Shortcut", 1, settings, 1)));
        auto& runner = *runners.back();
        if (state != State::none) {
          runner.run();
          platform.fakeClock.advance(12.3);
          if (!platform.fakeProcesses.requests.empty())
            platform.fakeProcesses.requests.back().onOutput(output);
          if (state != State::running)
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
  return {panelOf("ready", violet, State::none, {}),
          panelOf("running", violet, State::running, "sending incremental file list\n"),
          panelOf("done", violet, State::done, lines),
          panelOf("failed", long_, State::failed, "rsync: connection unexpectedly closed\n"),
          panelOf("timed out", violet, State::timedOut, {}),
          panelOf("nothing", none, State::none, {})};
}

const GalleryEntry listed[] = {{"shortcut", shortcutGallery}, {"shortcut-panels", shortcutPanels}};

} // namespace tavrin
