#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <string_view>
#include <vector>

class QPainter;

namespace tavrin {

/// Draws the symbol `name` as large as its square fits into `rect`, in the middle. Symbols live on
/// a grid of 24 units with strokes of 2. An unknown name draws a question mark in a square.
void drawSymbol(QPainter& painter, std::string_view name, const QRectF& rect, const QColor& colour);

/// The area the symbol inks, on the grid of 24 units: to be filled, strokes outlined already.
QPainterPath symbolPath(std::string_view name);

bool hasSymbol(std::string_view name);
std::vector<std::string_view> symbolNames();

} // namespace tavrin
