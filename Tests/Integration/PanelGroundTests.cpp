#include "TavrinPlatform/Linux/Tile/QtPanelPopover.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

/// The popover's own window, as it is painted.
QImage painted() {
  for (auto* widget : QApplication::topLevelWidgets())
    if (auto* window = dynamic_cast<PopoverWindow*>(widget))
      return window->grab().toImage();
  return {};
}

double lightness() {
  const QImage image = painted();
  return image.isNull() ? -1 : image.pixelColor(image.rect().center()).lightnessF();
}

TEST(PanelGround, FollowsItsContentsColoursWhileItIsOpen) {
  QtPanelPopover popover({.prefersReducedMotion = [] { return true; },
                          .prefersDarkAppearance = [] { return false; },
                          .resignedActive = [] {},
                          .hasClosed = [] {},
                          .layers = []() -> LayerShell* { return nullptr; },
                          .strip = [] { return QRect(); }});
  const auto view = [](bool isDark) {
    auto* panel = new PanelView({.dark = isDark});
    panel->setTitle("Panel");
    panel->addSpace(200);
    return panel;
  };
  auto* panel = view(false);
  popover.setContent(panel);
  popover.setContentSize({280, 240});
  popover.show({400, 300}, RectEdge::maxY);
  EXPECT_GT(lightness(), 0.8);
  panel->setAppearance({.dark = true});
  EXPECT_LT(lightness(), 0.3);
  popover.setContent(view(false));
  EXPECT_GT(lightness(), 0.8) << "another panel in its place";
}

} // namespace
} // namespace tavrin::test
