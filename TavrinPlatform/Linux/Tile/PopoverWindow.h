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
///
/// This is the one place that decides the window's geometry. A change of it comes back from the
/// server later, and so do the ones before it: what the toolkit then believes is never made the
/// window's again.
class PopoverWindow final : public QWidget {
public:
  /// `hasPlace`: on Wayland, where a layer shell puts it.
  explicit PopoverWindow(bool hasPlace = false);

  void setContent(QWidget* content);
  QWidget* content() const { return content_; }
  void setPalette(const PopoverPalette& palette);
  /// Takes the layout's body for the content.
  void arrange(const PopoverLayout& layout);
  /// As it was arranged, with its shadow.
  QRect frame() const { return frame_; }
  /// Body and arrow alone.
  QRect shape() const {
    return outline_.boundingRect().toAlignedRect().translated(frame_.topLeft());
  }
  /// Paints everything that far below its place: the panel rises while it appears. The window
  /// itself stays where it is.
  void setLowered(int points);
  /// What the server has for the window, in toolkit points. Where that is not what was asked for,
  /// it is asked for again.
  void holdAgainst(const QRect& actual);
  /// Of a hidden window: gives its pixels back, until it is arranged again.
  void releaseSurface() { destroy(); }
  /// Whether a place, in toolkit points of the screen, is on the body or the arrow.
  bool covers(QPoint place) const;

  /// Shows what is painted in the output's own pixels, in place of the toolkit's where these are
  /// others; whether it does.
  std::function<bool(const std::function<void(QImage&)>& paint)> showPixels;
  std::function<void()> onEscape;
  /// The content took other colours.
  std::function<void()> onContentPaletteChange;

protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent*) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void geometryTold();
  void paintOwnPixels();
  void placeContent();
  void paintShadow(QPainter& painter) const;

  QWidget* content_ = nullptr;
  PopoverPalette palette_ = PopoverPalette::light();
  QPainterPath outline_;
  QRect frame_;
  QRect contentPlace_;
  int lowered_ = 0;
  /// Of this arrangement: who insists on another one gets it.
  int corrections_ = 0;
  bool hasShadow_ = false;
  bool isPlain_ = false;
  bool hasOwnPixels_ = false;
  bool paintsOwnPixels_ = false;
};

} // namespace tavrin
