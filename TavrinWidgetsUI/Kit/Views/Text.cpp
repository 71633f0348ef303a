#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include "TavrinWidgetsUI/Kit/Views/Modifiers.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

/// Figures have no descenders.
constexpr double figureHeight = 0.95;
constexpr double leastFit = 0.6;
/// Of what has to be cut all the same: much smaller type would show little more of it.
constexpr double leastCutFit = 0.85;

using Digits = TextEngine::Digits;

double widestWidth(const Text& text, TextEngine& engine) {
  const double width = engine.width(text.string, text.fontWeight, text.pointSize);
  return text.widestForm.isEmpty()
             ? width
             : std::max(width, engine.width(text.widestForm, text.fontWeight, text.pointSize));
}

/// What the text may be fitted down to.
double leastSize(const Text& text) {
  const double least =
      text.figureMinimum.value_or(std::max(text.pointSize * leastFit, minimumCaptionSize));
  return std::min(least, text.pointSize);
}

/// The size at which the text stands on one line of `width` points.
double fittedSize(const Text& text, TextEngine& engine, double width) {
  const double wanted = widestWidth(text, engine);
  if (wanted <= width || wanted <= 0)
    return text.pointSize;
  const double fitting = text.pointSize * width / wanted;
  const double least = leastSize(text);
  if (fitting >= least)
    return fitting;
  return text.figureMinimum ? least : std::max(least, text.pointSize * leastCutFit);
}

/// As many of the allowed lines as the room is high for; one at least.
int linesIn(const Text& text, double height) {
  const double count = std::floor(height / (text.pointSize * text.leading) + 0.01);
  return static_cast<int>(std::clamp(count, 1.0, double(text.lineLimit)));
}

void drawLine(ViewContext& context, const Text& text, const QString& line, double size,
              const QRectF& rect, Digits digits) {
  const double width = context.text.width(line, text.fontWeight, size, digits);
  const double room = rect.width() - width;
  const bool isLeft = (text.textAlignment == TextAlignment::leading) != context.isMirrored;
  const double x = text.textAlignment == TextAlignment::centre ? room / 2 : isLeft ? 0 : room;
  const double cap = context.text.capHeight(text.fontWeight, size);
  const double baseline = rect.y() + (rect.height() + cap) / 2;
  // Whole pixels keep feet sharp and a ticking figure in its columns.
  const auto snapped = [&](double value) {
    return std::round(value * context.scale) / context.scale;
  };
  context.text.draw(context.painter, line, text.fontWeight, size,
                    {snapped(rect.x() + x), snapped(baseline)}, digits);
}

} // namespace

Text Text::size(double points) const {
  Text result = *this;
  result.pointSize = points;
  return result;
}

Text Text::weight(FontWeight weight) const {
  Text result = *this;
  result.fontWeight = weight;
  return result;
}

Text Text::colour(const QColor& colour) const {
  Text result = *this;
  result.inkColour = colour;
  return result;
}

Text Text::align(TextAlignment alignment) const {
  Text result = *this;
  result.textAlignment = alignment;
  return result;
}

Text Text::lines(int limit) const {
  Text result = *this;
  result.lineLimit = std::max(limit, 1);
  return result;
}

Text Text::spaced(double ratio) const {
  Text result = *this;
  result.leading = ratio;
  return result;
}

Text Text::ruled() const {
  Text result = *this;
  result.isRuled = true;
  return result;
}

Text Text::widest(const QString& form) const {
  Text result = *this;
  result.widestForm = form;
  return result;
}

Text Text::figure(double minimumPoints) const {
  Text result = *this;
  result.figureMinimum = minimumPoints;
  return result;
}

Text Text::fileName() const {
  Text result = *this;
  result.isFileName = true;
  return result;
}

QSizeF Text::measure(ViewContext& context, const QSizeF& offer) const {
  const double line = pointSize * leading;
  if (string.isEmpty() && widestForm.isEmpty())
    return {0, 0};
  if (lineLimit > 1 && offer.width() > 0 && offer.width() < unbounded) {
    const auto [parts, size] = context.text.lines(string, fontWeight, pointSize, leastSize(*this),
                                                  offer.width(), linesIn(*this, offer.height()));
    // Too long for its lines: wider than the room, so that another candidate is taken.
    const bool isCut =
        !string.contains(u'…') &&
        std::ranges::any_of(parts, [](const QString& part) { return part.endsWith(u'…'); });
    if (figureMinimum && isCut)
      return {offer.width() + 1, line * double(parts.size())};
    double widest = 0;
    for (const QString& part : parts)
      widest = std::max(widest, context.text.width(part, fontWeight, size, Digits::proportional));
    return {std::min(std::ceil(widest), offer.width()), line * double(parts.size())};
  }
  // Rounded up, so that a text is not refitted to the very room it asked for.
  const double ideal = std::ceil(widestWidth(*this, context.text) * 2) / 2;
  if (!figureMinimum)
    return {std::min(ideal, offer.width()), line};
  const double size = fittedSize(*this, context.text, offer.width());
  const double least = std::min(*figureMinimum, pointSize);
  const double overflowing = size > least ? 0 : ideal * size / pointSize;
  return {std::max(std::min(ideal, offer.width()), overflowing), size * figureHeight};
}

void Text::paint(ViewContext& context, const QRectF& rect) const {
  if (string.isEmpty())
    return;
  if (!context.spokenFor)
    context.addElement({string, {}, rect});
  context.painter.setPen(inkColour);
  if (lineLimit > 1) {
    const auto [parts, size] = context.text.lines(string, fontWeight, pointSize, leastSize(*this),
                                                  rect.width(), linesIn(*this, rect.height()));
    const double line = (isRuled ? pointSize : size) * leading;
    double y = rect.y() + (rect.height() - line * double(parts.size())) / 2;
    for (const QString& part : parts) {
      drawLine(context, *this, part, size, {rect.x(), y, rect.width(), line}, Digits::proportional);
      y += line;
    }
    return;
  }
  const double size = fittedSize(*this, context.text, rect.width());
  const auto cutAt = isFileName ? TextEngine::Cut::middle : TextEngine::Cut::end;
  const QString shown =
      figureMinimum ? string : context.text.elided(string, fontWeight, size, rect.width(), cutAt);
  drawLine(context, *this, shown, size, rect, Digits::tabular);
}

Text text(const QString& string) {
  Text result;
  result.string = plainWords(string);
  return result;
}
Text text(const std::string& utf8) {
  return text(QString::fromStdString(utf8));
}
Text text(const char* utf8) {
  return text(QString::fromUtf8(utf8));
}

QString widestDigits(QString string) {
  for (QChar& character : string)
    if (character >= u'0' && character <= u'9')
      character = u'8';
  return string;
}

} // namespace tavrin
