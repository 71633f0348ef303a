#include "Tools/Gallery/ShownTexts.h"

#include "TavrinWidgetsUI/Kit/Views/BodyOutline.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

#include <QAbstractScrollArea>
#include <QFontMetricsF>
#include <QLineEdit>
#include <QPaintEngine>
#include <algorithm>
#include <cmath>
#include <map>

namespace tavrin {

namespace {

constexpr double scale = 2;
/// Points by which letters may lean over an edge: what rounding to whole pixels does.
constexpr double slack = 0.6;
/// The same of letters that the toolkit measures, in whole points.
constexpr double measuredSlack = 1.6;

using Lines = std::vector<TextEngine::DrawnLine>;

/// The view on `ground`, with its texts or without them.
QImage painted(const AnyView& view, const QSizeF& size, const QColor& ground, bool drawsText,
               Lines& lines, std::vector<ViewButton>& buttons) {
  QImage image((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(ground);
  if (view.isEmpty() || image.isNull())
    return image;
  QPainter painter(&image);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  painter.scale(scale, scale);
  TextEngine engine;
  LayerCache layers;
  engine.drawnLines = &lines;
  engine.drawsText = drawsText;
  ViewContext context(painter, scale, engine, layers);
  // Layers have pictures of their own, in which a line would be at another place.
  context.isInLayer = true;
  layers.beginPainting();
  view.paint(context, QRectF(QPointF(), size));
  layers.endPainting();
  buttons = std::move(context.buttons);
  return image;
}

/// The dots of `path`, in pixels.
QImage dotsOf(const QPainterPath& path, const QSize& size) {
  QImage dots(size, QImage::Format_Grayscale8);
  dots.fill(0);
  QPainter painter(&dots);
  painter.fillPath(path, Qt::white);
  return dots;
}

/// Calls `visit` with each dot of `ink`.
template <class Visit> void forEachDot(const QPainterPath& ink, const QSize& size, Visit visit) {
  const QRect box = ink.boundingRect().toAlignedRect();
  const QImage dots = dotsOf(ink.translated(-box.topLeft()), box.size());
  for (int y = 0; y < dots.height(); ++y)
    for (int x = 0; x < dots.width(); ++x)
      if (dots.constScanLine(y)[x] != 0)
        visit(QPoint(x, y) + box.topLeft(), QRect(QPoint(), size));
}

/// Of `ink` on the picture of what it stands on; the tenth of its dots that can be read least well
/// is left out, as a stroke's edge may cross a line.
double contrastOn(const QImage& ground, const QPainterPath& ink, const QColor& colour) {
  std::vector<double> found;
  std::map<QRgb, double> known;
  forEachDot(ink, ground.size(), [&](const QPoint& dot, const QRect& all) {
    if (!all.contains(dot))
      return;
    const auto [entry, isNew] = known.try_emplace(ground.pixel(dot), 0);
    if (isNew)
      entry->second = contrast(colour, QColor(entry->first));
    found.push_back(entry->second);
  });
  if (found.empty())
    return 21;
  const auto tenth = found.begin() + std::ptrdiff_t(found.size() / 10);
  std::nth_element(found.begin(), tenth, found.end());
  return *tenth;
}

/// Whether a part of `ink` is outside of `frame`. Both in pixels.
bool leaves(const QPainterPath& ink, const QImage& frame) {
  bool isOut = false;
  forEachDot(ink, frame.size(), [&](const QPoint& dot, const QRect& all) {
    isOut = isOut || !all.contains(dot) || frame.constScanLine(dot.y())[dot.x()] == 0;
  });
  return isOut;
}

QPainterPath grown(const QRectF& rect) {
  QPainterPath path;
  path.addRect(rect.adjusted(-slack, -slack, slack, slack));
  return path;
}

/// `frame` in points, the slack allowed for.
std::vector<ShownText> textsOf(const AnyView& view, const QSizeF& size, const QPainterPath& frame,
                               const QColor& ground, Wanted wanted) {
  Lines lines;
  std::vector<ViewButton> buttons;
  const QImage bare = painted(view, size, ground, false, lines, buttons);
  const QTransform pixels = QTransform::fromScale(scale, scale);
  const QImage room = dotsOf(pixels.map(frame), bare.size());
  std::vector<ShownText> texts;
  for (const auto& line : lines) {
    if (line.string.trimmed().isEmpty())
      continue;
    const QRectF ink = pixels.inverted().mapRect(line.ink.boundingRect());
    if (wanted == Wanted::contrast) {
      texts.push_back({line.string, ink, false, contrastOn(bare, line.ink, line.colour), false});
      continue;
    }
    bool isClipped = leaves(line.ink, room);
    if (!line.clip.isEmpty()) {
      const QRectF middle = line.clip.boundingRect();
      // The clip, a little wider: its centre stays.
      const QTransform wider = QTransform::fromTranslate(middle.center().x(), middle.center().y())
                                   .scale(1 + 2 * slack * scale / middle.width(),
                                          1 + 2 * slack * scale / middle.height())
                                   .translate(-middle.center().x(), -middle.center().y());
      isClipped = isClipped || leaves(line.ink, dotsOf(wider.map(line.clip), bare.size()));
    }
    for (const ViewButton& button : buttons) {
      const QRectF shared = button.rect & ink;
      isClipped = isClipped || (shared.width() > slack && shared.height() > slack &&
                                !button.rect.adjusted(-1, -1, 1, 1).contains(ink));
    }
    texts.push_back({line.string, ink, isClipped});
  }
  return texts;
}

/// What a text covers from its origin on, to the fraction of a point: the font's own measure of it
/// is in whole ones, and up to two of them too wide.
QRectF inkOf(const QFont& font, const QString& text) {
  QPainterPath outlines;
  outlines.addText(0, 0, font, text);
  // Letters that are pictures have no outline.
  return outlines.isEmpty() ? QFontMetricsF(font).tightBoundingRect(text) : outlines.boundingRect();
}

/// Takes down the words that are painted on it and paints nothing.
class WordRecorder : public QPaintDevice, public QPaintEngine {
public:
  struct Line {
    QString words;
    double baseline = 0;
    double left = 0;
    double width = 0;
    /// What its letters cover and what they may be painted on.
    QRectF ink;
    QRectF room;
    QColor colour;
  };

  explicit WordRecorder(QSize size) : QPaintEngine(AllFeatures), size_(size) {}

  std::vector<Line> lines;

  QPaintEngine* paintEngine() const override { return const_cast<WordRecorder*>(this); }
  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
  void drawPath(const QPainterPath&) override {}
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  Type type() const override { return User; }

  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    if (item.text().isEmpty())
      return;
    const QTransform device = painter()->deviceTransform();
    QRectF room(QPoint(0, 0), size_);
    if (!systemClip().isEmpty())
      room &= systemClip().boundingRect();
    if (painter()->hasClipping())
      room &= device.mapRect(painter()->clipBoundingRect());
    const QPointF place = device.map(at);
    const QRectF ink = device.mapRect(inkOf(item.font(), item.text()).translated(at));
    Line* last = lines.empty() ? nullptr : &lines.back();
    // The pieces of a line that are in different fonts.
    if (last && last->baseline == place.y() && std::abs(last->left + last->width - place.x()) < 2) {
      last->words += item.text();
      last->width += item.width();
      last->ink |= ink;
      return;
    }
    QColor colour = painter()->pen().color();
    colour.setAlphaF(colour.alphaF() * float(painter()->opacity()));
    lines.push_back({item.text(), place.y(), place.x(), item.width(), ink, room, colour});
  }

protected:
  int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
    case PdmWidth:
      return size_.width();
    case PdmHeight:
      return size_.height();
    case PdmDepth:
      return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
      return 96;
    case PdmDevicePixelRatio:
      return 1;
    case PdmDevicePixelRatioScaled:
      return int(devicePixelRatioFScale());
    default:
      return 0;
    }
  }

private:
  QSize size_;
};

QRectF placeOf(const QWidget& widget, const PanelView& panel) {
  return QRectF(widget.mapTo(&panel, QPoint(0, 0)), widget.size());
}

/// The colour that most of a place has: letters are lines, and cover less than what is around them.
QColor groundOf(const QImage& picture, const QRectF& place) {
  std::map<QRgb, int> counts;
  const QRect box = place.toAlignedRect().adjusted(-1, -1, 1, 1) & picture.rect();
  for (int y = box.top(); y <= box.bottom(); ++y)
    for (int x = box.left(); x <= box.right(); ++x)
      ++counts[picture.pixel(x, y)];
  const auto most =
      std::max_element(counts.begin(), counts.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  return most == counts.end() ? QColor() : QColor(most->first);
}

/// Parts of a panel whose words move: a list's rows at its upper and lower edge, a field's text.
struct Moving {
  QRectF place;
  bool isSideways = false;
};

std::vector<Moving> movingIn(const PanelView& panel) {
  std::vector<Moving> found;
  for (const auto* area : panel.findChildren<QAbstractScrollArea*>())
    if (area->isVisibleTo(&panel))
      found.push_back({placeOf(*area->viewport(), panel), false});
  for (const auto* field : panel.findChildren<QLineEdit*>())
    if (field->isVisibleTo(&panel) && !field->text().isEmpty())
      found.push_back({placeOf(*field, panel), true});
  return found;
}

bool isClipped(const WordRecorder::Line& line, const std::vector<Moving>& moving) {
  const QRectF room =
      line.room.adjusted(-measuredSlack, -measuredSlack, measuredSlack, measuredSlack);
  const bool isSideways = line.ink.left() < room.left() || line.ink.right() > room.right();
  const bool isUpright = line.ink.top() < room.top() || line.ink.bottom() > room.bottom();
  const auto mayMove = [&](bool sideways) {
    return std::any_of(moving.begin(), moving.end(), [&](const Moving& part) {
      return part.isSideways >= sideways && part.place.adjusted(-1, -1, 1, 1).contains(line.room);
    });
  };
  return (isSideways && !mayMove(true)) || (isUpright && !mayMove(false));
}

bool isDisabledAt(const PanelView& panel, const QPointF& point) {
  const QWidget* widget = panel.childAt(point.toPoint());
  return widget != nullptr && !widget->isEnabled();
}

} // namespace

std::vector<ShownText> shownTexts(const AnyView& tile, const TileSize& size, Wanted wanted) {
  QPainterPath body;
  body.addPolygon(BodyOutline(size.bodyRect(), size.bodyRadius()).polygon(-slack));
  return textsOf(tile, {size.width(), size.height()}, body, palette::black, wanted);
}

std::vector<ShownText> shownTexts(PanelView& panel, Wanted wanted) {
  WordRecorder recorder(panel.size());
  panel.render(&recorder);
  QImage picture(panel.size(), QImage::Format_RGB32);
  panel.render(&picture);
  const auto moving = movingIn(panel);
  std::vector<ShownText> texts;
  for (const auto& line : recorder.lines) {
    const QRectF seen = line.ink & line.room;
    if (line.words.trimmed().isEmpty() || seen.isEmpty())
      continue;
    // Of a field's text what is selected is painted first; the rest follows, clipped around it.
    if (!texts.empty() && texts.back().words == line.words && texts.back().ink == line.ink)
      continue;
    if (wanted == Wanted::contrast)
      texts.push_back({line.words, line.ink, false, contrast(line.colour, groundOf(picture, seen)),
                       isDisabledAt(panel, seen.center())});
    else
      texts.push_back({line.words, line.ink, isClipped(line, moving)});
  }
  for (const QWidget* child : panel.findChildren<QWidget*>()) {
    const auto* view = dynamic_cast<const ViewWidget*>(child);
    if (view == nullptr || !view->isVisibleTo(&panel))
      continue;
    const QRectF place = placeOf(*view, panel);
    const QColor ground = picture.pixelColor(
        place.topLeft().toPoint().x() >= 0 ? place.topLeft().toPoint() : QPoint(0, 0));
    for (ShownText text : textsOf(view->view(), view->size(),
                                  grown(QRectF(QPointF(), view->size())), ground, wanted)) {
      text.ink.translate(place.topLeft());
      texts.push_back(std::move(text));
    }
  }
  return texts;
}

} // namespace tavrin
