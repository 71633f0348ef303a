#include "TavrinWidgetsUI/Kit/TileLayout.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr double bodyRatio = 0.805;
constexpr double pitchRatio = 1.0625;
constexpr double paddingRatio = 0.12;
constexpr double borderRatio = 0.07;
constexpr double figureRatio = 0.32;
constexpr double captionRatio = 0.135;
constexpr double actionRatio = 0.44;
constexpr double captionThreshold = 56;

Text figureText(const QString& string, const QString& widest, double points, const QColor& ground) {
  return text(string)
      .size(points)
      .weight(FontWeight::semibold)
      .colour(palette::figure(ground))
      .widest(widest.isEmpty() ? widestDigits(string) : widest)
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text captionText(const QString& string, double points, const QColor& ground) {
  return text(string)
      .size(points)
      .weight(FontWeight::medium)
      .colour(palette::caption(ground))
      .align(TextAlignment::centre);
}

/// "1:02:33" as "1:02" over "33", for tiles too small for it on one line.
AnyView stackedFigure(const QString& figure, double room, const QColor& ground) {
  const qsizetype last = figure.lastIndexOf(u':');
  if (figure.count(u':') < 2)
    return {};
  const double points = std::max(room * 0.30, minimumTypeSize);
  return vstack({figureText(figure.left(last), {}, points, ground),
                 figureText(figure.mid(last + 1), {}, points, ground)
                     .colour(palette::caption(ground))})
      .spacing(-points * 0.12);
}

/// The figure as large as it goes: on one line, else its seconds below.
AnyView fittedFigure(const TileContent& content, const TileSize& size, double room) {
  if (content.figure.isEmpty())
    return {};
  const Text line = figureText(content.figure, content.widestFigure, size.figure(), content.ground);
  const AnyView stacked = stackedFigure(content.figure, room, content.ground);
  if (stacked.isEmpty())
    return line;
  const Text smallest = line.size(std::max(room * 0.22, minimumTypeSize));
  return firstFitting({line, smallest, stacked});
}

AnyView marked(const AnyView& mark, TileState state, double side, const QColor& ground) {
  switch (state) {
  case TileState::live:
    return mark;
  case TileState::waiting:
    return mark.opacity(0.35);
  case TileState::cannot: {
    const double badge = std::max(side * 0.45, minimumTypeSize);
    const AnyView warning =
        zstack({circle().fill(ground).frame(badge * 1.3, badge * 1.3),
                symbol("exclamationmark.triangle.fill").colour(palette::warning).size(badge)});
    return mark.opacity(0.5).overlay(warning.offset(badge * 0.3, badge * 0.2),
                                     Alignment::bottomTrailing);
  }
  case TileState::done:
    return symbol("checkmark.circle.fill").colour(withContrast(palette::green, ground, 3));
  }
  return mark;
}

AnyView body(const QColor& ground, const QColor& groundEnd, const std::optional<TileBorder>& border,
             const TileSize& size) {
  const Shape form = groundEnd.isValid() ? superellipse(0).gradient(ground, groundEnd)
                                         : superellipse(0).fill(ground);
  const AnyView plain = tileBody(form, size.side);
  if (!border)
    return plain;
  const double margin = (size.height() - size.body()) / 2;
  const AnyView track = progressBorder(1).tint(border->track).track({}).padding(margin);
  const AnyView level = progressBorder(border->progress).tint(border->tint).track({});
  return zstack({zstack({plain, track}).cached(), level.padding(margin)});
}

AnyView spoken(const AnyView& picture, const QString& label, const QString& value,
               const QString& caption, const QString& figure) {
  const QString name = !label.isEmpty() ? label : caption;
  return picture.accessibility(name.isEmpty() ? figure : name, !value.isEmpty() ? value : figure);
}

} // namespace

double TileSize::width() const {
  return side * (1 + pitchRatio * (std::max(span, 1) - 1));
}
double TileSize::body() const {
  return side * bodyRatio;
}
double TileSize::bodyWidth() const {
  return width() - side + body();
}
double TileSize::bodyRadius() const {
  return body() * bodyCornerRatio;
}
QRectF TileSize::bodyRect() const {
  const double margin = (side - body()) / 2;
  return {margin, margin, bodyWidth(), body()};
}
double TileSize::padding() const {
  return body() * paddingRatio;
}
double TileSize::borderWidth() const {
  return body() * borderRatio;
}
double TileSize::figure() const {
  return std::max(body() * figureRatio, minimumTypeSize);
}
double TileSize::caption() const {
  return std::max(body() * captionRatio, minimumTypeSize);
}
bool TileSize::hasCaption() const {
  return side >= captionThreshold;
}
double TileSize::actionSide() const {
  return body() * actionRatio;
}

AnyView tile(const TileContent& content, const TileSize& size) {
  const double inset = content.border ? size.borderWidth() + size.body() * 0.035 : size.padding();
  const double room = size.body() - 2 * inset;
  const bool hasText = !content.figure.isEmpty() || !content.caption.isEmpty();
  const double markSide = size.body() * (hasText ? content.markRatio : 0.5);
  const AnyView figure = fittedFigure(content, size, room);
  const AnyView caption = size.hasCaption() && !content.caption.isEmpty()
                              ? AnyView(captionText(content.caption, size.caption(), content.ground)
                                            .frame({.maxWidth = room * 0.92}))
                              : AnyView();
  const AnyView own = content.mark.isEmpty() && content.state != TileState::done
                          ? AnyView()
                          : marked(content.mark, content.state, markSide, content.ground)
                                .frame({.maxWidth = room * 0.92, .maxHeight = markSide});
  const AnyView mark = own.isEmpty() ? own : own.cached();
  const double gap = size.body() * 0.02;
  const auto column = [&](const AnyView& top, const AnyView& caption, const AnyView& bottom) {
    return AnyView(vstack({top, figure, caption, bottom}).spacing(gap));
  };
  std::vector<AnyView> candidates;
  if (!mark.isEmpty())
    candidates.push_back(content.isMarkBelow ? column({}, caption, mark)
                                             : column(mark, caption, {}));
  if (hasText) {
    candidates.push_back(column({}, caption, {}));
    candidates.push_back(figure);
  }
  const double margin = (size.height() - size.body()) / 2;
  const AnyView inner = candidates.empty() ? AnyView() : firstFitting(std::move(candidates)).fill();
  const AnyView picture = zstack({body(content.ground, content.groundEnd, content.border, size),
                                  inner.padding(margin + inset)});
  return spoken(picture, content.label, content.value, content.caption, content.figure);
}

AnyView tile(const QColor& ground, const AnyView& inner, const TileSize& size) {
  const double margin = (size.height() - size.body()) / 2;
  return zstack({tileBody(superellipse(0).fill(ground), size.side),
                 inner.fill().clip(superellipse(size.bodyRadius())).padding(margin)});
}

namespace {

AnyView actionButton(const TileAction& action, const WideTileContent& content,
                     const TileSize& size) {
  const double side = size.actionSide();
  const QColor quiet = mix(content.ground, palette::figure(content.ground), 0.16);
  const QColor disc = action.isProminent ? content.tint : quiet;
  const QColor ink =
      withContrast(action.isProminent ? palette::white : palette::figure(quiet), disc, 3);
  return zstack({circle().fill(disc), symbol(action.symbol).colour(ink).size(side * 0.5)})
      .frame(side, side)
      .cached()
      .button(action.action, action.label);
}

} // namespace

AnyView wideTile(const WideTileContent& content, const TileSize& size) {
  const double padding = size.padding();
  const double room = size.body() - 2 * padding;
  std::vector<AnyView> row;
  if (!content.mark.isEmpty())
    row.push_back(
        marked(content.mark, content.state, room, content.ground).frame(room, room).cached());
  AnyView middle = content.middle;
  if (middle.isEmpty()) {
    const AnyView caption =
        content.caption.isEmpty()
            ? AnyView()
            : AnyView(captionText(content.caption, std::max(size.body() * 0.19, minimumTypeSize),
                                  content.ground)
                          .align(TextAlignment::leading));
    const AnyView figure = content.figure.isEmpty()
                               ? AnyView()
                               : AnyView(figureText(content.figure, content.widestFigure,
                                                    size.figure(), content.ground)
                                             .align(TextAlignment::leading));
    middle = vstack({caption, figure}).align(Alignment::leading).spacing(size.body() * 0.01);
  }
  row.push_back(middle.fillWidth());
  for (const TileAction& action : content.actions)
    row.push_back(actionButton(action, content, size));
  const double margin = (size.height() - size.body()) / 2;
  const AnyView inner = hstack(std::move(row)).spacing(padding * 0.9).fill();
  const AnyView picture = zstack({body(content.ground, content.groundEnd, content.border, size),
                                  inner.padding(margin + padding, margin)});
  return picture;
}

AnyView progressDots(int done, int total, const QColor& tint, double side, double spacing,
                     const QColor& track) {
  std::vector<AnyView> dots;
  for (int i = 0; i < total; ++i)
    dots.push_back(circle().fill(i < done ? tint : track).frame(side, side));
  return hstack(std::move(dots)).spacing(spacing).accessibility({});
}

} // namespace tavrin
