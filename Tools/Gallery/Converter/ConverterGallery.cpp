#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinWidgetsUI/Converter/ConverterPanelView.h"
#include "TavrinWidgetsUI/Converter/ConverterViews.h"
#include "Tools/Gallery/Gallery.h"

namespace tavrin {
namespace {

using enum ConverterCategory;

const NumberNotation& english() {
  static const NumberNotation notation(std::string("en_US"));
  return notation;
}
const NumberNotation& german() {
  static const NumberNotation notation(std::string("de_DE"));
  return notation;
}

GalleryPanel panelOf(const char* name, const ConverterSettings& settings,
                     const NumberNotation& notation) {
  return {name, converterTint, [=, &notation](const PanelAppearance& look) {
            return new ConverterPanelView(look, {.name = [] { return std::string("Converter"); },
                                                 .settings = [settings] { return settings; },
                                                 .change = [](const ConverterSettings&) {},
                                                 .copy = [](const std::string&) {},
                                                 .edit = [] {},
                                                 .notation = notation});
          }};
}

} // namespace

GallerySheet converterGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const ConverterSettings& settings,
                        const NumberNotation& notation) {
    for (const int span : {1, 2})
      sheet.push_back({name, span, [=, &notation](const TileSize& size) {
                         return size.isWide() ? converterWideTile(settings, notation, size, [] {})
                                              : converterTileIcon(settings, notation, size);
                       }});
  };
  show("km", {}, english());
  show("marathon", {length, "km", "mi", 42.195}, german());
  show("fever", {temperature, "°C", "°F", 38.5}, english());
  show("zero", {temperature, "K", "°C", -1}, english());
  show("imp fl oz", {volume, "imp fl oz", "US fl oz", 1234567.891}, english());
  show("angle", {angle, "°", "rad", 180}, german());
  show("parsec", {length, "pc", "nm", 1e9}, english());
  show("data", {data, "TB", "TiB", 2}, english());
  return sheet;
}

GalleryPanels converterPanels() {
  return {panelOf("length", {length, "km", "mi", 42.195}, english()),
          panelOf("long", {volume, "imp fl oz", "US fl oz", 1234567.891}, german()),
          panelOf("fever", {temperature, "°C", "°F", 38.5}, english()),
          panelOf("too cold", {temperature, "K", "°C", -1}, english()),
          panelOf("too much", {length, "pc", "nm", 1e300}, english()),
          panelOf("angle", {angle, "°", "rad", 180}, german())};
}

const GalleryEntry converterEntries[] = {{"converter", converterGallery},
                                         {"converter-panels", converterPanels}};

} // namespace tavrin
