#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

using State = ShortcutResult::State;

constexpr const char* plainSymbol = "bolt.fill";
constexpr int darker = 145;

bool isTrouble(const ShortcutTileState& state) {
  return state.result.state == State::failed || state.result.state == State::timedOut;
}

TileState tileState(const ShortcutTileState& state) {
  if (!state.hasAction)
    return TileState::waiting;
  return isTrouble(state) ? TileState::cannot : state.isFresh ? TileState::done : TileState::live;
}

QString word(const ShortcutTileState& state) {
  if (!state.hasAction)
    return worded("Nothing to run yet");
  if (state.result.state == State::running)
    return state.line.isEmpty() ? worded("Running") : state.line;
  if (state.result.state == State::done && !state.line.isEmpty())
    return state.line;
  return shortcutResultText(state.result);
}

/// The same where there is little room for it.
QString shortWord(const ShortcutTileState& state) {
  if (!state.hasAction)
    return worded("No action");
  switch (state.result.state) {
  case State::failed:
    if (state.result.trouble.empty())
      return state.result.isSignal ? worded("Signal {number}", {{"number", state.result.status}})
                                   : worded("Status {number}", {{"number", state.result.status}});
    break;
  case State::done:
    return state.line.isEmpty() ? worded("Done") : state.line;
  case State::timedOut:
    return worded("Timed out");
  case State::stopped:
    return worded("Stopped");
  default:
    break;
  }
  return word(state);
}

QString secondsText(double seconds) {
  const QLocale locale;
  if (seconds < 60)
    return worded("{seconds} s",
                  {{"seconds", locale.toString(seconds, 'f', seconds < 9.95 ? 1 : 0)}});
  const auto whole = std::llround(seconds);
  return worded("{minutes} min {seconds} s",
                {{"minutes", locale.toString(whole / 60)}, {"seconds", whole % 60}});
}

struct Grounds {
  QColor top;
  QColor end;
  QColor ink;
  QColor track;
};

Grounds groundsOf(const ShortcutSettings& settings) {
  const QColor colour = shortcutColour(settings);
  const auto legible = GradientGround{colour, colour.darker(darker)}.legible();
  Grounds grounds{legible.from, legible.to, {}, {}};
  grounds.ink = palette::figure(legible.harder());
  grounds.track = mix(mix(grounds.top, grounds.end, 0.5), palette::black, 0.35);
  return grounds;
}

/// The symbol on a disc that runs and stops: what two tiles have room for beside the words.
AnyView runningSymbol(const ShortcutTileState& state, const ShortcutSettings& settings,
                      const Grounds& grounds, double side, const ViewAction& action) {
  const bool isRunning = state.result.state == State::running;
  const QColor ground = mix(grounds.top, grounds.end, 0.5);
  const QColor disc = mix(ground, grounds.ink, 0.2);
  std::vector<AnyView> layers{circle().fill(disc),
                              symbol(isRunning ? "stop.fill" : shortcutSymbol(settings))
                                  .colour(palette::figure(disc))
                                  .size(side * (isRunning ? 0.44 : 0.6))};
  if (tileState(state) == TileState::cannot)
    layers.push_back(
        zstack({circle().fill(palette::ground),
                symbol("exclamationmark.triangle.fill").colour(palette::warning).size(side * 0.28)})
            .frame(side * 0.42, side * 0.42)
            .fill(Alignment::bottomTrailing));
  else if (tileState(state) == TileState::done)
    layers.push_back(zstack({circle().fill(palette::ground),
                             symbol("checkmark").colour(palette::white).size(side * 0.28)})
                         .frame(side * 0.42, side * 0.42)
                         .fill(Alignment::bottomTrailing));
  const AnyView picture = zstack(std::move(layers)).frame(side, side);
  return state.hasAction
             ? picture.button(action, isRunning ? worded("Stop")
                                                : worded("Run {name}", {{"name", state.title}}))
             : picture;
}

} // namespace

ShortcutTileState ShortcutTileState::of(const ShortcutRunner& runner) {
  ShortcutTileState state{runner.title(),    runner.hasAction(), runner.result(),
                          runner.progress(), runner.isFresh(),   {}};
  if (runner.settings().showsOutput)
    state.line = QString::fromStdString(runner.output().lastLine());
  return state;
}

QColor shortcutColour(const ShortcutSettings& settings) {
  return colourFromHex(settings.colorHex, colourFromHex("#5E5CE6", palette::purple));
}

std::string shortcutSymbol(const ShortcutSettings& settings) {
  return hasSymbol(settings.symbolName) ? settings.symbolName : plainSymbol;
}

QString shortcutResultText(const ShortcutResult& result) {
  switch (result.state) {
  case State::none:
    return worded("Ready");
  case State::running:
    return worded("Running");
  case State::done:
    return worded("Done in {time}", {{"time", secondsText(result.duration)}});
  case State::failed:
    if (!result.trouble.empty())
      return worded("Could not start");
    return result.isSignal ? worded("Ended by signal {number}", {{"number", result.status}})
                           : worded("Ended with status {number}", {{"number", result.status}});
  case State::timedOut:
    return worded("Stopped at its time limit");
  case State::stopped:
    return worded("Stopped after {time}", {{"time", secondsText(result.duration)}});
  }
  return {};
}

AnyView shortcutTileIcon(const ShortcutTileState& state, const ShortcutSettings& settings,
                         const TileSize& size) {
  const Grounds grounds = groundsOf(settings);
  TileContent content;
  content.ground = grounds.top;
  content.groundEnd = grounds.end;
  if (state.result.state == State::running)
    content.border = TileBorder{state.progress.value_or(0), grounds.ink, grounds.track};
  content.mark = symbol(shortcutSymbol(settings)).colour(grounds.ink);
  content.markRatio = 0.44;
  content.caption = state.title;
  content.state = tileState(state);
  content.label = state.title;
  content.value = word(state);
  return tile(content, size);
}

AnyView shortcutWideTile(const ShortcutTileState& state, const ShortcutSettings& settings,
                         const TileSize& size, const std::function<void()>& run,
                         const std::function<void()>& stop) {
  const Grounds grounds = groundsOf(settings);
  const bool isRunning = state.result.state == State::running;
  WideTileContent content;
  content.ground = grounds.top;
  content.groundEnd = grounds.end;
  content.tint = grounds.ink;
  if (isRunning)
    content.border = TileBorder{state.progress.value_or(0), grounds.ink, grounds.track};
  const bool isNarrow = size.span < 3;
  if (!isNarrow) {
    content.mark = symbol(shortcutSymbol(settings)).colour(grounds.ink).padding(size.body() * 0.06);
    content.state = tileState(state);
  }
  const QColor quiet = palette::caption(GradientGround{grounds.top, grounds.end}.harder());
  content.middle = vstack({text(state.title)
                               .size(size.words(0.235))
                               .weight(FontWeight::semibold)
                               .colour(grounds.ink),
                           text(size.span < 4 ? shortWord(state) : word(state))
                               .size(size.words(0.185))
                               .colour(quiet)})
                       .align(Alignment::leading)
                       .spacing(size.body() * 0.04);
  if (isNarrow)
    content.middle =
        hstack({runningSymbol(state, settings, grounds, size.body() * 0.58,
                              isRunning ? ViewAction{"stop", stop} : ViewAction{"run", run}),
                content.middle})
            .spacing(size.padding() * 0.8);
  else if (state.hasAction)
    content.actions = {isRunning ? TileAction{{"stop", stop}, "stop.fill", worded("Stop"), true}
                                 : TileAction{{"run", run},
                                              "play.fill",
                                              worded("Run {name}", {{"name", state.title}}),
                                              true}};
  content.label = state.title;
  content.value = word(state);
  return wideTile(content, size);
}

} // namespace tavrin
