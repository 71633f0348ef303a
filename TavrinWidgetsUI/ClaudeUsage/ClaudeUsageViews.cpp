#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Views/WideTileWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor ground{0x26, 0x17, 0x11};
constexpr QColor groundEnd{0x14, 0x0D, 0x0B};
constexpr QColor track{0x4A, 0x35, 0x2C};
constexpr const char* neverRun = marked("Claude Code has not run here");
constexpr const char* waiting = marked("Waiting for Claude Code");
constexpr const char* notConnected =
    marked("Claude Code can hand over how much of your plan is left. Turn that on in this widget's "
           "settings.");

AnyView mark() {
  return symbol("sparkle").colour(claudeUsageTint);
}

/// What either form says about the same reading.
struct Shown {
  QString figure = {};
  QString widest = {};
  /// For the square tile; where there is no figure, words for a wide tile without room.
  QString caption = {};
  /// For one of two places, the least room first; and for wider ones. The last stands alone where
  /// there is no figure.
  QString leastCaption = {};
  QString wideCaption = {};
  QString longCaption = {};
  /// A part of a limit or budget.
  std::optional<double> fraction = {};
  TileState state = TileState::live;
};

Shown shownLimit(const ClaudeUsageReading& reading, Date now) {
  const bool isWeek = reading.settings.shows == ClaudeUsageShows::weeklyLimit;
  const auto& limits = reading.limits;
  if (!reading.isConnected) // to wait would bring nothing
    return {.caption = worded("Limits off"),
            .longCaption = worded("Not connected"),
            .state = TileState::cannot};
  const auto window = !limits ? std::nullopt : isWeek ? limits->sevenDay : limits->fiveHour;
  if (!window)
    return {
        .caption = worded("Waiting"), .longCaption = worded(waiting), .state = TileState::waiting};
  Shown shown;
  shown.caption = isWeek ? worded("7 days") : worded("5 hours");
  shown.leastCaption = shown.caption;
  shown.longCaption = isWeek ? worded("7-day limit") : worded("5-hour limit");
  shown.wideCaption = shown.longCaption;
  shown.widest = "88%";
  shown.fraction = usedFraction(*window, now);
  shown.figure = percentText(*shown.fraction);
  if (const auto left = ClaudeUsageLimitsFormat::untilReset(window->resetsAt, now)) {
    shown.leastCaption = QString::fromStdString(*left);
    shown.wideCaption = worded("{time} left", {{"time", shown.leastCaption}});
    shown.longCaption += " · " + shown.wideCaption;
  }
  return shown;
}

Shown shownTokens(const ClaudeUsageReading& reading) {
  Shown shown;
  shown.figure = QString::fromStdString(ClaudeUsage::shortTokens(reading.totals.tokens));
  shown.widest = "88.8k";
  constexpr std::array<const char*, 3> captions = {marked("5 hours"), marked("Today"),
                                                   marked("7 days")};
  shown.caption = worded(captions[static_cast<std::size_t>(reading.settings.scope)]);
  shown.wideCaption = shown.caption;
  shown.longCaption = worded("{period} · tokens", {{"period", scopeTitle(reading.settings.scope)}});
  if (const auto budget = reading.settings.budget; budget && *budget > 0) {
    shown.fraction = static_cast<double>(reading.totals.tokens) / static_cast<double>(*budget);
    // The ring tells the part; two tiles have no room for more.
    shown.wideCaption = worded("of {budget}", {{"budget", ClaudeUsage::shortTokens(*budget)}});
    shown.longCaption =
        worded("{period} · {percent} {budget}", {{"period", scopeTitle(reading.settings.scope)},
                                                 {"percent", percentText(*shown.fraction)},
                                                 {"budget", shown.wideCaption}});
  }
  constexpr qsizetype mostLetters = 7;
  shown.leastCaption = shown.wideCaption.size() > mostLetters ? shown.caption : shown.wideCaption;
  return shown;
}

Shown shown(const ClaudeUsageReading& reading, Date now) {
  if (!reading.hasRead)
    return {.caption = worded("Reading logs"),
            .longCaption = worded("Reading Claude Code's logs"),
            .state = TileState::waiting};
  if (!reading.isAvailable)
    return {.caption = worded("Has not run"),
            .longCaption = worded(neverRun),
            .state = TileState::cannot};
  return reading.settings.shows == ClaudeUsageShows::tokens ? shownTokens(reading)
                                                            : shownLimit(reading, now);
}

} // namespace

double usedFraction(const ClaudeUsageWindow& window, Date now) {
  return std::clamp(window.usedAt(now) / 100, 0.0, 9.99);
}

QColor claudeUsageLevelTint(double fraction) {
  return fraction >= 0.95 ? palette::red : fraction >= 0.8 ? palette::warning : claudeUsageTint;
}

QString scopeTitle(ClaudeUsageScope scope) {
  const auto words = title(scope);
  return utf8(words);
}

QString messagesText(std::int64_t messages) {
  return wordedPlural("{count} message", "{count} messages", messages);
}

QString missingLimitsText(bool isConnected) {
  return worded(isConnected ? waiting : notConnected);
}

AnyView claudeUsageTileIcon(const ClaudeUsageReading& reading, Date now, const TileSize& size) {
  const Shown shown = tavrin::shown(reading, now);
  TileContent content;
  content.ground = ground;
  content.groundEnd = groundEnd;
  content.mark = mark();
  content.state = shown.state;
  content.figure = shown.figure;
  content.widestFigure = shown.widest;
  if (shown.figure.isEmpty())
    content.sentence = shown.longCaption;
  else
    content.caption = shown.caption;
  content.label = worded("Claude usage, {shown}", {{"shown", shown.longCaption}});
  content.value = shown.figure;
  if (shown.fraction)
    content.border =
        TileBorder{std::min(*shown.fraction, 1.0), claudeUsageLevelTint(*shown.fraction), track};
  return tile(content, size);
}

AnyView claudeUsageWideTile(const ClaudeUsageReading& reading, Date now, const TileSize& size) {
  const Shown shown = tavrin::shown(reading, now);
  WideTileContent content;
  content.ground = ground;
  content.groundEnd = groundEnd;
  content.tint = claudeUsageTint;
  content.mark = mark();
  content.state = shown.state;
  if (shown.fraction)
    content.mark = ring(std::min(*shown.fraction, 1.0))
                       .tint(claudeUsageLevelTint(*shown.fraction))
                       .track(track)
                       .overlay(mark().frame(size.body() * 0.24, size.body() * 0.24));
  content.caption = size.span > 2              ? shown.longCaption
                    : hasRoomForSentence(size) ? shown.wideCaption
                                               : shown.leastCaption;
  content.figure = shown.figure;
  content.widestFigure = shown.widest;
  if (shown.figure.isEmpty())
    content.middle = wideTileWords(shown.longCaption, shown.caption, ground, size);
  content.label = worded("Claude usage");
  content.value = shown.figure + " " + shown.longCaption;
  return wideTile(content, size);
}

} // namespace tavrin
