#include "TavrinSettings/Strip/StripView.h"

#include "TavrinCore/Kinds/Files/Shelf.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinSettings/Base/TabStop.h"
#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Strip/FreePlace.h"
#include "TavrinSettings/Strip/StripTile.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr int margin = 14;
/// How far beside the strip a tile can still be let go onto it.
constexpr int reach = 24;

} // namespace

StripView::StripView(PageServices& services, QWidget* parent)
    : QWidget(parent), services_(services), live_(services.live), freePlace_(new FreePlace(this)) {
  setAccessibleName(worded("Strip"));
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  live_.onChange = [this](const UUID& id) {
    if (const int index = indexOf(id); index >= 0)
      tiles_[static_cast<std::size_t>(index)]->refreshPicture();
  };
  QObject::connect(freePlace_, &QAbstractButton::clicked, this, [this] {
    if (onAdd)
      onAdd();
  });
  freePlace_->onKey = [this](int key) {
    if (strip_.empty() || (key != Qt::Key_Left && key != Qt::Key_Home && key != Qt::Key_End))
      return false;
    return focusTile(key == Qt::Key_Home ? strip_.front().id : strip_.back().id);
  };
  services_.drag.onMove = [this](QPoint place) { dragMoved(place); };
  services_.drag.onDrop = [this](QPoint place) { dropped(place); };
  services_.drag.onEnd = [this] {
    gap_.reset();
    layOut();
  };
}

void StripView::refresh() {
  // What is gone elsewhere can be let go nowhere, and its tile has the mouse.
  if (services_.drag.isActive() && services_.drag.load().widget &&
      services_.editor.widget(*services_.drag.load().widget) == nullptr)
    services_.drag.cancel();
  const auto& file = services_.editor.file();
  strip_ = stripOf(file);
  freePlaces_ = freePlaces(file);
  // A tile stays the same one, so that it keeps keyboard and mouse wherever it goes.
  std::vector<StripTile*> tiles;
  const int count = static_cast<int>(strip_.size());
  for (const auto& widget : strip_) {
    const auto found = std::ranges::find_if(
        tiles_, [&](StripTile* tile) { return tile->record().id == widget.id; });
    StripTile* tile = nullptr;
    if (found != tiles_.end()) {
      tile = *found;
      tiles_.erase(found);
    } else {
      tile = makeTile(widget);
    }
    tiles.push_back(tile);
    tile->setRecord(widget, static_cast<int>(tiles.size()), count);
  }
  for (auto* gone : std::exchange(tiles_, std::move(tiles))) {
    gone->hide();
    gone->deleteLater();
  }
  // Behind the strip itself, which holds them, they would come after all that it ever held.
  QWidget* before = freePlace_;
  for (auto* tile : tiles_) {
    setTabOrder(before, tile);
    before = tile;
  }
  // Assistive technology goes by the order in which they are stacked.
  for (auto* tile : tiles_)
    tile->raise();
  freePlace_->raise();
  setChosen(chosen_);
  layOut();
  followTiles();
  updateGeometry();
}

void StripView::followTiles() {
  if (isVisible() && width() > 0)
    live_.follow(strip_, static_cast<int>(std::lround(cells(width()).side * devicePixelRatioF())));
}

void StripView::showEvent(QShowEvent*) {
  followTiles();
}

void StripView::hideEvent(QHideEvent*) {
  live_.pause();
}

StripTile* StripView::makeTile(const DockWidget& widget) {
  auto* tile = new StripTile(services_, widget, this);
  QObject::connect(tile, &QAbstractButton::clicked, this, [this, tile] {
    if (onChoose)
      onChoose(tile->record().id, true);
  });
  tile->onKey = [this, tile](QKeyEvent* event) { return act(*tile, event); };
  tile->onResize = [this, tile](double right, bool isOver) { resizeTile(*tile, right, isOver); };
  tile->onFiles = [this, tile](const auto& files) { put(files, *tile); };
  tile->onFocus = [this, tile] {
    if (onChoose)
      onChoose(tile->record().id, false);
  };
  return tile;
}

void StripView::setChosen(const std::optional<UUID>& id) {
  chosen_ = id;
  if (const int index = id ? indexOf(*id) : -1; index >= 0)
    stop_ = tiles_[static_cast<std::size_t>(index)];
  stop_ = makeTabStop(tiles_, stop_);
  // Behind tiles the arrows lead to it.
  freePlace_->setFocusPolicy(tiles_.empty() ? Qt::StrongFocus : Qt::ClickFocus);
  for (auto* tile : tiles_)
    tile->setChosen(chosen_ == tile->record().id);
}

void StripView::setAwaiting(bool isAwaiting) {
  freePlace_->setAwaiting(isAwaiting);
}

bool StripView::focusTile(const UUID& id) {
  const int index = indexOf(id);
  if (index >= 0)
    tiles_[static_cast<std::size_t>(index)]->setFocus(Qt::TabFocusReason);
  return index >= 0;
}

void StripView::refreshTiles() {
  for (auto* tile : tiles_)
    tile->update();
}

int StripView::indexOf(const UUID& id) const {
  const auto found = std::ranges::find(strip_, id, &DockWidget::id);
  return found == strip_.end() ? -1 : static_cast<int>(found - strip_.begin());
}

StripCells StripView::cells(double width) const {
  std::vector<int> spans;
  const bool isDragged = gap_.has_value() && services_.drag.isActive();
  const auto& load = isDragged ? services_.drag.load() : DragLoad{};
  for (std::size_t i = 0; i < tiles_.size(); ++i)
    if (!isDragged || load.widget != tiles_[i]->record().id)
      spans.push_back(tiles_[i]->shownSpan());
  int free = freePlaces_;
  if (isDragged) {
    const bool isNew = !load.widget || indexOf(*load.widget) < 0;
    spans.insert(spans.begin() + static_cast<std::ptrdiff_t>(std::min(*gap_, spans.size())),
                 load.span);
    free -= isNew ? 1 : 0;
  }
  return StripCells::of(spans, std::max(free, 0), width - 2 * margin);
}

int StripView::heightForWidth(int width) const {
  return static_cast<int>(cells(width).height) + 2 * margin;
}

QSize StripView::sizeHint() const {
  return {600, heightForWidth(std::max(width(), 600))};
}

void StripView::layOut() {
  const auto laid = cells(width());
  const bool isDragged = gap_.has_value() && services_.drag.isActive();
  std::size_t next = 0;
  freeRects_.clear();
  const auto rectOf = [&](std::size_t index) {
    return laid.rects[index].translated(margin, margin);
  };
  for (auto* tile : tiles_) {
    const bool isCarried =
        services_.drag.isActive() && services_.drag.load().widget == tile->record().id;
    if (isDragged && *gap_ == next)
      ++next;
    tile->setSide(laid.side);
    // A hidden widget would lose the mouse.
    if (isCarried && isDragged) {
      tile->setGeometry(QRect(-1000, -1000, 1, 1));
      continue;
    }
    tile->setGeometry(rectOf(next++).toRect());
    tile->show();
  }
  if (isDragged && *gap_ >= next)
    ++next;
  freePlace_->setVisible(next < laid.rects.size());
  if (next < laid.rects.size())
    freePlace_->setGeometry(rectOf(next++).toRect());
  for (; next < laid.rects.size(); ++next)
    freeRects_.push_back(rectOf(next));
  update();
}

void StripView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintDesktopGround(painter, QRectF(rect()), services_.appearance.dark);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const auto& rect : freeRects_)
    FreePlace::paintEmpty(painter, rect);
}

void StripView::resizeEvent(QResizeEvent*) {
  layOut();
  followTiles();
}

void StripView::mouseReleaseEvent(QMouseEvent* event) {
  for (const auto& rect : freeRects_)
    if (rect.contains(event->position()) && onAdd)
      return onAdd();
}

void StripView::moveBy(const UUID& id, int places) {
  const int place = indexOf(id) + places;
  if (indexOf(id) < 0 || place < 0 || place >= static_cast<int>(strip_.size()))
    return;
  moveTo(id, static_cast<std::size_t>(place));
}

void StripView::moveTo(const UUID& id, std::size_t place) {
  const int before = indexOf(id);
  if (services_.attempt([&] { services_.editor.place(id, place); }) && indexOf(id) != before)
    services_.tell(worded("“{name}” is at place {place} of {count}.",
                          {{"name", services_.editor.widget(id)->name},
                           {"place", indexOf(id) + 1},
                           {"count", static_cast<int>(strip_.size())}}),
                   false);
}

void StripView::widenBy(const UUID& id, int tiles) {
  if (const auto* widget = services_.editor.widget(id))
    widenTo(id, widget->span + tiles);
}

void StripView::widenTo(const UUID& id, int span) {
  const auto* widget = services_.editor.widget(id);
  const int before = widget == nullptr ? 0 : widget->span;
  if (!services_.attempt([&] { services_.editor.setSpan(id, span); }))
    return;
  widget = services_.editor.widget(id);
  if (widget != nullptr && widget->span != before)
    services_.tell(wordedPlural("“{name}” is {count} tile wide.", "“{name}” is {count} tiles wide.",
                                widget->span, {{"name", widget->name}}),
                   false);
}

void StripView::takeOff(const UUID& id) {
  const int index = indexOf(id);
  const bool hadFocus = index >= 0 && tiles_[static_cast<std::size_t>(index)]->hasFocus();
  takeOffStrip(id);
  if (hadFocus && !strip_.empty())
    focusTile(strip_[std::min(static_cast<std::size_t>(index), strip_.size() - 1)].id);
}

/// As on the desktop's tile.
void StripView::put(const std::vector<std::filesystem::path>& files, const StripTile& tile) {
  const auto& shown = tile.record();
  services_.attempt([&] {
    services_.editor.edit(shown.id, translated("Set Up {name}", {{"name", shown.name}}), {},
                          [&](DockWidget& widget) {
                            if (const auto* settings = widget.kind.get<ShelfSettings>())
                              widget.kind = shelf::adding(*settings, files);
                          });
  });
}

void StripView::takeOffStrip(const UUID& id) {
  const auto* widget = services_.editor.widget(id);
  const std::string name = widget == nullptr ? std::string() : widget->name;
  if (services_.attempt([&] { services_.editor.takeOff(id); }))
    services_.offerUndo(
        worded("“{name}” is off the strip, and keeps its settings.", {{"name", name}}));
}

bool StripView::act(StripTile& tile, QKeyEvent* event) {
  const UUID id = tile.record().id;
  const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const int towards = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
  if (towards != 0 && modifiers == Qt::ControlModifier) {
    moveBy(id, towards);
  } else if (towards != 0 && modifiers == Qt::ShiftModifier) {
    widenBy(id, towards);
  } else if (towards != 0 && modifiers == Qt::NoModifier) {
    const int next = indexOf(id) + towards;
    if (next >= 0 && next < static_cast<int>(tiles_.size()))
      focusTile(strip_[static_cast<std::size_t>(next)].id);
    else if (next > 0 && freePlace_->isVisible())
      freePlace_->setFocus(Qt::TabFocusReason);
  } else if (event->key() == Qt::Key_Home && modifiers == Qt::NoModifier) {
    focusTile(strip_.front().id);
  } else if (event->key() == Qt::Key_End && modifiers == Qt::NoModifier) {
    focusTile(strip_.back().id);
  } else if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
    takeOff(id);
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
             event->key() == Qt::Key_Space) {
    if (onEnter)
      onEnter(id);
  } else {
    return false;
  }
  return true;
}

void StripView::resizeTile(StripTile& tile, double right, bool isOver) {
  const auto laid = cells(width());
  const int index = indexOf(tile.record().id);
  if (index < 0)
    return;
  const QRectF own = laid.rects[static_cast<std::size_t>(index)].translated(margin, margin);
  tile.setShownSpan(laid.spanAt(own, right, tile.record().kind.maxSpan()));
  layOut();
  if (isOver)
    widenTo(tile.record().id, tile.shownSpan());
}

bool StripView::takesDropAt(QPoint globalPlace) const {
  return isVisible() &&
         rect().adjusted(-reach, -reach, reach, reach).contains(mapFromGlobal(globalPlace));
}

std::size_t StripView::placeAt(QPoint globalPlace) const {
  const QPointF point = mapFromGlobal(QPointF(globalPlace)) - QPointF(margin, margin);
  // The others as they stand without the one that is dragged.
  std::vector<int> spans;
  for (const auto& widget : strip_)
    if (services_.drag.load().widget != widget.id)
      spans.push_back(widget.span);
  return StripCells::of(spans, freePlaces_, width() - 2 * margin).placeAt(point, spans.size());
}

void StripView::dragMoved(QPoint globalPlace) {
  const auto& load = services_.drag.load();
  const bool isOnStrip = load.widget && indexOf(*load.widget) >= 0;
  const bool isFull = freePlaces_ == 0 && !isOnStrip;
  const bool isOver = takesDropAt(globalPlace);
  const auto before = gap_;
  gap_ = isOver && !isFull ? std::optional(placeAt(globalPlace)) : std::nullopt;
  services_.drag.setHint(isOver && isFull       ? worded("All twelve places are taken")
                         : !isOver && isOnStrip ? worded("Let go to take it off")
                                                : QString());
  if (before != gap_)
    layOut();
}

void StripView::dropped(QPoint globalPlace) {
  const auto load = services_.drag.load();
  const auto place = std::exchange(gap_, std::nullopt);
  const bool isOnStrip = load.widget && indexOf(*load.widget) >= 0;
  if (!place && !takesDropAt(globalPlace) && isOnStrip) {
    takeOffStrip(*load.widget);
    return;
  }
  if (!place)
    return;
  if (isOnStrip) {
    moveTo(*load.widget, *place);
    if (onChoose)
      onChoose(*load.widget, false);
    return;
  }
  services_.attempt([&] {
    UUID id;
    if (load.widget)
      services_.editor.place(id = *load.widget, *place);
    else
      id = services_.editor.add(load.kind, *place);
    if (onPlaced)
      onPlaced(id);
  });
}

} // namespace tavrin
