#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"

#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

double textScale = 1;

} // namespace

double panelTextScale() {
  return textScale;
}

bool setPanelTextScale(double scale) {
  constexpr double steps = 20;
  const double next = std::round(std::clamp(scale, 0.75, 3.0) * steps) / steps;
  return std::exchange(textScale, next) != next;
}

int scaled(double points) {
  return static_cast<int>(std::lround(points * textScale));
}

QFont panelFont(PanelTextStyle style) {
  QFont font(interfaceFontFamily());
  font.setPixelSize(scaled(13));
  switch (style) {
  case PanelTextStyle::body:
  case PanelTextStyle::secondary:
  case PanelTextStyle::trouble:
    break;
  case PanelTextStyle::title:
    font.setWeight(QFont::DemiBold);
    break;
  case PanelTextStyle::heading:
    font.setPixelSize(scaled(17));
    font.setWeight(QFont::DemiBold);
    break;
  case PanelTextStyle::caption:
    font.setPixelSize(scaled(11));
    break;
  case PanelTextStyle::section:
    font.setPixelSize(scaled(11));
    font.setWeight(QFont::DemiBold);
    break;
  }
  return font;
}

} // namespace tavrin
