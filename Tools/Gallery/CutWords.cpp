#include "Tools/Gallery/CutWords.h"

#include "TavrinWidgetsUI/Kit/Views/LayerCache.h"
#include "TavrinWidgetsUI/Kit/Views/TextEngine.h"
#include "TavrinWidgetsUI/Kit/Views/ViewContext.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QPaintEngine>
#include <QPainter>
#include <QSpinBox>
#include <cmath>

namespace tavrin {

namespace {

/// Letters that the pseudo-language has in place of ASCII's; scripts/texts has the same.
bool isPseudo(QString words) {
  words.remove(QStringLiteral("~/"));
  static const QString letters = QStringLiteral("ÅÉÎÖÛåéîöûýñçšÑÇŠ[]~");
  return std::any_of(words.begin(), words.end(), [](QChar c) { return letters.contains(c); });
}

/// What users write and name: the samples' own, some of which are translated as they are shown.
const QStringList& written() {
  static const QStringList all = [] {
    QStringList texts{QStringLiteral("Ada's Phone"),
                      QStringLiteral("Kitchen Tablet with a long name"),
                      QStringLiteral("Kitchen Tablet with a rather long name of its own"),
                      QStringLiteral("a-very-long-organisation")};
    for (const char* sample :
         {"Design review", "Lunch with Ada", "Grandmother's birthday", "Pay the rent", "Call Ada",
          "Milk, bread\nCall Ada", "Untitled event", "Untitled reminder"})
      texts << worded(sample);
    return texts;
  }();
  return all;
}

/// Whether the cut goes through what a user wrote.
bool endsInWritten(const QString& line) {
  if (line.contains(QStringLiteral("tavrin-gallery-"))) // a folder of the samples' own
    return true;
  return std::any_of(written().begin(), written().end(), [&](const QString& text) {
    if (text.contains(line))
      return true;
    for (qsizetype length = text.size(); length > 0; --length)
      if (line.endsWith(text.left(length)))
        return text.left(length) != u"[";
    return false;
  });
}

/// Whether the end of a text of the pseudo-language is missing.
bool isCut(const QString& line) {
  const qsizetype at = line.lastIndexOf(u'…');
  if (at < 0 || !isPseudo(line.left(at)) || endsInWritten(line.left(at)))
    return false;
  // A text that has an ellipsis itself goes on behind it.
  return !line.mid(at).contains(u']');
}

struct PaintedLine {
  QString words;
  double baseline = 0;
  double left = 0;
  double width = 0;
  /// How wide the place is on which it may be painted.
  double room = 0;
};

/// Takes down the words that are painted on it and paints nothing.
class WordRecorder : public QPaintDevice, public QPaintEngine {
public:
  explicit WordRecorder(QSize size) : QPaintEngine(AllFeatures), size_(size) {}

  std::vector<PaintedLine> lines;

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
    QRect room(QPoint(0, 0), size_);
    if (!systemClip().isEmpty())
      room &= systemClip().boundingRect();
    const QPointF place = painter()->combinedTransform().map(at);
    PaintedLine* last = lines.empty() ? nullptr : &lines.back();
    // The pieces of a line that are in different fonts.
    if (last && last->baseline == place.y() && std::abs(last->left + last->width - place.x()) < 2) {
      last->words += item.text();
      last->width += item.width();
      return;
    }
    lines.push_back({item.text(), place.y(), place.x(), item.width(), double(room.width())});
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

QStringList cutLines(const AnyView& view, const QSizeF& size) {
  QImage image(size.toSize() * 2, QImage::Format_ARGB32_Premultiplied);
  if (view.isEmpty() || image.isNull())
    return {};
  QPainter painter(&image);
  painter.scale(2, 2);
  TextEngine engine;
  LayerCache layers;
  std::vector<TextEngine::DrawnLine> lines;
  engine.drawnLines = &lines;
  ViewContext context(painter, 2, engine, layers);
  layers.beginPainting();
  view.paint(context, QRectF(QPointF(), size));
  layers.endPainting();
  QStringList cut;
  for (const auto& line : lines)
    if (isCut(line.string))
      cut << line.string;
  return cut;
}

/// Labels break their lines by themselves, and paint what fits.
void addCutLabels(const PanelView& panel, QStringList& cut) {
  for (const QLabel* label : panel.findChildren<QLabel*>()) {
    if (!label->isVisibleTo(&panel) || !label->wordWrap() || !isPseudo(label->text()))
      continue;
    const QFontMetricsF metrics(label->font());
    double widest = 0;
    for (const QString& word : label->text().split(u' '))
      widest = std::max(widest, metrics.horizontalAdvance(word));
    if (label->heightForWidth(label->width()) > label->height() || widest > label->width() + 1)
      cut << label->text() + QStringLiteral(" (its label)");
  }
}

void addCutSteppers(const PanelView& panel, QStringList& cut) {
  for (const QSpinBox* box : panel.findChildren<QSpinBox*>())
    if (box->isVisibleTo(&panel) && box->width() < box->sizeHint().width())
      cut << box->text() + QStringLiteral(" (its stepper)");
}

} // namespace

QStringList cutWords(const AnyView& tile, const TileSize& size) {
  return cutLines(tile, {size.width(), size.height()});
}

QStringList cutWords(PanelView& panel) {
  WordRecorder recorder(panel.size());
  panel.render(&recorder);
  QStringList cut;
  for (const PaintedLine& line : recorder.lines) {
    if (isCut(line.words))
      cut << line.words;
    else if (isPseudo(line.words) && line.width > line.room + 2)
      cut << line.words + QStringLiteral(" (wider than its place)");
  }
  addCutLabels(panel, cut);
  addCutSteppers(panel, cut);
  for (const QWidget* child : panel.findChildren<QWidget*>())
    if (const auto* view = dynamic_cast<const ViewWidget*>(child);
        view && view->isVisibleTo(&panel))
      cut += cutLines(view->view(), view->size());
  return cut;
}

} // namespace tavrin
