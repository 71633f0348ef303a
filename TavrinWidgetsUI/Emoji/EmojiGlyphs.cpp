#include "TavrinWidgetsUI/Emoji/EmojiGlyphs.h"

#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <QPainter>
#include <algorithm>
#include <mutex>

namespace tavrin {
namespace {

/// In the toolkit's own way, for a desktop without a colour font.
QImage plainImage(const std::string& emoji, int side) {
  QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  QFont font(interfaceFontFamily());
  font.setPixelSize(std::max(side * 3 / 4, 1));
  painter.setFont(font);
  painter.setPen(QColor(128, 128, 128));
  painter.drawText(image.rect(), Qt::AlignCenter, QString::fromStdString(emoji));
  return image;
}

} // namespace

/// The rasteriser, shared with the background work that may outlive its owner.
struct EmojiGlyphs::Worker {
  std::mutex mutex;
  std::unique_ptr<EmojiRasteriser> rasteriser;

  QImage draw(const Key& key) {
    const std::lock_guard lock(mutex);
    if (!rasteriser)
      rasteriser = std::make_unique<EmojiRasteriser>();
    const QImage image = rasteriser->image(key.emoji, key.side);
    return image.isNull() ? plainImage(key.emoji, key.side) : image;
  }
};

EmojiGlyphs::EmojiGlyphs(RunLoop& runLoop)
    : runLoop_(runLoop), worker_(std::make_shared<Worker>()) {}

EmojiGlyphs::~EmojiGlyphs() = default;

const QImage* EmojiGlyphs::find(const Key& key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end())
    return nullptr;
  drawn_.splice(drawn_.begin(), drawn_, found->second);
  return &found->second->second;
}

void EmojiGlyphs::keep(Key key, const QImage& image) {
  if (byKey_.contains(key))
    return;
  drawn_.emplace_front(key, image);
  byKey_.emplace(std::move(key), drawn_.begin());
  bytes_ += static_cast<std::size_t>(image.sizeInBytes());
  while (bytes_ > budget && drawn_.size() > 1) {
    bytes_ -= static_cast<std::size_t>(drawn_.back().second.sizeInBytes());
    byKey_.erase(drawn_.back().first);
    drawn_.pop_back();
  }
}

QImage EmojiGlyphs::now(const std::string& emoji, int side) {
  const Key key{emoji, side};
  if (const QImage* found = find(key))
    return *found;
  const QImage image = worker_->draw(key);
  keep(key, image);
  return image;
}

QImage EmojiGlyphs::whenDrawn(const std::string& emoji, int side) {
  Key key{emoji, side};
  if (const QImage* found = find(key))
    return *found;
  if (std::ranges::find(wanted_, key) == wanted_.end())
    wanted_.push_back(std::move(key));
  drawWanted();
  return {};
}

void EmojiGlyphs::drawWanted() {
  // A screenful; what scrolled past before its turn came is asked for again when it shows.
  constexpr std::size_t mostWanted = 160;
  if (isDrawing_ || wanted_.empty())
    return;
  isDrawing_ = true;
  // Begun by the loop, so that one round of asking makes one batch.
  runLoop_.post([this, alive = alive_.watch()] {
    if (!alive.lock())
      return;
    if (wanted_.size() > mostWanted)
      wanted_.erase(wanted_.begin(), wanted_.end() - mostWanted);
    const auto keys = std::make_shared<std::vector<Key>>(std::exchange(wanted_, {}));
    const auto images = std::make_shared<std::vector<QImage>>();
    runLoop_.background(
        [worker = worker_, keys, images] {
          for (const Key& key : *keys)
            images->push_back(worker->draw(key));
        },
        alive_,
        [this, keys, images] {
          isDrawing_ = false;
          for (std::size_t i = 0; i < keys->size(); ++i)
            keep((*keys)[i], (*images)[i]);
          if (onDrawn)
            onDrawn();
          drawWanted();
        });
  });
}

void EmojiGlyphs::release() {
  drawn_.clear();
  byKey_.clear();
  bytes_ = 0;
  wanted_.clear();
  isDrawing_ = false;
  // Work that is under way ends with the old one, unheard.
  worker_ = std::make_shared<Worker>();
  alive_.renew();
}

} // namespace tavrin
