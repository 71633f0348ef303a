#include "TavrinSlot/DockTileRenderer.h"

namespace tavrin {

DockTileRenderer::DockTileRenderer(DockTile& tile) : tile_(tile) {
  tile_.onFormatChange = [this] {
    if (onFormatChange)
      onFormatChange();
  };
  tile_.onClick = [this](QPointF point) { return click(point); };
  tile_.onHover = [this](QPointF point) { return renderer_.buttonAt(point) != nullptr; };
}

DockTileRenderer::~DockTileRenderer() {
  tile_.onFormatChange = nullptr;
  tile_.onClick = nullptr;
  tile_.onHover = nullptr;
}

TileSize DockTileRenderer::size() const {
  const auto format = tile_.format();
  return {format.tileSize, format.span};
}

void DockTileRenderer::render(const AnyView& view) {
  const TileSize size = this->size();
  if (!renderer_.render(view, {size.width(), size.height()}, tile_.format().scale))
    return;
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

bool DockTileRenderer::click(QPointF point) {
  const auto* action = renderer_.buttonAt(point);
  if (action == nullptr || !action->run)
    return false;
  const auto run = action->run; // running it renders another view
  run();
  return true;
}

} // namespace tavrin
