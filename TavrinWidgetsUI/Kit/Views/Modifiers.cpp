#include "TavrinWidgetsUI/Kit/Views/Modifiers.h"

#include "TavrinWidgetsUI/Kit/Pictures/Fill.h"
#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavrin {

QRectF aligned(const QSizeF& size, const QRectF& rect, Alignment alignment, bool isMirrored) {
  const int leftwards = static_cast<int>(alignment) % 3;
  const int column = isMirrored ? 2 - leftwards : leftwards;
  const int row = static_cast<int>(alignment) / 3;
  return {rect.x() + (rect.width() - size.width()) * column / 2,
          rect.y() + (rect.height() - size.height()) * row / 2, size.width(), size.height()};
}

namespace modifiers {

namespace {

struct Padding {
  AnyView content;
  Insets insets;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    const double dx = insets.left + insets.right;
    const double dy = insets.top + insets.bottom;
    const QSizeF inner = content.measure(
        context, {std::max(offer.width() - dx, 0.0), std::max(offer.height() - dy, 0.0)});
    return {inner.width() + dx, inner.height() + dy};
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    const double left = context.isMirrored ? insets.right : insets.left;
    const double right = context.isMirrored ? insets.left : insets.right;
    content.paint(context, rect.adjusted(left, insets.top, -right, -insets.bottom));
  }
  bool operator==(const Padding&) const = default;
};

struct Frame {
  AnyView content;
  FrameLimits limits;
  Alignment alignment;

  static double offered(double offer, const std::optional<double>& min,
                        const std::optional<double>& max) {
    return std::max(std::min(offer, max.value_or(unbounded)), min.value_or(0));
  }
  static double taken(double offer, double content, const std::optional<double>& min,
                      const std::optional<double>& max) {
    // What fills its room takes no more than that, however large its content is.
    const double least = min.value_or(!max               ? content
                                      : *max < unbounded ? std::min(content, *max)
                                                         : 0);
    return max ? std::max(std::min(offer, *max), least) : std::max(content, least);
  }
  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    const QSizeF inner =
        content.measure(context, {offered(offer.width(), limits.minWidth, limits.maxWidth),
                                  offered(offer.height(), limits.minHeight, limits.maxHeight)});
    return {taken(offer.width(), inner.width(), limits.minWidth, limits.maxWidth),
            taken(offer.height(), inner.height(), limits.minHeight, limits.maxHeight)};
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    content.paint(context, aligned(content.measure(context, rect.size()), rect, alignment,
                                   context.isMirrored));
  }
  bool operator==(const Frame&) const = default;
};

struct Background {
  AnyView content;
  AnyView under;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    under.paint(context, rect);
    content.paint(context, rect);
  }
  bool operator==(const Background&) const = default;
};

struct Overlay {
  AnyView content;
  AnyView above;
  Alignment alignment;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    content.paint(context, rect);
    above.paint(context,
                aligned(above.measure(context, rect.size()), rect, alignment, context.isMirrored));
  }
  bool operator==(const Overlay&) const = default;
};

struct Clip {
  AnyView content;
  Shape shape;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    context.painter.save();
    context.painter.setClipPath(shape.outline(rect), Qt::IntersectClip);
    content.paint(context, rect);
    context.painter.restore();
  }
  bool operator==(const Clip&) const = default;
};

struct Opacity {
  AnyView content;
  double opacity;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    const double before = context.painter.opacity();
    context.painter.setOpacity(before * opacity);
    content.paint(context, rect);
    context.painter.setOpacity(before);
  }
  bool operator==(const Opacity&) const = default;
};

/// Moves and turns the content's picture; a quarter turn swaps the room's sides too.
struct Transform {
  AnyView content;
  double degrees = 0;
  QPointF shift;
  bool swapsSides = false;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    if (!swapsSides)
      return content.measure(context, offer);
    return content.measure(context, offer.transposed()).transposed();
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    const QSizeF size = swapsSides ? rect.size().transposed() : rect.size();
    const QTransform before = context.painter.worldTransform();
    context.painter.translate(rect.center() +
                              QPointF(context.isMirrored ? -shift.x() : shift.x(), shift.y()));
    context.painter.rotate(degrees);
    content.paint(context, {QPointF(-size.width() / 2, -size.height() / 2), size});
    context.painter.setWorldTransform(before);
  }
  bool operator==(const Transform&) const = default;
};

struct Button {
  AnyView content;
  ViewAction action;
  QString label;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    context.addElement({label, {}, rect, true});
    context.addButton({rect, action});
    ++context.spokenFor;
    content.paint(context, rect);
    --context.spokenFor;
  }
  bool operator==(const Button&) const = default;
};

struct Accessibility {
  AnyView content;
  QString label;
  QString value;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    if (!context.spokenFor && !label.isEmpty())
      context.addElement({label, value, rect});
    ++context.spokenFor;
    content.paint(context, rect);
    --context.spokenFor;
  }
  bool operator==(const Accessibility&) const = default;
};

struct Unmirrored {
  AnyView content;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    const bool before = std::exchange(context.isMirrored, false);
    content.paint(context, rect);
    context.isMirrored = before;
  }
  bool operator==(const Unmirrored&) const = default;
};

struct Cached {
  AnyView content;
  /// Kept even within another kept layer, which can then be painted again from it.
  bool isBase = false;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return content.measure(context, offer);
  }
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Cached&) const = default;
};

/// Of what reaches over its frame, as the dots and bowls of letters do, in points.
constexpr double layerMargin = 3;

KeptLayer paintedLayer(ViewContext& context, const AnyView& content, const QRectF& within,
                       double scale, int margin) {
  KeptLayer layer;
  layer.view = content;
  layer.within = within;
  layer.scale = scale;
  layer.image = QImage(static_cast<int>(std::ceil(within.right())) + 2 * margin,
                       static_cast<int>(std::ceil(within.bottom())) + 2 * margin,
                       QImage::Format_ARGB32_Premultiplied);
  layer.image.fill(Qt::transparent);
  QPainter painter(&layer.image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  painter.translate(within.topLeft() + QPointF(margin, margin));
  painter.scale(scale, scale);
  ViewContext inner(painter, scale, context.text, context.layers);
  inner.spokenFor = context.spokenFor;
  inner.isMirrored = context.isMirrored;
  inner.isInLayer = true;
  content.paint(inner, {QPointF(0, 0), within.size() / scale});
  layer.buttons = std::move(inner.buttons);
  layer.elements = std::move(inner.elements);
  layer.bases = std::move(inner.bases);
  return layer;
}

void Cached::paint(ViewContext& context, const QRectF& rect) const {
  QPainter& painter = context.painter;
  const QTransform world = painter.worldTransform();
  if ((context.isInLayer && !isBase) || world.type() > QTransform::TxScale || rect.isEmpty()) {
    content.paint(context, rect);
    return;
  }
  // The device may have pixels of its own per logical unit, as a widget's has.
  const double ratio = painter.device()->devicePixelRatio();
  const QRectF pixels = (world * QTransform::fromScale(ratio, ratio)).mapRect(rect);
  const QPointF corner(std::floor(pixels.x()), std::floor(pixels.y()));
  const QRectF within = pixels.translated(-corner);
  const double scale = pixels.width() / rect.width();
  const int margin = isBase ? 0 : static_cast<int>(std::ceil(layerMargin * scale));
  KeptLayer* layer = context.layers.find(content, within, scale);
  if (!layer)
    layer = context.layers.add(paintedLayer(context, content, within, scale, margin));
  if (isBase)
    context.bases.push_back(layer);
  for (ViewButton button : layer->buttons) {
    button.rect.translate(rect.topLeft());
    context.addButton(std::move(button));
  }
  for (AccessibleElement element : layer->elements) {
    element.rect.translate(rect.topLeft());
    context.addElement(std::move(element));
  }
  drawPixels(painter, corner.toPoint() - QPoint(margin, margin), layer->image);
}

} // namespace

AnyView padding(AnyView content, const Insets& insets) {
  return Padding{std::move(content), insets};
}
AnyView frame(AnyView content, const FrameLimits& limits, Alignment alignment) {
  return Frame{std::move(content), limits, alignment};
}
AnyView background(AnyView content, AnyView under) {
  return Background{std::move(content), std::move(under)};
}
AnyView overlay(AnyView content, AnyView above, Alignment alignment) {
  return Overlay{std::move(content), std::move(above), alignment};
}
AnyView clip(AnyView content, const Shape& shape) {
  return Clip{std::move(content), shape};
}
AnyView opacity(AnyView content, double opacity) {
  return Opacity{std::move(content), opacity};
}
AnyView rotation(AnyView content, double degrees) {
  return Transform{std::move(content), degrees, {}, false};
}
AnyView quarterTurns(AnyView content, int turns) {
  return Transform{std::move(content), 90.0 * turns, {}, turns % 2 != 0};
}
AnyView offset(AnyView content, double dx, double dy) {
  return Transform{std::move(content), 0, {dx, dy}, false};
}
AnyView button(AnyView content, const ViewAction& action, const QString& label) {
  return Button{std::move(content), action, label};
}
AnyView accessibility(AnyView content, const QString& label, const QString& value) {
  return Accessibility{std::move(content), label, value};
}
AnyView unmirrored(AnyView content) {
  return Unmirrored{std::move(content)};
}
AnyView cached(AnyView content) {
  return Cached{std::move(content), false};
}
AnyView cachedAsBase(AnyView content) {
  return Cached{std::move(content), true};
}

} // namespace modifiers

} // namespace tavrin
