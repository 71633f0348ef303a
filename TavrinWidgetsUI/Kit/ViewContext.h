#pragma once

#include "TavrinWidgetsUI/Kit/AnyView.h"

#include <QPainter>
#include <vector>

namespace tavrin {

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

/// What views need while they are measured and painted. Points; `scale` is pixels per point.
class ViewContext {
public:
  ViewContext(QPainter& painter, double scale, TextEngine& text, LayerCache& layers)
      : painter(painter), scale(scale), text(text), layers(layers) {}

  QPainter& painter;
  const double scale;
  TextEngine& text;
  LayerCache& layers;
  std::vector<ViewButton> buttons;
  std::vector<AccessibleElement> elements;
  /// How many parts around the current one speak for what stands in them.
  int spokenFor = 0;
};

} // namespace tavrin
