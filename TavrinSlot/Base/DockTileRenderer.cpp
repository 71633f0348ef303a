#include "TavrinSlot/Base/DockTileRenderer.h"

#include <utility>

namespace tavrin {

DockTileRenderer::DockTileRenderer(DockTile& tile) : tile_(tile) {
  tile_.onFormatChange = [this] {
    if (onFormatChange)
      onFormatChange();
  };
  tile_.onClick = [this](QPointF point) { return click(point); };
  tile_.onPicture = [this](int pixelsHigh) { return picture(pixelsHigh); };
  tile_.onHover = [this](QPointF point) { return renderer_.buttonAt(point) != nullptr; };
}

DockTileRenderer::~DockTileRenderer() {
  tile_.onFormatChange = nullptr;
  tile_.onClick = nullptr;
  tile_.onHover = nullptr;
  tile_.onPicture = nullptr;
}

TileSize DockTileRenderer::size() const {
  const auto format = tile_.format();
  return {format.tileSize, format.span};
}

void DockTileRenderer::setSubject(const std::string& subject) {
  if (std::exchange(subject_, subject) == subject)
    return;
  isOfAnother_ = true;
  tile_.setSubject(subject);
}

void DockTileRenderer::render(const AnyView& view) {
  const TileSize size = this->size();
  const bool isNew = renderer_.render(view, {size.width(), size.height()}, tile_.format().scale);
  if (!std::exchange(isOfAnother_, false) && !isNew)
    return;
  view_ = view;
  if (!renderer_.elements().empty()) {
    const auto& spoken = renderer_.elements().front();
    tile_.setLabel(spoken.label.toStdString(), spoken.value.toStdString());
  }
  std::vector<DockTile::Button> buttons;
  for (const auto& element : renderer_.elements())
    if (element.isButton)
      buttons.push_back({element.label.toStdString(), element.rect});
  tile_.setButtons(buttons);
  tile_.display(renderer_.image());
}

/// The same view, made for the tile's size, so that it is laid out as it is there.
QImage DockTileRenderer::picture(int pixelsHigh) const {
  if (!view_ || renderer_.image().height() == pixelsHigh)
    return renderer_.image();
  const TileSize size = this->size();
  ViewRenderer other;
  other.render(*view_, {size.width(), size.height()}, pixelsHigh / size.height());
  return other.image();
}

bool DockTileRenderer::click(QPointF point) {
  const auto* action = renderer_.buttonAt(point);
  if (action == nullptr || !action->run)
    return false;
  const auto run = action->run; // running it renders another view
  run();
  return true;
}

} // namespace tavrin
