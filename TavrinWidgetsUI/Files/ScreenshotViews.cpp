#include "TavrinWidgetsUI/Files/ScreenshotViews.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {

namespace {

constexpr QColor screenshotGround{0x12, 0x2A, 0x30};
constexpr QColor screenshotGroundEnd{0x0C, 0x1B, 0x20};
constexpr QColor well{0x1F, 0x3A, 0x41};
constexpr double shotRatio = 1.5;

struct FrameKey {
  /// Of the frame's height.
  double reach;
  double width;
  bool operator==(const FrameKey&) const = default;
};

/// The corners of a viewfinder.
void paintCorners(QPainter& painter, const QRectF& rect, const FrameKey& key) {
  const double width = rect.height() * key.width;
  const double reach = rect.height() * key.reach;
  const QRectF inner = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
  const double radius = reach * 0.45;
  QPainterPath corner;
  corner.moveTo(0, reach);
  corner.lineTo(0, radius);
  corner.quadTo(0, 0, radius, 0);
  corner.lineTo(reach, 0);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette::figure(), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  for (const bool isRight : {false, true})
    for (const bool isLow : {false, true}) {
      painter.save();
      painter.translate(isRight ? inner.right() : inner.left(),
                        isLow ? inner.bottom() : inner.top());
      painter.scale(isRight ? -1 : 1, isLow ? -1 : 1);
      painter.drawPath(corner);
      painter.restore();
    }
}

AnyView corners(double reach, double width) {
  return Canvas<FrameKey>{{}, FrameKey{reach, width}, paintCorners};
}

/// What stands in a shot's place; the state's own mark where there is none.
AnyView shotView(const ScreenshotReading::Shot& shot, double width, double height, double radius) {
  const double side = std::min(width, height) * 0.45;
  const AnyView inner = shot.picture.isNull()
                            ? AnyView(symbol(shot.isBroken ? "questionmark.square" : "photo")
                                          .colour(withOpacity(palette::white, 0.4))
                                          .size(side))
                            : AnyView(image(shot.picture).covering().frame(width, height));
  return zstack({roundedRectangle(radius).fill(well).frame(width, height), inner})
      .frame(width, height)
      .clip(roundedRectangle(radius));
}

AnyView stateMark(const ScreenshotReading& reading, double side) {
  const bool isTrouble = reading.isKnown && reading.state != FolderListing::State::listed;
  if (isTrouble)
    return symbol("exclamationmark.triangle.fill").colour(palette::warning).size(side);
  return symbol("photo")
      .colour(withOpacity(palette::white, reading.isKnown ? 0.6 : 0.3))
      .size(side);
}

QString spokenState(const ScreenshotReading& reading) {
  if (!reading.isKnown)
    return worded("Looking");
  if (reading.state == FolderListing::State::missing)
    return worded("Folder missing");
  if (reading.state == FolderListing::State::unreadable)
    return worded("Cannot be read");
  if (reading.shots.empty())
    return worded("No screenshots");
  const auto& newest = reading.shots.front();
  return joinedFacts({QString::fromStdString(newest.name), newest.moment});
}

AnyView onGround(const AnyView& inner, const TileSize& size) {
  return tile(screenshotGround,
              zstack({rectangle().gradient(screenshotGround, screenshotGroundEnd), inner}), size);
}

} // namespace

AnyView screenshotTileIcon(const ScreenshotReading& reading, const TileSize& size) {
  const double body = size.body();
  const double frame = body * 0.8;
  const double shot = body * 0.62;
  const AnyView inner = reading.shots.empty()
                            ? stateMark(reading, body * 0.36)
                            : shotView(reading.shots.front(), shot, shot, body * 0.07);
  return onGround(zstack({inner, corners(0.24, 0.055).frame(frame, frame)}).fill(), size)
      .accessibility(worded("Screenshots"), spokenState(reading));
}

AnyView screenshotWideTile(const ScreenshotReading& reading, const TileSize& size,
                           const std::function<void(std::size_t)>& open) {
  const double body = size.body();
  const double padding = body * 0.14;
  const double height = body - 2 * padding;
  const double room = size.bodyWidth() - 2 * padding;
  if (reading.shots.empty()) {
    WideTileContent content;
    content.ground = screenshotGround;
    content.groundEnd = screenshotGroundEnd;
    content.mark = zstack(
        {stateMark(reading, body * 0.3), corners(0.26, 0.07).frame(body * 0.56, body * 0.56)});
    content.caption = reading.isKnown ? QString() : worded("Screenshots");
    content.middle = text(spokenState(reading))
                         .size(size.words(0.19))
                         .colour(palette::caption(screenshotGround))
                         .lines(2);
    content.label = worded("Screenshots");
    content.value = spokenState(reading);
    return wideTile(content, size);
  }
  const double gap = body * 0.11;
  const double wish = height * shotRatio;
  const auto fitting = static_cast<std::size_t>(std::max(1.0, (room + gap) / (wish * 0.85 + gap)));
  // The room is shared out whole, by as many as there are or fit.
  const double width = std::min((room - gap * double(fitting - 1)) / double(fitting), wish * 1.15);
  std::vector<AnyView> row;
  for (std::size_t i = 0; i < std::min(fitting, reading.shots.size()); ++i) {
    const auto& shot = reading.shots[i];
    const AnyView picture = shotView(shot, width, height, body * 0.07);
    row.push_back(
        (i == 0
             ? picture.overlay(corners(0.26, 0.06).frame(width + body * 0.09, height + body * 0.09))
             : picture)
            .button({fmt::format("open{}", i), [open, i] { open(i); }},
                    worded("Open {name}", {{"name", shot.name}})));
  }
  // Where there are few, there is room to say when.
  const double left = room - (width + gap) * double(row.size());
  if (left > body * 0.7) {
    const auto& newest = reading.shots.front();
    row.push_back(vstack({text(worded("Newest"))
                              .size(size.words(0.17))
                              .colour(palette::caption(screenshotGround)),
                          text(newest.moment)
                              .size(size.words(0.22))
                              .weight(FontWeight::semibold)
                              .colour(palette::figure(screenshotGround))})
                      .align(Alignment::leading)
                      .spacing(body * 0.04)
                      .padding(Insets{body * 0.06, 0, 0, 0}));
  }
  return called(
      onGround(hstack(std::move(row)).spacing(gap).fill(Alignment::leading).padding(padding, 0),
               size),
      worded("Screenshots"), spokenState(reading));
}

} // namespace tavrin
