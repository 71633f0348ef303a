#include "TavrinWidgetsUI/GitHub/GitHubViews.h"

#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/WideTileWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

using Kind = GitHubSource::Trouble::Kind;

constexpr QColor ground{0x0D, 0x11, 0x17};
constexpr QColor groundEnd{0x16, 0x1B, 0x22};
constexpr QColor emptySquare{0x26, 0x2D, 0x37};
constexpr QColor fullSquare{0x39, 0xD3, 0x53};
constexpr double gapRatio = 0.2;
constexpr int tileWeeks = 7;
/// Below this side of the body, captions are single words.
constexpr double shortestForWords = 66;

void drawGrid(QPainter& painter, const QRectF& rect, const ContributionGrid& grid) {
  if (grid.columns.empty())
    return;
  const auto count = static_cast<double>(grid.columns.size());
  const double pitch = std::min(rect.width() / (count - gapRatio / (1 + gapRatio)),
                                rect.height() / (7 - gapRatio / (1 + gapRatio)));
  const double side = pitch / (1 + gapRatio);
  const QPointF corner(rect.x() + (rect.width() - (count * pitch - (pitch - side))) / 2,
                       rect.y() + (rect.height() - (7 * pitch - (pitch - side))) / 2);
  painter.setPen(Qt::NoPen);
  for (std::size_t column = 0; column < grid.columns.size(); ++column)
    for (std::size_t row = 0; row < 7; ++row) {
      const int level = grid.columns[column][row];
      if (level < 0)
        continue;
      painter.setBrush(level == 0 ? grid.empty : mix(grid.empty, fullSquare, 0.1 + 0.225 * level));
      painter.drawRoundedRect(QRectF(corner.x() + static_cast<double>(column) * pitch,
                                     corner.y() + static_cast<double>(row) * pitch, side, side),
                              side * 0.22, side * 0.22);
    }
}

bool showsContributions(const GitHubReading& reading) {
  return reading.settings.shows == GitHubShows::contributions && reading.contributions;
}

QString listCaption(const GitHubReading& reading) {
  if (const auto failing = GitHubBoard::failing(reading.items); failing > 0)
    return failingText(failing).trimmed();
  return reading.settings.shows == GitHubShows::waitingOnYou ? worded("Waiting") : worded("Open");
}

/// What takes the place of items and contributions; empty where they are there.
QString stateText(const GitHubReading& reading) {
  if (reading.hasRead)
    return reading.settings.shows != GitHubShows::contributions && reading.items.empty()
               ? worded(nothingText)
               : QString();
  return reading.trouble ? shortText(*reading.trouble) : worded("Asking GitHub");
}

/// The same for a wide tile without room.
QString leastStateText(const GitHubReading& reading) {
  if (reading.hasRead)
    return worded("Nothing waiting");
  if (!reading.trouble)
    return worded("Asking GitHub");
  switch (reading.trouble->kind) {
  case Kind::toolMissing:
    return worded("gh not installed");
  case Kind::signedOut:
    return worded("Signed out");
  case Kind::failed:
    return worded("No answer");
  }
  return {};
}

TileState state(const GitHubReading& reading) {
  if (!reading.hasRead)
    return reading.trouble ? TileState::cannot : TileState::waiting;
  return stateText(reading).isEmpty() ? TileState::live : TileState::done;
}

AnyView mark(const GitHubReading& reading) {
  const auto worst = GitHubBoard::worstChecks(reading.items);
  return symbol("arrow.triangle.pull")
      .colour(worst == GitHubChecks::none ? gitHubTint : checksColour(worst));
}

/// Badge, title, age: one line of a wide tile's list.
AnyView itemLine(const GitHubItem& item, Date now, const TileSize& size, double points,
                 const std::function<void(const std::string&)>& open) {
  const double badge = points * 0.62;
  const AnyView line =
      hstack({(item.isIssue ? circle().stroke(checksColour(item.checks), badge * 0.24)
                            : circle().fill(checksColour(item.checks)))
                  .frame(badge, badge),
              text(QString::fromStdString(item.title))
                  .size(points)
                  .weight(FontWeight::medium)
                  .colour(palette::figure(ground))
                  .fillWidth(),
              text(agoText(item.updatedAt, now)).size(points).colour(size.quietInk(ground))})
          .spacing(points * 0.5);
  const QString name = joinedFacts({QString::fromStdString(item.title), itemText(item)});
  return open ? line.button({"open " + item.url, [open, url = item.url] { open(url); }}, name)
              : line.accessibility(name);
}

AnyView itemLines(const GitHubReading& reading, Date now, const TileSize& size,
                  const std::function<void(const std::string&)>& open) {
  const double points = size.words(0.155);
  const double pitch = points * 1.62;
  const auto fitting =
      std::max<std::size_t>(1, static_cast<std::size_t>((size.body() * 0.86) / pitch));
  std::vector<AnyView> lines;
  if (const auto failing = GitHubBoard::failing(reading.items); failing > 0)
    lines.push_back(text(failingText(failing).trimmed())
                        .size(points)
                        .weight(FontWeight::semibold)
                        .colour(withContrast(checksColour(GitHubChecks::failing), ground))
                        .height(pitch, Alignment::leading)
                        .fillWidth());
  for (const auto& item : reading.items)
    if (lines.size() < fitting)
      lines.push_back(itemLine(item, now, size, points, open).height(pitch, Alignment::leading));
  return vstack(std::move(lines));
}

AnyView contributionsWideTile(const GitHubReading& reading, const TileSize& size) {
  const auto& contributions = *reading.contributions;
  const double inset = size.padding();
  const double height = size.body() - 2 * inset;
  const bool isShort = size.body() < shortestForWords;
  const double wordsWidth = size.body() * (isShort ? 0.75 : 0.95);
  const double room = size.bodyWidth() - 3.2 * inset - wordsWidth;
  const int weeks = std::max(1, static_cast<int>(room / (height / 7)));
  const AnyView figures =
      vstack({text(QString::fromStdString(countText(contributions.streak())))
                  .size(size.figure())
                  .weight(FontWeight::semibold)
                  .colour(palette::figure(ground))
                  .figure(minimumTypeSize),
              text(isShort ? worded("streak")
                           : wordedPlural("day in a row", "days in a row", contributions.streak()))
                  .size(size.words(0.14))
                  .colour(palette::caption(ground))})
          .align(Alignment::leading)
          .frame(wordsWidth, height, Alignment::leading);
  return tile(ground,
              hstack({figures, ContributionGrid::of(contributions, weeks, emptySquare, ground)
                                   .view()
                                   .frame(room, height)})
                  .spacing(inset * 0.6)
                  .padding(Insets{inset * 1.3, inset, inset * 1.3, inset}),
              size)
      .accessibility(worded("GitHub contributions"),
                     worded("{count} in a year", {{"count", countText(contributions.total)}}));
}

} // namespace

QString shortText(const GitHubSource::Trouble& trouble) {
  switch (trouble.kind) {
  case Kind::toolMissing:
    return worded("gh not installed");
  case Kind::signedOut:
    return worded("gh is signed out");
  case Kind::failed:
    return worded("Could not reach GitHub");
  }
  return {};
}

QString failingText(std::int64_t failing) {
  return wordedPlural("{count} failing", "{count} failing", failing) + QLatin1Char(' ');
}

QString itemText(const GitHubItem& item) {
  QString kind = item.isDraft   ? worded("Draft")
                 : item.isIssue ? worded("Issue")
                                : worded("Pull request");
  if (item.checks != GitHubChecks::none)
    kind = item.isDraft ? joinedFacts({kind, utf8(title(item.checks)).toLower()})
                        : utf8(title(item.checks));
  return joinedPieces({kind, QStringLiteral("%1 #%2")
                                 .arg(QString::fromStdString(item.repository))
                                 .arg(static_cast<qlonglong>(item.number))});
}

QString agoText(Date date, Date now) {
  const auto minutes = static_cast<qlonglong>(std::clamp(now.since(date) / 60, 0.0, 1e9));
  if (minutes < 1)
    return worded("now");
  if (minutes < 60)
    return worded("{minutes}m", {{"minutes", minutes}});
  if (minutes < 24 * 60)
    return worded("{hours}h", {{"hours", minutes / 60}});
  return worded("{days}d", {{"days", minutes / (24 * 60)}});
}

QColor checksColour(GitHubChecks checks) {
  return colourFromHex(colorHex(checks), palette::white);
}

ContributionGrid ContributionGrid::of(const GitHubContributions& contributions, int weeks,
                                      const QColor& empty, const QColor& ground) {
  ContributionGrid grid{{}, empty, ground};
  for (const auto& column : contributions.columns(weeks)) {
    auto& levels = grid.columns.emplace_back();
    std::transform(column.begin(), column.end(), levels.begin(),
                   [&](const auto& day) { return day ? contributions.level(day->count) : -1; });
  }
  return grid;
}

AnyView ContributionGrid::view() const {
  return canvas(*this, drawGrid);
}

AnyView gitHubTileIcon(const GitHubReading& reading, const TileSize& size) {
  if (showsContributions(reading))
    return tile(ground,
                ContributionGrid::of(*reading.contributions, tileWeeks, emptySquare, ground)
                    .view()
                    .padding(size.body() * 0.15)
                    .cached(),
                size)
        .accessibility(
            worded("GitHub contributions"),
            worded("{count} in a year", {{"count", countText(reading.contributions->total)}}));
  TileContent content;
  content.ground = ground;
  content.groundEnd = groundEnd;
  content.mark = mark(reading);
  content.markRatio = 0.2;
  content.state = state(reading);
  if (content.state == TileState::live) {
    content.figure =
        QString::fromStdString(countText(static_cast<std::int64_t>(reading.items.size())));
    content.widestFigure = "88";
    content.caption = listCaption(reading);
  }
  content.sentence = stateText(reading);
  content.label = "GitHub";
  content.value = content.state == TileState::live ? content.figure + " " + content.caption
                                                   : stateText(reading);
  return tile(content, size);
}

AnyView gitHubWideTile(const GitHubReading& reading, Date now, const TileSize& size,
                       const std::function<void(const std::string&)>& open) {
  if (showsContributions(reading))
    return contributionsWideTile(reading, size);
  WideTileContent content;
  content.ground = ground;
  content.groundEnd = groundEnd;
  content.tint = gitHubTint;
  content.mark = mark(reading);
  content.state = state(reading);
  content.label = "GitHub";
  content.value = stateText(reading);
  if (content.state != TileState::live) {
    content.middle = wideTileWords(stateText(reading), leastStateText(reading), ground, size);
    return wideTile(content, size);
  }
  const double inset = size.padding();
  const AnyView count =
      vstack(
          {mark(reading).frame(size.body() * 0.26, size.body() * 0.26),
           text(QString::fromStdString(countText(static_cast<std::int64_t>(reading.items.size()))))
               .size(size.figure())
               .weight(FontWeight::semibold)
               .colour(palette::figure(ground))
               .widest("88")
               .align(TextAlignment::centre)
               .figure(minimumTypeSize)})
          .spacing(size.body() * 0.04)
          .width(size.body() * 0.46);
  return tile(
      ground,
      hstack({count, itemLines(reading, now, size, open).fill(Alignment::leading)})
          .spacing(inset)
          .padding(Insets{inset * 0.7, size.body() * 0.07, inset * 1.4, size.body() * 0.07}),
      size);
}

} // namespace tavrin
