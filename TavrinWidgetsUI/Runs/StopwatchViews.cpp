#include "TavrinWidgetsUI/Runs/StopwatchViews.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Runs/RunViews.h"

#include <QPainter>
#include <cmath>

namespace tavrin {
namespace {

constexpr double fullTurn = 360;
/// Within a smaller dial the time would have to be smaller than a figure may be.
constexpr double smallestDialWithTime = 56;

struct Hand {
  double progress;
  QColor colour;
  QColor hub;
  /// Leaves the middle of the dial free.
  bool isPointer;
  bool operator==(const Hand&) const = default;
};

void paintTicks(QPainter& painter, const QRectF& rect, const StopwatchTicks& ticks) {
  const double side = std::min(rect.width(), rect.height());
  const int perQuarter = std::max(ticks.count / 4, 1);
  const int perTwelfth = std::max(ticks.count / 12, 1);
  painter.translate(rect.center());
  for (int i = 0; i < ticks.count; ++i) {
    const bool isQuarter = i % perQuarter == 0;
    const bool isTwelfth = i % perTwelfth == 0;
    const double length = isQuarter ? 0.1 : isTwelfth ? 0.075 : 0.045;
    const double width = isQuarter ? 0.026 : isTwelfth ? 0.02 : 0.012;
    const QColor ink = withOpacity(ticks.ink, isQuarter ? 0.95 : isTwelfth ? 0.7 : 0.38);
    painter.setPen(QPen(ink, side * width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, -side * 0.48), QPointF(0, -side * (0.48 - length)));
    painter.rotate(fullTurn / ticks.count);
  }
}

void paintHand(QPainter& painter, const QRectF& rect, const Hand& hand) {
  const double side = std::min(rect.width(), rect.height());
  painter.translate(rect.center());
  painter.rotate(fullTurn * hand.progress);
  painter.setPen(
      QPen(hand.colour, side * (hand.isPointer ? 0.055 : 0.032), Qt::SolidLine, Qt::RoundCap));
  if (hand.isPointer) {
    painter.drawLine(QPointF(0, -side * 0.32), QPointF(0, -side * 0.47));
    return;
  }
  painter.drawLine(QPointF(0, side * 0.1), QPointF(0, -side * 0.4));
  painter.setPen(Qt::NoPen);
  painter.setBrush(hand.colour);
  painter.drawEllipse(QPointF(0, 0), side * 0.05, side * 0.05);
  painter.setBrush(hand.hub);
  painter.drawEllipse(QPointF(0, 0), side * 0.02, side * 0.02);
}

QString timeText(const StopwatchRun& run, Date now) {
  return QString::fromStdString(StopwatchRun::text(run.elapsed(now), false));
}

/// The minute as far as whole seconds have passed: what the tile's time says too.
double wholeSecondProgress(const StopwatchRun& run, Date now) {
  return std::floor(std::fmod(run.elapsed(now), 60)) / 60;
}

QString spokenState(const StopwatchRun& run) {
  return run.isRunning()    ? worded("Running")
         : run.hasStarted() ? worded("Paused")
                            : worded("Not started");
}

/// The time in the middle of a dial; hours above the minutes and seconds.
AnyView dialTime(const QString& time, double side, const QColor& ground) {
  if (time.isEmpty())
    return {};
  const double points = std::max(side * 0.2, minimumTypeSize);
  const Text figure = text(time)
                          .size(points)
                          .weight(FontWeight::semibold)
                          .colour(palette::figure(ground))
                          .align(TextAlignment::centre)
                          .widest(widestDigits(time))
                          .figure();
  const qsizetype afterHours = time.indexOf(u':') + 1;
  if (time.indexOf(u':', afterHours) < 0)
    return figure;
  Text rest = figure;
  rest.string = time.mid(afterHours);
  rest.widestForm = widestDigits(rest.string);
  Text hours =
      figure.size(std::max(points * 0.8, minimumTypeSize)).colour(palette::caption(ground));
  hours.string = worded("{hours} h", {{"hours", time.left(afterHours - 1)}});
  hours.widestForm = widestDigits(hours.string);
  return vstack({hours, rest}).spacing(side * 0.02);
}

StopwatchDial dial(const StopwatchRun& run, Date now, double side) {
  StopwatchDial dial;
  dial.progress = wholeSecondProgress(run, now);
  dial.isRunning = run.isRunning();
  // Sixty marks run together on a small dial.
  dial.ticks.count = side < 44 ? 12 : 60;
  return dial;
}

} // namespace

AnyView StopwatchTicks::view() const {
  return canvas(*this, paintTicks);
}

AnyView StopwatchDial::view(double side) const {
  const QColor hand = isRunning ? tint : mix(tint, ground, 0.35);
  return zstack({ticks.view().cached(), dialTime(time, side, ground),
                 canvas(Hand{progress, hand, ground, !time.isEmpty()}, paintHand)})
      .frame(side, side);
}

QString stopwatchToggleTitle(const StopwatchRun& run) {
  return run.isRunning() ? worded("Pause") : worded("Start");
}

AnyView stopwatchTileIcon(const StopwatchRun& run, Date now, const TileSize& size) {
  const double side = size.body() * 0.88;
  StopwatchDial face = dial(run, now, side);
  if (size.side >= smallestDialWithTime)
    face.time = timeText(run, now);
  return tile(palette::ground, face.view(side), size)
      .accessibility(worded("Stopwatch"), joinedFacts({timeText(run, now), spokenState(run)}));
}

AnyView stopwatchWideTile(const StopwatchRun& run, Date now, const TileSize& size,
                          const StopwatchActions& actions) {
  WideTileContent content;
  const QString time = timeText(run, now);
  const double side = size.body() - 2 * size.padding();
  if (size.span > 2)
    content.mark = dial(run, now, side).view(side);
  std::vector<QStringList> captions{{worded("Lap {number}", {{"number", run.laps.size() + 1}})}};
  if (run.laps.empty())
    captions.insert(captions.begin(), {worded("Stopwatch")});
  content.middle = wideRunText(captions, time, size);
  content.tint = stopwatchTint;
  content.label = worded("Stopwatch");
  content.value = joinedFacts({time, spokenState(run)});
  content.actions = {{{"stopwatch.toggle", actions.toggle},
                      run.isRunning() ? "pause.fill" : "play.fill",
                      stopwatchToggleTitle(run),
                      true}};
  if (run.isRunning())
    content.actions.push_back({{"stopwatch.lap", actions.lap}, "flag.fill", worded("Lap")});
  else
    content.actions.push_back(
        {{"stopwatch.reset", actions.reset}, "arrow.counterclockwise", worded("Reset")});
  return wideTile(content, size);
}

} // namespace tavrin
