#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

struct ViewPainter::Caches {
  TextEngine text;
  LayerCache layers;
  QString family = interfaceFontFamily();
};

ViewPainter::ViewPainter() : caches_(std::make_unique<Caches>()) {}
ViewPainter::~ViewPainter() = default;
ViewPainter::ViewPainter(ViewPainter&&) noexcept = default;
ViewPainter& ViewPainter::operator=(ViewPainter&&) noexcept = default;

/// What was shaped and painted in another font is of no use.
ViewPainter::Caches& ViewPainter::caches() {
  if (caches_->family != interfaceFontFamily())
    caches_ = std::make_unique<Caches>();
  return *caches_;
}

void ViewPainter::paint(QPainter& painter, const AnyView& view, const QRectF& rect, double scale) {
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  Caches& caches = this->caches();
  ViewContext context(painter, scale, caches.text, caches.layers);
  caches.layers.beginPainting();
  view.paint(context, rect);
  caches.layers.endPainting();
  buttons_ = std::move(context.buttons);
  elements_ = std::move(context.elements);
}

QSizeF ViewPainter::measure(const AnyView& view, const QSizeF& offer, double scale) {
  QPainter idle;
  Caches& caches = this->caches();
  ViewContext context(idle, scale, caches.text, caches.layers);
  return view.measure(context, offer);
}

const ViewAction* ViewPainter::buttonAt(QPointF point) const {
  const auto found =
      std::find_if(buttons_.rbegin(), buttons_.rend(),
                   [&](const ViewButton& button) { return button.rect.contains(point); });
  return found == buttons_.rend() ? nullptr : &found->action;
}

bool ViewRenderer::render(const AnyView& view, const QSizeF& size, double scale) {
  const QString family = interfaceFontFamily();
  if (view_ && *view_ == view && size_ == size && scale_ == scale && family_ == family)
    return false;
  const QSize pixels(std::max(static_cast<int>(std::lround(size.width() * scale)), 1),
                     std::max(static_cast<int>(std::lround(size.height() * scale)), 1));
  if (image_.size() != pixels)
    image_ = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
  image_.fill(Qt::transparent);
  QPainter painter(&image_);
  painter.scale(scale, scale);
  painter_.paint(painter, view, {QPointF(0, 0), size}, scale);
  view_ = view;
  size_ = size;
  scale_ = scale;
  family_ = family;
  return true;
}

} // namespace tavrin
