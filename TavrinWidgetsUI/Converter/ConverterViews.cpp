#include "TavrinWidgetsUI/Converter/ConverterViews.h"

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor upperGround{0x1C, 0x21, 0x22};
constexpr QColor lowerTop{0x16, 0x82, 0x6E};
constexpr QColor lowerGround{0x15, 0x7F, 0x6B};
constexpr double upperShare = 0.4;
/// Of a figure on a tile; the panel has the rest.
constexpr int tileDigits = 5;
constexpr int shortDigits = 4;

QString numberText(double value, const NumberNotation& notation, int digits) {
  return QString::fromStdString(notation.format(value, digits));
}

QString sentence(const Conversion& conversion, const NumberNotation& notation) {
  return worded("{value} is {result}",
                {{"value", quantityText(conversion.value, *conversion.from, notation, 6)},
                 {"result", quantityText(conversion.result(), *conversion.to, notation, 6)}});
}

/// The figure with as many digits as there is room for.
AnyView fittedNumber(double value, const NumberNotation& notation, double points,
                     const QColor& ink) {
  const auto line = [&](const QString& number) {
    return text(number)
        .size(points)
        .weight(FontWeight::semibold)
        .colour(ink)
        .align(TextAlignment::centre)
        .figure(minimumTypeSize);
  };
  return firstFitting({line(numberText(value, notation, tileDigits)).figure(points * 0.75),
                       line(numberText(value, notation, shortDigits)),
                       line(QString::fromStdString(notation.formatShort(value)))});
}

QString withUnit(const QString& number, const ConverterUnit& unit) {
  // The signs of angles and degrees of arc follow the number at once.
  const bool isSign = unit.category == ConverterCategory::angle && !unit.symbol.empty() &&
                      (unit.symbol == "°" || unit.symbol == "′" || unit.symbol == "″");
  return isSign ? number + utf8(unit.symbol) : number + QChar(0xA0) + utf8(unit.symbol);
}

} // namespace

QString quantityText(double value, const ConverterUnit& unit, const NumberNotation& notation,
                     int digits) {
  return withUnit(numberText(value, notation, digits), unit);
}

AnyView converterTileIcon(const ConverterSettings& settings, const NumberNotation& notation,
                          const TileSize& size) {
  const Conversion conversion(settings);
  const double body = size.body();
  const double small = size.words(0.15);
  const QColor onUpper = palette::figure(upperGround);
  const QColor onLower = palette::white;
  const double margin = body * 0.08;
  const auto line = [&](const QString& string) {
    return text(string)
        .size(small)
        .weight(FontWeight::medium)
        .colour(onUpper)
        .align(TextAlignment::centre);
  };
  const QString unit = utf8(conversion.from->symbol);
  // Without room for a caption below, the units stand above and the number below.
  const AnyView above =
      size.hasCaption()
          ? firstFitting(
                {line(quantityText(conversion.value, *conversion.from, notation, shortDigits))
                     .figure(minimumTypeSize),
                 line(unit)})
          : AnyView(firstFitting(
                {line(unit + QChar(0x2192) + utf8(conversion.to->symbol)).figure(minimumTypeSize),
                 line(utf8(conversion.to->symbol))}));
  std::vector<AnyView> below{
      fittedNumber(conversion.isImpossible() ? std::nan("") : conversion.result(), notation,
                   std::max(body * 0.28, 12.0), onLower)};
  if (size.hasCaption())
    below.push_back(text(utf8(conversion.to->symbol))
                        .size(small)
                        .weight(FontWeight::medium)
                        .colour(onLower)
                        .align(TextAlignment::centre));
  const AnyView inner = vstack({above.padding(margin * 1.3, 0)
                                    .fill()
                                    .background(rectangle().fill(upperGround))
                                    .height(body * upperShare),
                                vstack(std::move(below))
                                    .spacing(body * 0.02)
                                    .padding(margin, 0)
                                    .fill()
                                    .background(rectangle().gradient(lowerTop, lowerGround))});
  return tile(upperGround, inner, size)
      .accessibility(worded("Converter"), sentence(conversion, notation));
}

AnyView converterWideTile(const ConverterSettings& settings, const NumberNotation& notation,
                          const TileSize& size, const std::function<void()>& swap) {
  const Conversion conversion(settings);
  const double body = size.body();
  const double number = conversion.isImpossible() ? std::nan("") : conversion.result();
  const auto line = [&](int digits) {
    return text(quantityText(number, *conversion.to, notation, digits))
        .size(body * 0.27)
        .weight(FontWeight::semibold)
        .colour(palette::figure())
        .figure(size.words(0.19));
  };
  const auto upper = [&](const QString& given) {
    return text(given)
        .size(size.words(0.19))
        .weight(FontWeight::medium)
        .colour(palette::caption())
        .figure(size.words(0));
  };
  WideTileContent content;
  content.tint = converterTint;
  content.middle =
      vstack({firstFitting(
                  {upper(quantityText(conversion.value, *conversion.from, notation, 6)),
                   upper(withUnit(QString::fromStdString(notation.formatShort(conversion.value)),
                                  *conversion.from))}),
              firstFitting({line(tileDigits), line(shortDigits), line(3)})})
          .align(Alignment::leading)
          .spacing(body * 0.06);
  content.actions.push_back({{"swap", swap}, "arrow.up.arrow.down", worded("Swap"), true});
  content.label = worded("Converter");
  content.value = sentence(conversion, notation);
  return wideTile(content, size);
}

} // namespace tavrin
