#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Views/FocusRing.h"

#include <QCommonStyle>
#include <functional>

namespace tavrin {

struct PanelAppearance;

/// Sizes all panels share, in points. Those that hold text grow with it.
namespace panel {
struct TextLength {
  double points;
  operator int() const { return scaled(points); }
};
inline constexpr int padding = 16;
inline constexpr int grid = 8;
inline constexpr TextLength controlHeight{28};
inline constexpr TextLength buttonHeight{30};
inline constexpr TextLength rowHeight{36};
inline constexpr TextLength tallRowHeight{44};
inline constexpr TextLength boxSide{18};
inline constexpr int cornerRadius = 6;
inline constexpr int menuRadius = 8;
inline constexpr int focusRing = focusRingWidth;
inline constexpr TextLength maximumHeight{560};
} // namespace panel

/// Paints every control in the house look. Its colours come from the palette of the widget it
/// paints (`PanelPalette::palette`), so that one style serves light and dark and every tint.
class PanelStyle : public QCommonStyle {
public:
  /// Makes it the application's style, once; the first panel calls it.
  static void install();
  /// Asked each time a menu opens: whether what is clear of a window shows what lies under it. Else
  /// menus are cut to their round corners.
  static void setMixesWindows(std::function<bool()> mixes);
  /// The look of the menus that are no panel's; of `appearance` without its tint.
  static void dressMenus(const PanelAppearance& appearance);
  /// The look of every tooltip, a tile's too; of `appearance` without its tint.
  static void dressToolTips(const PanelAppearance& appearance);

  void polish(QWidget* widget) override;
  void unpolish(QWidget* widget) override;
  /// Leaves the keys for undoing to the window where a field has nothing to undo.
  bool eventFilter(QObject* object, QEvent* event) override;
  using QCommonStyle::polish;
  using QCommonStyle::unpolish;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                       SubControl subControl, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override;
  QPalette standardPalette() const override;

private:
  static std::function<bool()>& mixesWindows();
};

} // namespace tavrin
