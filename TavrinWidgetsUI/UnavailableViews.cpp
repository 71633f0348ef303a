#include "TavrinWidgetsUI/UnavailableViews.h"

#include "TavrinWidgetsUI/KindSymbols.h"
#include "TavrinWidgetsUI/Kit/PanelText.h"

namespace tavrin {
namespace {

QString utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

std::string symbolOf(const DockWidget& widget) {
  return std::string(kindSymbol(widget.kind.key()));
}

} // namespace

AnyView unavailableTile(const DockWidget& widget, const TileSize& size) {
  const QColor ink = palette::caption();
  const QString name = utf8(widget.name);
  const QString value = "Not in this build";
  if (size.isWide()) {
    WideTileContent content;
    content.mark = symbol(symbolOf(widget)).colour(ink).padding(size.body() * 0.1);
    const double points = std::max(size.body() * 0.19, minimumTypeSize);
    const Text line = text(value).size(points).colour(ink);
    Text shortLine = line;
    shortLine.string = "Not built in";
    content.middle = vstack({text(name)
                                 .size(std::max(size.body() * 0.24, minimumTypeSize))
                                 .weight(FontWeight::semibold)
                                 .colour(palette::figure()),
                             firstFitting({line.figure(points), shortLine})})
                         .align(Alignment::leading);
    return wideTile(content, size).accessibility(name, value);
  }
  TileContent content;
  content.mark = symbol(symbolOf(widget)).colour(ink);
  content.markRatio = size.hasCaption() ? 0.42 : 0.5;
  content.caption = name;
  content.label = name;
  content.value = value;
  return tile(content, size);
}

QString unavailableSentence(const DockWidget& widget) {
  return "The " + utf8(widget.kind.title()) + " widget is not in this build.";
}

UnavailablePanelView::UnavailablePanelView(const PanelAppearance& appearance,
                                           std::function<const DockWidget&()> widget,
                                           std::function<void()> onEdit)
    : PanelView(appearance), widget_(std::move(widget)), onEdit_(std::move(onEdit)),
      message_(new PanelEmptyState({}, {})) {
  message_->setHint("Its settings are kept as they are.");
  add(message_);
  refresh();
}

void UnavailablePanelView::refresh() {
  const DockWidget& widget = widget_();
  setTitle(utf8(widget.name));
  message_->setSentence(QString::fromStdString(symbolOf(widget)), unavailableSentence(widget));
  setEditButton("Edit " + utf8(widget.kind.title()) + "…", onEdit_);
}

} // namespace tavrin
