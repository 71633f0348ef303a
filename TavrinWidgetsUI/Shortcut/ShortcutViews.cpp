#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

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
    return QStringLiteral("Nothing to run yet");
  if (state.result.state == State::running)
    return state.line.isEmpty() ? QStringLiteral("Running") : state.line;
  if (state.result.state == State::done && !state.line.isEmpty())
    return state.line;
  return shortcutResultText(state.result);
}

/// The same where there is little room for it.
QString shortWord(const ShortcutTileState& state) {
  if (!state.hasAction)
    return QStringLiteral("No action");
  switch (state.result.state) {
  case State::failed:
    if (state.result.trouble.empty())
      return (state.result.isSignal ? QStringLiteral("Signal %1") : QStringLiteral("Status %1"))
          .arg(state.result.status);
    break;
  case State::done:
    return state.line.isEmpty() ? QStringLiteral("Done") : state.line;
  case State::timedOut:
    return QStringLiteral("Timed out");
  case State::stopped:
    return QStringLiteral("Stopped");
  default:
    break;
  }
  return word(state);
}

QString secondsText(double seconds) {
  const QLocale locale;
  if (seconds < 60)
    return QStringLiteral("%1 s").arg(locale.toString(seconds, 'f', seconds < 9.95 ? 1 : 0));
  const auto whole = std::llround(seconds);
  return QStringLiteral("%1 min %2 s").arg(locale.toString(whole / 60)).arg(whole % 60);
}

struct Grounds {
  QColor top;
  QColor end;
  QColor ink;
  QColor track;
};

Grounds groundsOf(const ShortcutSettings& settings) {
  const QColor colour = shortcutColour(settings);
  Grounds grounds{colour, colour.darker(darker), {}, {}};
  const QColor middle = mix(grounds.top, grounds.end, 0.5);
  grounds.ink = palette::figure(middle);
  grounds.track = mix(middle, palette::black, 0.35);
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
             ? picture.button(action, isRunning ? QStringLiteral("Stop")
                                                : QStringLiteral("Run %1").arg(state.title))
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
    return QStringLiteral("Ready");
  case State::running:
    return QStringLiteral("Running");
  case State::done:
    return QStringLiteral("Done in %1").arg(secondsText(result.duration));
  case State::failed:
    if (!result.trouble.empty())
      return QStringLiteral("Could not start");
    return (result.isSignal ? QStringLiteral("Ended by signal %1")
                            : QStringLiteral("Ended with status %1"))
        .arg(result.status);
  case State::timedOut:
    return QStringLiteral("Stopped at its time limit");
  case State::stopped:
    return QStringLiteral("Stopped after %1").arg(secondsText(result.duration));
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
  const QColor middle = mix(grounds.top, grounds.end, 0.5);
  content.middle = vstack({text(state.title)
                               .size(size.words(0.235))
                               .weight(FontWeight::semibold)
                               .colour(grounds.ink),
                           text(size.span < 4 ? shortWord(state) : word(state))
                               .size(size.words(0.185))
                               .colour(palette::caption(middle))})
                       .align(Alignment::leading)
                       .spacing(size.body() * 0.04);
  if (isNarrow)
    content.middle =
        hstack({runningSymbol(state, settings, grounds, size.body() * 0.58,
                              isRunning ? ViewAction{"stop", stop} : ViewAction{"run", run}),
                content.middle})
            .spacing(size.padding() * 0.8);
  else if (state.hasAction)
    content.actions = {isRunning ? TileAction{{"stop", stop}, "stop.fill", "Stop", true}
                                 : TileAction{{"run", run},
                                              "play.fill",
                                              QStringLiteral("Run %1").arg(state.title),
                                              true}};
  content.label = state.title;
  content.value = word(state);
  return wideTile(content, size);
}

} // namespace tavrin
