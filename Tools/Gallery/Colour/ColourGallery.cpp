#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinSettings/Samples/SampleValues.h"
#include "TavrinWidgetsUI/Colour/ColourPanelView.h"
#include "TavrinWidgetsUI/Colour/ColourViews.h"
#include "Tools/Gallery/Gallery.h"

namespace tavrin {
namespace {

constexpr auto historyOf = samples::colours;

ColourHistory sixty() {
  ColourHistory history;
  for (int i = 0; i < 60; ++i) {
    const QColor hue = QColor::fromHslF(static_cast<float>(i) / 60, 0.7F,
                                        0.3F + 0.4F * static_cast<float>(i % 7) / 7);
    PickedColour colour;
    colour.id = UUID::random();
    colour.red = hue.red();
    colour.green = hue.green();
    colour.blue = hue.blue();
    colour.isPinned = i % 11 == 3;
    history.colours.push_back(colour);
  }
  return history;
}

GalleryPanel panelOf(const char* name, const ColourHistory& history, ColourFormat format,
                     const std::string& trouble = {}) {
  return {name, colourPickerTint, [=](const PanelAppearance& look) {
            static std::vector<std::unique_ptr<ColourHistory>> kept;
            kept.push_back(std::make_unique<ColourHistory>(history));
            const auto* shown = kept.back().get();
            return new ColourPanelView(
                look, {.name = [] { return std::string("Colour Picker"); },
                       .history = [shown]() -> const ColourHistory& { return *shown; },
                       .settings =
                           [format] {
                             return ColourPickerSettings{format, true, 24, {}};
                           },
                       .trouble = [trouble] { return trouble; },
                       .pick = [] {},
                       .copy = [](const PickedColour&, ColourFormat) {},
                       .togglePin = [](const UUID&) {},
                       .remove = [](const UUID&) {},
                       .clearUnpinned = [] {},
                       .setFormat = [](ColourFormat) {},
                       .edit = [] {}});
          }};
}

} // namespace

GallerySheet colourGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const ColourHistory& history, ColourFormat format) {
    for (const int span : {1, 2, 3})
      sheet.push_back({name, span, [=](const TileSize& size) {
                         const ColourPickerSettings settings{format, true, 24, {}};
                         return size.isWide() ? colourWideTile(
                                                    history, settings, size, [] {}, [] {})
                                              : colourTileIcon(history, settings, size);
                       }});
  };
  show("empty", {}, ColourFormat::hex);
  show("one", historyOf({0xFF8000}), ColourFormat::hex);
  show("five", historyOf({0x2E9BD6, 0xF2603C, 0x30D158, 0xFFD60A, 0xBF5AF2}), ColourFormat::rgb);
  show("white", historyOf({0xFFFFFF, 0xEEEEEE}), ColourFormat::hsl);
  show("black", historyOf({0x000000, 0x0000FF, 0x121214}), ColourFormat::nsColor);
  show("sixty", sixty(), ColourFormat::cssVariable);
  return sheet;
}

GalleryPanels colourPanels() {
  return {panelOf("empty", {}, ColourFormat::hex),
          panelOf("one", historyOf({0xFF8000}), ColourFormat::hex),
          panelOf("five", historyOf({0xFFFFFF, 0xF2603C, 0x30D158, 0xFFD60A, 0xBF5AF2}),
                  ColourFormat::rgb),
          panelOf("sixty", sixty(), ColourFormat::nsColor),
          panelOf("trouble", historyOf({0x000000, 0x0000FF}), ColourFormat::hsl,
                  "Failed to pick a colour because this desktop does not show the screen to "
                  "programs")};
}

const GalleryEntry colourEntries[] = {{"colour", colourGallery}, {"colour-panels", colourPanels}};

} // namespace tavrin
