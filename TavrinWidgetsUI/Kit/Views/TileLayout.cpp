#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include "TavrinCore/Widgets/DockTileGeometry.h"
#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

constexpr double paddingRatio = 0.12;
constexpr double sentenceInset = 0.07;
constexpr double borderRatio = 0.07;
constexpr double borderSteps = 24;
constexpr double figureRatio = 0.305;
/// On one line a figure goes down to this before its seconds move below it.
constexpr double leastFigureRatio = 0.18;
/// Between a progress border and what stands inside.
constexpr double borderGapRatio = 0.05;
constexpr double captionRatio = 0.135;
constexpr double actionRatio = 0.44;
constexpr double captionThreshold = 48;
/// From this side on words are at least as large as figures may become.
constexpr double roomyWords = 64;
constexpr double wideCaptionRatio = 0.17;
constexpr double leastWordsRatio = 0.8;

Text figureText(const QString& string, const QString& widest, double points, const QColor& ground) {
  return text(string)
      .size(points)
      .weight(FontWeight::semibold)
      .colour(palette::figure(ground))
      .widest(widest.isEmpty() ? widestDigits(string) : widest)
      .align(TextAlignment::centre)
      .figure(minimumTypeSize);
}

Text captionText(const QString& string, double points, const QColor& ink) {
  return text(string)
      .size(points)
      .weight(FontWeight::medium)
      .colour(ink)
      .align(TextAlignment::centre);
}

double leastWords(double side) {
  const double share =
      std::clamp((side - captionThreshold) / (roomyWords - captionThreshold), 0., 1.);
  return minimumCaptionSize + share * (minimumTypeSize - minimumCaptionSize);
}

/// A content's gradient; of an even ground both ends are the same.
template <class Content> GradientGround groundsOf(const Content& content) {
  const QColor& end = content.groundEnd.isValid() ? content.groundEnd : content.ground;
  return end == content.ground ? GradientGround{end, end}
                               : GradientGround{content.ground, end}.legible();
}

/// What text of a content stands on, at its worst.
template <class Content> QColor textGround(const Content& content) {
  return groundsOf(content).harder();
}

/// "1:02:33" as "1:02" over "33", for tiles too small for it on one line.
AnyView stackedFigure(const QString& figure, const TileSize& size, const QColor& ground) {
  const qsizetype last = figure.lastIndexOf(u':');
  const double points = std::max(size.body() * 0.25, minimumTypeSize);
  return vstack({figureText(figure.left(last), {}, points, ground),
                 figureText(figure.mid(last + 1), {}, points, ground)
                     .colour(palette::caption(ground))})
      .spacing(points * 0.08);
}

AnyView fittedFigure(const TileContent& content, const TileSize& size) {
  if (content.figure.isEmpty())
    return {};
  const QColor ground = textGround(content);
  // On a small tile a long figure gives way to the words.
  const double yielding = std::min(std::max(size.body() * 0.2, size.words(0)), minimumTypeSize);
  const Text line =
      figureText(content.figure, content.widestFigure, size.figure(), ground).figure(yielding);
  if (content.figure.count(u':') < 2)
    return line;
  const double least = std::max(size.body() * leastFigureRatio, minimumTypeSize);
  return firstFitting({line.figure(least), stackedFigure(content.figure, size, ground)});
}

AnyView marked(const AnyView& mark, TileState state, double side, const QColor& ground) {
  switch (state) {
  case TileState::live:
    return mark;
  case TileState::waiting:
    return mark.opacity(0.35);
  case TileState::cannot: {
    const double badge = std::max(side * 0.45, minimumTypeSize);
    const double disc = badge * 1.3;
    const Symbol sign = symbol("exclamationmark.triangle.fill").colour(palette::warning);
    // Of a mark smaller than that nothing would be left to see.
    if (disc > side)
      return sign.size(std::max(side, minimumTypeSize));
    const AnyView warning = zstack({circle().fill(ground).frame(disc, disc), sign.size(badge)});
    // As much of a small mark is covered as of a large one; the two stand in the middle together.
    const double outside = disc - side * 0.45;
    return mark.opacity(0.5)
        .overlay(warning.offset(outside, badge * 0.2), Alignment::bottomTrailing)
        .offset(-(outside - badge * 0.3) / 2, 0);
  }
  case TileState::done:
    return symbol("checkmark.circle.fill").colour(withContrast(palette::green, ground, 3));
  }
  return mark;
}

AnyView body(const GradientGround& ground, const std::optional<TileBorder>& border,
             const TileSize& size) {
  const Shape form = ground.to == ground.from ? superellipse(0).fill(ground.from)
                                              : superellipse(0).gradient(ground.from, ground.to);
  const AnyView plain = tileBody(form, size.side);
  if (!border)
    return plain;
  const double margin = (size.height() - size.body()) / 2;
  // A closed ring has no track to shine through at its edges.
  const AnyView track = border->progress >= 1
                            ? AnyView()
                            : progressBorder(1).tint(border->track).track({}).padding(margin);
  const ProgressBorder level =
      progressBorder(std::clamp(border->progress, 0.0, 1.0)).tint(border->tint).track({});
  // The level's whole steps are kept with the body, so that a tick draws its tip alone.
  const double steps = borderSteps * std::ceil(size.bodyWidth() / size.body());
  const double kept = std::floor(level.progress * steps) / steps;
  ProgressBorder still = level;
  still.progress = kept;
  const AnyView base = modifiers::cachedAsBase(zstack({plain, track}));
  return zstack({zstack({base, still.padding(margin)}).cached(), level.from(kept).padding(margin)});
}

AnyView spoken(const AnyView& picture, const QString& label, const QString& value,
               const QString& caption, const QString& figure) {
  const QString name = !label.isEmpty() ? label : caption;
  return picture.accessibility(name.isEmpty() ? figure : name, !value.isEmpty() ? value : figure);
}

} // namespace

double TileSize::width() const {
  return side + DockTileGeometry::pitch(side) * (std::max(span, 1) - 1);
}
double TileSize::body() const {
  return side * DockTileGeometry::iconBodyRatio;
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
  return words(captionRatio);
}
double TileSize::words(double ratio) const {
  return std::max(body() * ratio, leastWords(side));
}
bool TileSize::hasCaption() const {
  return side >= captionThreshold;
}
QColor TileSize::quietInk(const QColor& ground) const {
  return leastWords(side) < minimumTypeSize ? palette::figure(ground) : palette::caption(ground);
}
double TileSize::actionSide() const {
  return body() * actionRatio;
}

namespace {

/// Figure, caption and mark of a square tile in a column, as many as there is room for.
AnyView tileColumn(const TileContent& content, const TileSize& size, double room) {
  const bool hasText = !content.figure.isEmpty() || !content.caption.isEmpty();
  const QColor ground = textGround(content);
  // Near the body's corners a line has less room than in the middle.
  const double lineRoom = room * 0.94;
  const AnyView figure = fittedFigure(content, size);
  AnyView caption;
  std::vector<AnyView> wholeCaptions;
  if (size.hasCaption() && !content.caption.isEmpty()) {
    const Text words = captionText(content.caption, size.caption(), size.quietInk(ground));
    caption = words.frame({.maxWidth = lineRoom});
    for (const Text& form :
         {words.lines(2).figure(size.words(0)), words.figure(minimumCaptionSize)})
      wholeCaptions.push_back(form.padding((room - lineRoom) / 2, 0));
  }
  const auto mark = [&](double share) -> AnyView {
    if (content.mark.isEmpty() && content.state != TileState::done)
      return {};
    const double side = size.body() * (hasText ? content.markRatio : 0.5) * share;
    return marked(content.mark, content.state, side, ground)
        .frame({.maxWidth = lineRoom, .minHeight = side, .maxHeight = side})
        .cached();
  };
  std::vector<AnyView> candidates;
  const auto add = [&](const AnyView& mark, const AnyView& words) {
    candidates.push_back(
        (content.isMarkBelow ? vstack({figure, words, mark}) : vstack({mark, figure, words}))
            .spacing(size.body() * 0.03));
  };
  // The words whole, on two lines or in smaller type; a mark that is all else there is stays.
  for (const double share : {1., 0.75})
    for (const AnyView& words : wholeCaptions)
      if (!mark(share).isEmpty())
        add(mark(share), words);
  for (const AnyView& words : wholeCaptions)
    if (!content.figure.isEmpty())
      add({}, words);
  if (!mark(1).isEmpty())
    add(mark(1), caption);
  if (hasText) {
    add({}, caption);
    candidates.push_back(figure);
  }
  return firstFitting(std::move(candidates));
}

} // namespace

namespace {

/// The words of a state, as few lines as they need and the mark above them as large as they allow.
AnyView sentenceColumn(const TileContent& content, const TileSize& size) {
  const QColor ground = textGround(content);
  const Text words = captionText(content.sentence, size.caption(), size.quietInk(ground));
  const auto under = [&](double markRatio, const Text& lines) -> AnyView {
    const double side = size.body() * markRatio;
    const AnyView mark =
        marked(content.mark, content.state, side, ground).frame(side, side).cached();
    return vstack({mark, lines}).spacing(size.body() * 0.04);
  };
  const auto whole = [&](int lines) { return words.lines(lines).figure(size.caption()); };
  // Smaller words rather than none of the mark, which tells one state from another.
  return firstFitting({under(0.36, whole(2)), under(0.28, whole(3)), under(0.2, whole(3)),
                       under(0.2, words.lines(3).spaced(1).figure(size.words(0))),
                       words.lines(4).figure(size.caption()),
                       words.lines(5).spaced(1).figure(size.caption()), words.lines(4)});
}

} // namespace

AnyView tile(const TileContent& content, const TileSize& size) {
  const bool isSentence = !content.sentence.isEmpty() && size.hasCaption();
  const double inset = isSentence       ? size.body() * sentenceInset
                       : content.border ? size.borderWidth() + size.body() * borderGapRatio
                                        : size.padding();
  const double margin = (size.height() - size.body()) / 2;
  const double room = size.body() - 2 * inset;
  const AnyView column =
      isSentence ? sentenceColumn(content, size) : tileColumn(content, size, room);
  const AnyView picture = zstack({body(groundsOf(content), content.border, size),
                                  column.fill().padding(margin + inset)})
                              .frame(size.width(), size.height());
  return spoken(picture, content.label, content.value,
                isSentence ? content.sentence : content.caption, content.figure);
}

AnyView tile(const QColor& ground, const AnyView& inner, const TileSize& size) {
  const double margin = (size.height() - size.body()) / 2;
  return zstack({tileBody(superellipse(0).fill(ground), size.side),
                 inner.fill().clip(superellipse(size.bodyRadius())).padding(margin)})
      .frame(size.width(), size.height());
}

namespace {

AnyView actionButton(const TileAction& action, const WideTileContent& content,
                     const TileSize& size) {
  const double side = size.actionSide();
  const QColor quiet = mix(content.ground, palette::figure(content.ground), 0.16);
  const QColor disc = action.isProminent ? content.tint : quiet;
  // A mark is white where that can be told from the disc, else as dark as the tile: no grey
  // between.
  const bool isWhite = contrast(palette::white, disc) >= 2.4;
  const QColor ink = !action.isProminent ? palette::figure(quiet)
                     : isWhite           ? palette::white
                                         : palette::ground;
  return zstack({circle().fill(disc), symbol(action.symbol).colour(ink).size(side * 0.5)})
      .frame(side, side)
      .cached()
      .button(action.action, action.label);
}

} // namespace

namespace {

AnyView wideText(const WideTileContent& content, const TileSize& size) {
  if (!content.middle.isEmpty())
    return content.middle;
  const QColor ground = textGround(content);
  std::vector<AnyView> captions;
  if (!content.caption.isEmpty()) {
    const Text words =
        captionText(content.caption, size.words(wideCaptionRatio), size.quietInk(ground))
            .align(TextAlignment::leading);
    captions = {words.lines(2).figure(size.words(0)), words};
  }
  AnyView figure;
  if (!content.figure.isEmpty())
    figure = figureText(content.figure, content.widestFigure, size.figure(), ground)
                 .figure(std::max(size.body() * 0.22, minimumTypeSize))
                 .align(TextAlignment::leading);
  return vstack({firstFitting(std::move(captions)), figure})
      .align(Alignment::leading)
      .spacing(size.body() * 0.05);
}

} // namespace

AnyView wideTile(const WideTileContent& content, const TileSize& size) {
  const double padding = size.padding();
  const double markSide = size.body() * content.markRatio;
  const AnyView words = wideText(content, size)
                            .frame({.minWidth = size.body() * leastWordsRatio}, Alignment::leading);
  std::vector<AnyView> buttons;
  for (const TileAction& action : content.actions)
    buttons.push_back(actionButton(action, content, size));
  const AnyView actions = hstack(buttons).spacing(padding * 0.6);
  AnyView mark;
  if (!content.mark.isEmpty() || content.state == TileState::done)
    mark = marked(content.mark, content.state, markSide, textGround(content))
               .frame(markSide, markSide)
               .cached();
  const auto row = [&](const AnyView& first, const AnyView& last) -> AnyView {
    return hstack({first, words, spacer(), last}).spacing(padding * 0.8);
  };
  // The mark goes first: the words say what it shows. Then the lesser actions.
  std::vector<AnyView> candidates{row(mark, actions), row({}, actions)};
  if (buttons.size() > 1)
    candidates.push_back(row({}, buttons.front()));
  candidates.push_back(words.fill(Alignment::leading));
  const double margin = (size.height() - size.body()) / 2;
  // Round ends of marks and buttons sit well a little further out than text.
  const AnyView picture = zstack({body(groundsOf(content), content.border, size),
                                  firstFitting(std::move(candidates))
                                      .fill()
                                      .padding(margin + padding * 1.4, margin + padding)})
                              .frame(size.width(), size.height());
  if (content.label.isEmpty() && content.value.isEmpty())
    return picture;
  return called(picture, content.label, content.value);
}

AnyView called(const AnyView& tile, const QString& label, const QString& value) {
  return tile.background(AnyView().fill().accessibility(label, value));
}

AnyView progressDots(int done, int total, const QColor& tint, double side, double spacing,
                     const QColor& track) {
  std::vector<AnyView> dots;
  for (int i = 0; i < total; ++i)
    dots.push_back(circle().fill(i < done ? tint : track).frame(side, side));
  return hstack(std::move(dots)).spacing(spacing).accessibility({});
}

} // namespace tavrin
