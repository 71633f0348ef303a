#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"

#include "TavrinWidgetsUI/Kit/Views/Text.h"

namespace tavrin {

QFont panelFont(PanelTextStyle style) {
  QFont font(interfaceFontFamily());
  font.setPixelSize(13);
  switch (style) {
  case PanelTextStyle::body:
  case PanelTextStyle::secondary:
  case PanelTextStyle::trouble:
    break;
  case PanelTextStyle::title:
    font.setWeight(QFont::DemiBold);
    break;
  case PanelTextStyle::heading:
    font.setPixelSize(17);
    font.setWeight(QFont::DemiBold);
    break;
  case PanelTextStyle::caption:
    font.setPixelSize(11);
    break;
  case PanelTextStyle::section:
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    break;
  }
  return font;
}

} // namespace tavrin
