#include "TavrinWidgetsUI/Kit/Views/View.h"

#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"

#include <algorithm>
#include <numeric>

namespace tavrin {

Symbol Symbol::size(double points) const {
  Symbol result = *this;
  result.side = points;
  return result;
}

Symbol Symbol::colour(const QColor& colour) const {
  Symbol result = *this;
  result.inkColour = colour;
  return result;
}

QSizeF Symbol::measure(ViewContext&, const QSizeF& offer) const {
  const double room = std::min(offer.width(), offer.height());
  return side > 0 ? QSizeF(side, side) : QSizeF(room, room);
}

void Symbol::paint(ViewContext& context, const QRectF& rect) const {
  drawSymbol(context.painter, name, rect, inkColour);
}

Symbol symbol(std::string name) {
  Symbol result;
  result.name = std::move(name);
  return result;
}

Picture Picture::covering() const {
  Picture result = *this;
  result.coversRoom = true;
  return result;
}

Picture Picture::pixelated() const {
  Picture result = *this;
  result.isPixelated = true;
  return result;
}

bool Picture::operator==(const Picture& other) const {
  return image.cacheKey() == other.image.cacheKey() && coversRoom == other.coversRoom &&
         isPixelated == other.isPixelated;
}

QSizeF Picture::measure(ViewContext&, const QSizeF& offer) const {
  if (image.isNull() || coversRoom)
    return coversRoom ? offer : QSizeF(0, 0);
  const QSizeF natural = image.deviceIndependentSize();
  const double share = std::min(offer.width() / natural.width(), offer.height() / natural.height());
  return share < unbounded ? natural * share : natural;
}

void Picture::paint(ViewContext& context, const QRectF& rect) const {
  if (image.isNull() || rect.isEmpty())
    return;
  const QSizeF natural = image.size();
  QRectF target = rect;
  QRectF source(QPointF(0, 0), natural);
  if (coversRoom) {
    source = aligned(rect.size().scaled(natural, Qt::KeepAspectRatio), source, Alignment::centre);
  } else {
    target = aligned(natural.scaled(rect.size(), Qt::KeepAspectRatio), rect, Alignment::centre);
  }
  context.painter.setRenderHint(QPainter::SmoothPixmapTransform, !isPixelated);
  context.painter.drawImage(target, image, source);
  context.painter.setRenderHint(QPainter::SmoothPixmapTransform);
}

Picture image(const QImage& image) {
  Picture result;
  result.image = image;
  return result;
}

namespace {

/// Greedy along the axis of its stack only.
struct Spacer {
  double minimum = 0;

  QSizeF measure(ViewContext&, const QSizeF& offer) const {
    return {std::max(offer.width(), minimum), std::max(offer.height(), minimum)};
  }
  void paint(ViewContext&, const QRectF&) const {}
  bool operator==(const Spacer&) const = default;
};

struct FirstFitting {
  std::vector<AnyView> candidates;

  /// The first candidate that fits, else the last, and its size.
  std::pair<const AnyView*, QSizeF> choice(ViewContext& context, const QSizeF& offer) const {
    constexpr double tolerance = 0.01;
    QSizeF size;
    for (const AnyView& view : candidates) {
      size = view.measure(context, offer);
      if (size.width() <= offer.width() + tolerance && size.height() <= offer.height() + tolerance)
        return {&view, size};
    }
    return {&candidates.back(), size};
  }
  QSizeF measure(ViewContext& context, const QSizeF& offer) const {
    return choice(context, offer).second;
  }
  void paint(ViewContext& context, const QRectF& rect) const {
    choice(context, rect.size()).first->paint(context, rect);
  }
  bool operator==(const FirstFitting&) const = default;
};

Stack stacked(Stack::Axis axis, std::vector<AnyView> children) {
  Stack result;
  result.axis = axis;
  result.children = std::move(children);
  return result;
}

/// A stack's sizes as if it were a row: x along the axis.
struct Row {
  const Stack& stack;
  ViewContext& context;

  bool isRow() const { return stack.axis == Stack::Axis::horizontal; }
  QSizeF turned(const QSizeF& size) const { return isRow() ? size : size.transposed(); }
  QSizeF sizeOf(const AnyView& child, double along, double across) const {
    QSizeF size = turned(child.measure(context, turned({along, across})));
    if (child.as<Spacer>())
      size.setHeight(0);
    return size;
  }
  /// Sizes of all children in a room; those that stretch without end take nothing of an endless
  /// room.
  std::vector<QSizeF> sizes(const QSizeF& room) const {
    const std::size_t count = stack.children.size();
    std::vector<QSizeF> result(count);
    if (room.width() >= unbounded) {
      std::transform(stack.children.begin(), stack.children.end(), result.begin(),
                     [&](const AnyView& child) { return sizeOf(child, unbounded, room.height()); });
      return result;
    }
    struct Need {
      std::size_t index;
      bool isSpacer;
      double flexibility;
      double least;
    };
    std::vector<Need> needs;
    needs.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const AnyView& child = stack.children[i];
      if (child.isEmpty())
        continue;
      result[i] = sizeOf(child, unbounded, room.height());
      const double most = result[i].width();
      const double least = most > 0 ? sizeOf(child, 0, room.height()).width() : 0;
      needs.push_back({i, child.as<Spacer>() != nullptr, most - least, std::min(most, least)});
    }
    const auto shown = needs.size();
    // Spacers come last and get what nobody else wants.
    std::stable_sort(needs.begin(), needs.end(), [](const Need& a, const Need& b) {
      return std::pair(a.isSpacer, a.flexibility) < std::pair(b.isSpacer, b.flexibility);
    });
    auto claims = static_cast<std::size_t>(
        std::count_if(needs.begin(), needs.end(), [](const Need& need) { return !need.isSpacer; }));
    double left = room.width() - stack.gap * double(shown > 0 ? shown - 1 : 0);
    double leastOfRest =
        std::accumulate(needs.begin(), needs.end(), 0.0,
                        [](double sum, const Need& need) { return sum + need.least; });
    for (std::size_t i = 0; i < needs.size(); ++i) {
      if (i == claims)
        claims = needs.size();
      double share = std::max(left, 0.0) / double(claims - i);
      leastOfRest -= needs[i].least;
      // What does not grow with its room may choose among all that the others can do without.
      if (needs[i].flexibility <= 0)
        share = std::max(share, left - leastOfRest);
      QSizeF& size = result[needs[i].index];
      // One that is as wide in no room as in all of it was measured already.
      if (needs[i].flexibility != 0 || share < size.width())
        size = sizeOf(stack.children[needs[i].index], share, room.height());
      left -= size.width();
    }
    return result;
  }
  QSizeF total(const std::vector<QSizeF>& sizes) const {
    QSizeF sum(0, 0);
    std::size_t shown = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      if (stack.children[i].isEmpty())
        continue;
      ++shown;
      sum = {sum.width() + sizes[i].width(), std::max(sum.height(), sizes[i].height())};
    }
    return {sum.width() + stack.gap * double(shown > 0 ? shown - 1 : 0), sum.height()};
  }
};

} // namespace

Stack Stack::spacing(double points) const {
  Stack result = *this;
  result.gap = points;
  return result;
}

Stack Stack::align(Alignment alignment) const {
  Stack result = *this;
  result.childAlignment = alignment;
  return result;
}

QSizeF Stack::measure(ViewContext& context, const QSizeF& offer) const {
  const Row row{*this, context};
  return row.turned(row.total(row.sizes(row.turned(offer))));
}

void Stack::paint(ViewContext& context, const QRectF& rect) const {
  const Row row{*this, context};
  const std::vector<QSizeF> sizes = row.sizes(row.turned(rect.size()));
  const QSizeF total = row.total(sizes);
  // Children that leave room stand in its middle along the axis.
  double along = (row.turned(rect.size()).width() - total.width()) / 2;
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (children[i].isEmpty())
      continue;
    const QSizeF size = row.turned(sizes[i]);
    const double x = context.isMirrored ? rect.right() - along - size.width() : rect.x() + along;
    const QRectF slot = row.isRow()
                            ? QRectF(x, rect.y(), size.width(), rect.height())
                            : QRectF(rect.x(), rect.y() + along, rect.width(), size.height());
    children[i].paint(context, aligned(size, slot, childAlignment, context.isMirrored));
    along += sizes[i].width() + gap;
  }
}

Stack hstack(std::vector<AnyView> children) {
  return stacked(Stack::Axis::horizontal, std::move(children));
}

Stack vstack(std::vector<AnyView> children) {
  return stacked(Stack::Axis::vertical, std::move(children));
}

Layers Layers::align(Alignment alignment) const {
  Layers result = *this;
  result.childAlignment = alignment;
  return result;
}

QSizeF Layers::measure(ViewContext& context, const QSizeF& offer) const {
  QSizeF size(0, 0);
  for (const AnyView& child : children)
    size = size.expandedTo(child.measure(context, offer));
  return size;
}

void Layers::paint(ViewContext& context, const QRectF& rect) const {
  for (const AnyView& child : children)
    child.paint(context, aligned(child.measure(context, rect.size()), rect, childAlignment,
                                 context.isMirrored));
}

Layers zstack(std::vector<AnyView> children) {
  Layers result;
  result.children = std::move(children);
  return result;
}

AnyView firstFitting(std::vector<AnyView> candidates) {
  if (candidates.empty())
    return {};
  return FirstFitting{std::move(candidates)};
}

AnyView spacer(double minimum) {
  return Spacer{minimum};
}

void paintFreely(ViewContext& context, const std::function<void(QPainter&)>& drawing) {
  context.painter.save();
  drawing(context.painter);
  context.painter.restore();
}

} // namespace tavrin
