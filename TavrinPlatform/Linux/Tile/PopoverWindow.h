#pragma once

#include "TavrinPlatform/Linux/Tile/PopoverLayout.h"

#include <QColor>
#include <QWidget>
#include <functional>

namespace tavrin {

/// What the ground of a panel is painted with.
struct PopoverPalette {
  QColor ground;
  QColor hairline;
  bool operator==(const PopoverPalette&) const = default;

  static PopoverPalette light() { return {QColor(0xF6, 0xF6, 0xF8), QColor(0, 0, 0, 26)}; }
  static PopoverPalette dark() { return {QColor(0x1E, 0x1E, 0x22), QColor(255, 255, 255, 31)}; }
};

/// The window of a panel: ground, arrow, hairline and shadow round the content. Without a
/// compositor it is cut to its outline and has no shadow. Where a window may not choose its
/// place (Wayland) it is an ordinary dialogue without an arrow.
class PopoverWindow final : public QWidget {
public:
  /// `hasPlace`: on Wayland, where a layer shell puts it.
  explicit PopoverWindow(bool hasPlace = false);

  void setContent(QWidget* content);
  QWidget* content() const { return content_; }
  void setPalette(const PopoverPalette& palette);
  /// Takes the layout's body for the content.
  void arrange(const PopoverLayout& layout);
  QPoint home() const { return home_; }
  /// As it was arranged, with its shadow.
  QRect frame() const { return {home_, size()}; }
  /// Body and arrow alone.
  QRect shape() const { return outline_.boundingRect().toAlignedRect().translated(home_); }
  /// Of a hidden window: gives its pixels back, until it is arranged again.
  void releaseSurface() { destroy(); }
  /// Whether a place, in toolkit points of the screen, is on the body or the arrow.
  bool covers(QPoint place) const;

  std::function<void()> onEscape;
  /// The content took other colours.
  std::function<void()> onContentPaletteChange;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent*) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  void paintShadow(QPainter& painter) const;

  QWidget* content_ = nullptr;
  PopoverPalette palette_ = PopoverPalette::light();
  QPainterPath outline_;
  QPoint home_;
  bool hasShadow_ = false;
  bool isPlain_ = false;
};

} // namespace tavrin
