#pragma once

#include "TavrinWidgetsUI/Kit/Views/AnyView.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"

#include <QGuiApplication>
#include <QPainter>
#include <vector>

namespace tavrin {

struct KeptLayer;
class LayerCache;
class TextEngine;

/// A part of a picture that takes clicks; points from the picture's top left.
struct ViewButton {
  QRectF rect;
  ViewAction action;
};

/// A part of a picture as assistive technology sees it.
struct AccessibleElement {
  QString label;
  QString value;
  QRectF rect;
  bool isButton = false;
  bool operator==(const AccessibleElement&) const = default;
};

/// What views need while they are measured and painted. Lengths are points; `scale` is pixels per
/// point.
class ViewContext {
public:
  ViewContext(QPainter& target, double pixelsPerPoint, TextEngine& engine, LayerCache& cache)
      : painter(target), scale(pixelsPerPoint), text(engine), layers(cache),
        fromWorld_(target.isActive() ? target.worldTransform().inverted() : QTransform()) {}

  QPainter& painter;
  const double scale;
  TextEngine& text;
  LayerCache& layers;
  std::vector<ViewButton> buttons;
  std::vector<AccessibleElement> elements;
  /// Leading is at the right: the interface runs from right to left.
  bool isMirrored = QGuiApplication::layoutDirection() == Qt::RightToLeft;
  /// How many parts around the current one speak for what stands in them.
  int spokenFor = 0;
  /// Being painted into a kept layer, inside which no further ones are kept but bases.
  bool isInLayer = false;
  /// The bases that were painted, for the layer that stands on them.
  std::vector<KeptLayer*> bases;

  /// `element.rect` is in the painter's coordinates of the moment.
  void addElement(AccessibleElement element) {
    element.label = plainWords(element.label);
    element.value = plainWords(element.value);
    element.rect = toPicture(element.rect);
    elements.push_back(std::move(element));
  }
  void addButton(ViewButton button) {
    button.rect = toPicture(button.rect);
    buttons.push_back(std::move(button));
  }

private:
  QRectF toPicture(const QRectF& rect) const {
    return (painter.worldTransform() * fromWorld_).mapRect(rect);
  }

  QTransform fromWorld_;
};

} // namespace tavrin
