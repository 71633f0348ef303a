#pragma once

#include "TavrinWidgetsUI/Kit/Views/View.h"

namespace tavrin {

/// A tile's size as its views are made for it, and the measures that follow from it. All views of
/// a kind take their lengths from here. Points.
struct TileSize {
  /// The side S of a square tile, and the height of a wide one.
  double side = 48;
  /// How many tiles' room it takes along the Dock.
  int span = 1;

  bool isWide() const { return span > 1; }
  /// The whole picture: S by S, or `span` pitches less the gap after the last one.
  double width() const;
  double height() const { return side; }
  /// The visible body: 0.805 S high, and as wide as the picture less the same margins.
  double body() const;
  double bodyWidth() const;
  double bodyRadius() const;
  QRectF bodyRect() const;
  /// Inside the body, 0.12 of its height.
  double padding() const;
  /// Stroke of a progress border.
  double borderWidth() const;
  double figure() const;
  double caption() const;
  /// Type of `ratio` by the body's height, for words: at least 6.5 points at S = 48 and 9 from
  /// S = 64 up.
  double words(double ratio) const;
  /// Words go below S = 48.
  bool hasCaption() const;
  /// Ink of quiet words: as strong as a figure's where they are small.
  QColor quietInk(const QColor& ground = palette::ground) const;
  /// The side of a round action button of a wide tile.
  double actionSide() const;

  bool operator==(const TileSize&) const = default;
};

/// How a tile stands, told at a glance.
enum class TileState {
  live,
  /// Nothing known yet: the mark dimmed.
  waiting,
  /// It cannot work: a small warning at the mark; the panel has the words.
  cannot,
  /// A check in place of the mark.
  done,
};

struct TileBorder {
  double progress = 0;
  QColor tint = palette::blue;
  QColor track = palette::track;
};

/// A square tile: at most one figure, one caption and one mark on a body. What does not fit is
/// left away, the mark first, then the caption; figures are never cut.
struct TileContent {
  QColor ground = palette::ground;
  /// A valid colour makes the ground a gradient from `ground` down to it.
  QColor groundEnd = {};
  std::optional<TileBorder> border = {};
  QString figure = {};
  /// The figure's widest form; empty takes the figure with every digit an 8.
  QString widestFigure = {};
  QString caption = {};
  /// The words of a state, up to four lines, in place of figure and caption.
  QString sentence = {};
  /// A symbol, dots, a small gauge; offered the room that figure and caption leave.
  AnyView mark = {};
  /// The mark's height by the body's; a tile without figure and caption gives it 0.5.
  double markRatio = 0.18;
  /// The mark stands under the text instead of above it.
  bool isMarkBelow = false;
  TileState state = TileState::live;
  /// For assistive technology; empty takes caption and figure.
  QString label = {};
  QString value = {};
};
AnyView tile(const TileContent& content, const TileSize& size);

/// A body with a free drawing inside: for kinds whose tile is one thing (a dial, a tank, a paper).
/// `inner` gets the body's rectangle and is cut at its outline.
AnyView tile(const QColor& ground, const AnyView& inner, const TileSize& size);

struct TileAction {
  ViewAction action;
  /// A symbol's name.
  std::string symbol;
  /// For assistive technology.
  QString label;
  /// Filled with the tint instead of a quiet grey.
  bool isProminent = false;
};

/// A wide tile: mark or gauge at the left, two lines of text, round action buttons at the right.
struct WideTileContent {
  QColor ground = palette::ground;
  QColor groundEnd = {};
  std::optional<TileBorder> border = {};
  /// A symbol, ring or picture, offered a square of `markRatio` by the body's height.
  AnyView mark = {};
  double markRatio = 0.6;
  QColor tint = palette::blue;
  /// The quiet line above and the strong line below.
  QString caption = {};
  QString figure = {};
  QString widestFigure = {};
  /// In place of the two lines.
  AnyView middle = {};
  std::vector<TileAction> actions = {};
  TileState state = TileState::live;
  QString label = {};
  QString value = {};
};
AnyView wideTile(const WideTileContent& content, const TileSize& size);

/// Says what a tile is called as a whole, before its parts, which speak for themselves too.
AnyView called(const AnyView& tile, const QString& label, const QString& value);

/// `total` small circles of which the first `done` are filled.
AnyView progressDots(int done, int total, const QColor& tint, double side, double spacing,
                     const QColor& track = palette::track);

} // namespace tavrin
