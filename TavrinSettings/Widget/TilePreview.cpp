#include "TavrinSettings/Widget/TilePreview.h"

#include "TavrinSettings/Base/VisibleTick.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QPainter>
#include <algorithm>

namespace tavrin {
namespace {

constexpr double tileSide = 112;
constexpr double wideSide = 72;
constexpr int margin = 18;

} // namespace

TilePreview::TilePreview(PageServices& services, QWidget* parent)
    : QWidget(parent), services_(services) {
  setAccessibleName(worded("Preview"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  new VisibleTick(this, [this] { tick(); });
}

/// As wide as it is on the strip; one that is a square there is shown at the width it could have.
TileSize TilePreview::wideSize() const {
  const int most = widget_.kind.maxSpan();
  const int span = widget_.span > 1
                       ? widget_.span
                       : std::clamp(widget_.kind.defaultSpan(), std::min(2, most), most);
  return {wideSide, span};
}

void TilePreview::setRecord(const DockWidget& widget) {
  if (widget_ == widget)
    return;
  widget_ = widget;
  setAccessibleDescription(QString::fromStdString(widget.name));
  updateGeometry();
  update();
}

void TilePreview::setUpright(bool isUpright) {
  if (std::exchange(isUpright_, isUpright) != isUpright)
    updateGeometry();
}

QSize TilePreview::sizeHint() const {
  const double widest = TileSize{wideSide, 4}.width();
  return isUpright_ ? QSize(static_cast<int>(widest) + 2 * margin,
                            static_cast<int>(tileSide + wideSide) + 3 * margin)
                    : QSize(static_cast<int>(tileSide + widest) + 3 * margin,
                            static_cast<int>(tileSide) + 2 * margin);
}

void TilePreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintDesktopGround(painter, QRectF(rect()), services_.appearance.dark);
  const TileSize square{tileSide, 1};
  const TileSize wide = wideSize();
  if (!wide.isWide()) {
    services_.stage.paint(painter, widget_, square,
                          {(width() - tileSide) / 2, (height() - tileSide) / 2});
    return;
  }
  if (isUpright_) {
    const double top = (height() - tileSide - wideSide - margin) / 2;
    services_.stage.paint(painter, widget_, square, {(width() - tileSide) / 2, top});
    services_.stage.paint(painter, widget_, wide,
                          {(width() - wide.width()) / 2, top + tileSide + margin});
  } else {
    const double left = (width() - tileSide - wide.width() - margin) / 2;
    services_.stage.paint(painter, widget_, square, {left, (height() - tileSide) / 2});
    services_.stage.paint(painter, widget_, wide,
                          {left + tileSide + margin, (height() - wideSide) / 2});
  }
}

void TilePreview::tick() {
  if (!followsTime(widget_.kind))
    return;
  const AnyView now = services_.stage.view(widget_, wideSize());
  if (now != painted_)
    update();
  painted_ = now;
}

} // namespace tavrin
