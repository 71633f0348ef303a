#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"

#include "TavrinCore/Text/Numbers.h"
#include "TavrinWidgetsUI/Kit/Pictures/Fill.h"
#include "TavrinWidgetsUI/Kit/Pictures/SymbolTable.h"

#include <QPainter>
#include <QPainterPathStroker>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>

namespace tavrin {

namespace {

constexpr double grid = 24;
constexpr double defaultStroke = 2;
/// Areas are put together of straight pieces half a unit fine: on the grid they would show.
constexpr double precision = 16;
constexpr std::string_view fallbackName = "questionmark.square";

/// Reads one drawing of the table into the area that it inks.
class SymbolReader {
public:
  explicit SymbolReader(std::string_view drawing) : rest_(drawing) {}

  QPainterPath read() {
    while (skipSpace()) {
      const char command = rest_.front();
      rest_.remove_prefix(1);
      if (std::string_view("sfbkc").find(command) != std::string_view::npos) {
        finishGroup();
        kind_ = command;
      } else if (command == 'w') {
        finishGroup();
        stroke_ = number();
      } else {
        extend(command);
      }
    }
    finishGroup();
    return QTransform::fromScale(1 / precision, 1 / precision).map(area_);
  }

private:
  bool skipSpace() {
    while (!rest_.empty() && rest_.front() == ' ')
      rest_.remove_prefix(1);
    return !rest_.empty();
  }

  double number() {
    skipSpace();
    double value = 0;
    const auto [end, error] = doubleFromChars(rest_.data(), rest_.data() + rest_.size(), value);
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return value;
  }

  QPointF point() {
    const double x = number();
    return {x, number()};
  }

  void arc(bool isJoined) {
    const QPointF centre = point();
    const double radius = number();
    const double start = number();
    const double sweep = number();
    const QRectF box(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius));
    if (!isJoined)
      group_.arcMoveTo(box, -start);
    group_.arcTo(box, -start, -sweep);
  }

  void extend(char command) {
    switch (command) {
    case 'M':
      return group_.moveTo(point());
    case 'L':
      return group_.lineTo(point());
    case 'H':
      return group_.lineTo(number(), group_.currentPosition().y());
    case 'V':
      return group_.lineTo(group_.currentPosition().x(), number());
    case 'C': {
      const QPointF first = point();
      const QPointF second = point();
      return group_.cubicTo(first, second, point());
    }
    case 'Q': {
      const QPointF control = point();
      return group_.quadTo(control, point());
    }
    case 'O': {
      const QPointF centre = point();
      const double radius = number();
      return group_.addEllipse(centre, radius, radius);
    }
    case 'E': {
      const QPointF centre = point();
      const double width = number();
      return group_.addEllipse(centre, width, number());
    }
    case 'R': {
      const QPointF corner = point();
      const QPointF size = point();
      const double radius = number();
      return group_.addRoundedRect({corner, QSizeF(size.x(), size.y())}, radius, radius);
    }
    case 'A':
    case 'a':
      return arc(command == 'A');
    default:
      return group_.closeSubpath();
    }
  }

  QPainterPath stroked() const {
    QPainterPathStroker stroker;
    stroker.setWidth(stroke_);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    stroker.setCurveThreshold(0.05);
    return stroker.createStroke(group_);
  }

  void finishGroup() {
    if (group_.isEmpty())
      return;
    group_.setFillRule(Qt::WindingFill);
    const auto finely = QTransform::fromScale(precision, precision);
    if (kind_ == 'f' || kind_ == 'b')
      area_ = area_.united(finely.map(group_));
    if (kind_ == 's' || kind_ == 'b')
      area_ = area_.united(finely.map(stroked()));
    if (kind_ == 'c')
      area_ = area_.subtracted(finely.map(group_));
    if (kind_ == 'k')
      area_ = area_.subtracted(finely.map(stroked()));
    group_ = {};
  }

  std::string_view rest_;
  char kind_ = 's';
  double stroke_ = defaultStroke;
  QPainterPath group_;
  QPainterPath area_;
};

std::optional<std::size_t> indexOf(std::string_view name) {
  const auto found = std::lower_bound(
      symbolTable.begin(), symbolTable.end(), name,
      [](const SymbolDrawing& symbol, std::string_view wanted) { return symbol.name < wanted; });
  if (found == symbolTable.end() || found->name != name)
    return std::nullopt;
  return static_cast<std::size_t>(found - symbolTable.begin());
}

} // namespace

QPainterPath symbolPath(std::string_view name) {
  // Areas are pure functions of the table; a process shows a handful of them.
  thread_local std::array<std::optional<QPainterPath>, symbolTable.size()> areas;
  const auto index = indexOf(name);
  if (!index)
    return symbolPath(fallbackName);
  auto& area = areas[*index];
  if (!area)
    area = SymbolReader(symbolTable[*index].drawing).read();
  return *area;
}

void drawSymbol(QPainter& painter, std::string_view name, const QRectF& rect,
                const QColor& colour) {
  const double side = std::min(rect.width(), rect.height());
  if (side <= 0)
    return;
  const QTransform before = painter.worldTransform();
  painter.translate(rect.center() - QPointF(side / 2, side / 2));
  painter.scale(side / grid, side / grid);
  fillPath(painter, symbolPath(name), colour);
  painter.setWorldTransform(before);
}

bool hasSymbol(std::string_view name) {
  return indexOf(name).has_value();
}

std::vector<std::string_view> symbolNames() {
  std::vector<std::string_view> names;
  for (const SymbolDrawing& symbol : symbolTable)
    names.push_back(symbol.name);
  return names;
}

} // namespace tavrin
