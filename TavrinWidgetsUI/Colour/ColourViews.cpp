#include "TavrinWidgetsUI/Colour/ColourViews.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr std::size_t stripLength = 4;
constexpr double stripShare = 0.22;
/// A colour as dark as the desktop or as light as the paper would lose its edge.
constexpr QColor edge{128, 128, 128, 90};

AnyView emptyIcon(const TileSize& size) {
  return tile(
      TileContent{.mark =
                      symbol("eyedropper").colour(withContrast(colourPickerTint, palette::ground)),
                  .markRatio = 0.5,
                  .label = worded("Colour Picker"),
                  .value = worded("No colours yet")},
      size);
}

/// The colours before the newest, side by side, filling the width.
AnyView strip(const ColourHistory& history) {
  std::vector<AnyView> cells;
  for (std::size_t i = 1; i < history.colours.size() && i <= stripLength; ++i)
    cells.push_back(AnyView(rectangle().fill(colourOf(history.colours[i]))));
  return hstack(std::move(cells));
}

} // namespace

QColor colourOf(const PickedColour& colour) {
  return {colour.red, colour.green, colour.blue};
}

QColor swatchInk(const PickedColour& colour) {
  const QColor ink = colour.wantsDarkLabel() ? QColor(0x12, 0x12, 0x14) : palette::white;
  return withContrast(ink, colourOf(colour));
}

QString colourText(const PickedColour& colour, ColourFormat format) {
  return QString::fromStdString(colour.text(format));
}

AnyView colourTileIcon(const ColourHistory& history, const ColourPickerSettings& settings,
                       const TileSize& size) {
  if (history.colours.empty())
    return emptyIcon(size);
  const PickedColour& newest = history.colours.front();
  const QColor ink = swatchInk(newest);
  const bool hasStrip = history.colours.size() > 1;
  const double body = size.body();
  std::vector<AnyView> parts{symbol("eyedropper").colour(ink).size(body * 0.34)};
  if (size.hasCaption())
    parts.push_back(text(colourText(newest, ColourFormat::hex))
                        .size(size.caption())
                        .weight(FontWeight::medium)
                        .colour(ink));
  const AnyView card = vstack(std::move(parts))
                           .spacing(body * 0.05)
                           .fill()
                           .background(rectangle().fill(colourOf(newest)));
  const AnyView inner =
      hasStrip ? AnyView(vstack({card, strip(history).height(body * stripShare)})) : card;
  return tile(colourOf(newest), zstack({inner, superellipse(size.bodyRadius()).stroke(edge, 1)}),
              size)
      .accessibility(worded("Colour Picker"), colourText(newest, settings.format));
}

AnyView colourWideTile(const ColourHistory& history, const ColourPickerSettings& settings,
                       const TileSize& size, const std::function<void()>& pick,
                       const std::function<void()>& copy) {
  WideTileContent content;
  content.tint = colourPickerTint;
  content.label = worded("Colour Picker");
  const bool isEmpty = history.colours.empty();
  if (isEmpty) {
    content.mark = symbol("eyedropper").colour(withContrast(colourPickerTint, palette::ground));
    content.caption = worded("No colours");
    content.figure = worded("Pick one");
  } else {
    const PickedColour& newest = history.colours.front();
    // The tile is the colour; the shortest notation is the figure, which is never cut.
    content.ground = colourOf(newest);
    content.tint = swatchInk(newest);
    content.figure = colourText(newest, ColourFormat::hex);
    content.widestFigure = content.figure;
    // What a copy is written in; its own words would be cut.
    const auto notation = title(settings.format);
    content.caption = settings.format == ColourFormat::hex ? worded("Picked last") : utf8(notation);
    content.value = colourText(newest, settings.format);
  }
  content.actions.push_back({{"pick", pick}, "eyedropper", worded("Pick a colour"), true});
  if (!isEmpty && size.span > 2)
    content.actions.push_back({{"copy", copy}, "doc.on.clipboard", worded("Copy")});
  return wideTile(content, size);
}

AnyView colourCard(const PickedColour& colour, ColourFormat format) {
  constexpr double corner = 10;
  return text(colourText(colour, format))
      .size(15)
      .weight(FontWeight::semibold)
      .colour(swatchInk(colour))
      .align(TextAlignment::centre)
      .lines(2)
      .padding(14, 8)
      .fill()
      .background(zstack({roundedRectangle(corner).fill(colourOf(colour)),
                          roundedRectangle(corner).stroke(edge, 1)}));
}

} // namespace tavrin
