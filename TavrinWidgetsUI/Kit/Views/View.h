#pragma once

#include "TavrinWidgetsUI/Kit/Views/AnyView.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/Modifiers.h"
#include "TavrinWidgetsUI/Kit/Views/Shape.h"
#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <QImage>
#include <QPainter>
#include <type_traits>
#include <vector>

namespace tavrin {

/// One of the project's symbols (see Symbols.h), as large as offered unless it has a size.
struct Symbol : Modifiers<Symbol> {
  std::string name;
  QColor inkColour = QColor(255, 255, 255, 235);
  /// Points; 0 takes the largest square offered.
  double side = 0;

  Symbol size(double points) const;
  Symbol colour(const QColor& colour) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Symbol&) const = default;
};
Symbol symbol(std::string name);

/// A picture in the room offered, its proportions kept. Equal when it is the same QImage.
struct Picture : Modifiers<Picture> {
  QImage image;
  /// Covers the room and is cropped, instead of lying whole in it.
  bool coversRoom = false;
  /// Pixels stay squares: for pixel art.
  bool isPixelated = false;

  Picture covering() const;
  Picture pixelated() const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Picture& other) const;
};
Picture image(const QImage& image);

/// Views in a row or a column. The least flexible gets its room first, the rest is shared.
struct Stack : Modifiers<Stack> {
  enum class Axis { horizontal, vertical };

  Axis axis = Axis::horizontal;
  std::vector<AnyView> children;
  double gap = 0;
  /// Across the axis.
  Alignment childAlignment = Alignment::centre;

  Stack spacing(double points) const;
  Stack align(Alignment alignment) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Stack&) const = default;
};
Stack hstack(std::vector<AnyView> children);
Stack vstack(std::vector<AnyView> children);

/// Views on top of each other, the last one uppermost.
struct Layers : Modifiers<Layers> {
  std::vector<AnyView> children;
  Alignment childAlignment = Alignment::centre;

  Layers align(Alignment alignment) const;

  QSizeF measure(ViewContext& context, const QSizeF& offer) const;
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Layers&) const = default;
};
Layers zstack(std::vector<AnyView> children);

/// The first of the views that can do with the room offered, else the last.
AnyView firstFitting(std::vector<AnyView> candidates);

/// Takes what room is left along the axis of its stack.
AnyView spacer(double minimum = 0);

/// A free drawing of what `key` holds, and of nothing else: hence a function without captures.
/// Takes all the room offered. Two are equal when key and function are.
template <std::equality_comparable Key> struct Canvas : Modifiers<Canvas<Key>> {
  using Painter = void (*)(QPainter& painter, const QRectF& rect, const Key& key);

  Key key;
  Painter painter = nullptr;

  QSizeF measure(ViewContext&, const QSizeF& offer) const { return offer; }
  void paint(ViewContext& context, const QRectF& rect) const;
  bool operator==(const Canvas&) const = default;
};

/// `canvas(levels, [](QPainter& painter, const QRectF& rect, const Levels& levels) { ... })`.
/// Antialiasing is on; pen, brush and transform are restored afterwards.
template <class Key>
AnyView canvas(Key key, std::type_identity_t<typename Canvas<Key>::Painter> painter) {
  return Canvas<Key>{{}, std::move(key), painter};
}

/// The painter of a context, saved and restored around a free drawing.
void paintFreely(ViewContext& context, const std::function<void(QPainter&)>& drawing);

template <std::equality_comparable Key>
void Canvas<Key>::paint(ViewContext& context, const QRectF& rect) const {
  paintFreely(context, [&](QPainter& target) { painter(target, rect, key); });
}

} // namespace tavrin
