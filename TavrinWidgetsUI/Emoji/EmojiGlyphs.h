#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/RunLoop.h"

#include <QImage>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavrin {

/// Draws emoji in the desktop's colour font, straight from the font's file: through the toolkit
/// each drawn glyph would be kept in memory, fifty megabytes for all of them.
class EmojiRasteriser {
public:
  EmojiRasteriser();
  ~EmojiRasteriser();
  EmojiRasteriser(const EmojiRasteriser&) = delete;
  EmojiRasteriser& operator=(const EmojiRasteriser&) = delete;

  /// Whether the desktop has a colour font.
  bool hasFont() const { return font_ != nullptr; }
  /// A square of `side` pixels; null for what the font does not have. From one thread at a time.
  QImage image(const std::string& emoji, int side);

private:
  struct Font;
  std::unique_ptr<Font> font_;
};

/// Pictures of emoji, drawn in the background and kept within a bound.
class EmojiGlyphs {
public:
  /// Bytes of pictures kept.
  static constexpr std::size_t budget = 2 * 1024 * 1024;

  explicit EmojiGlyphs(RunLoop& runLoop);
  ~EmojiGlyphs();

  /// Drawn at once where it is not there yet: for the few on a tile.
  QImage now(const std::string& emoji, int side);
  /// The picture where it is there; else null, and `onDrawn` follows when it is.
  QImage whenDrawn(const std::string& emoji, int side);
  /// New pictures are there.
  std::function<void()> onDrawn;

  /// Forgets the pictures and the font.
  void release();
  std::size_t bytes() const { return bytes_; }

private:
  struct Key {
    std::string emoji;
    int side = 0;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      return std::hash<std::string>()(key.emoji) * 31 + static_cast<std::size_t>(key.side);
    }
  };
  using Drawn = std::pair<Key, QImage>;
  struct Worker;

  const QImage* find(const Key& key);
  void keep(Key key, const QImage& image);
  void drawWanted();

  RunLoop& runLoop_;
  /// The one used last first.
  std::list<Drawn> drawn_;
  std::unordered_map<Key, std::list<Drawn>::iterator, KeyHash> byKey_;
  std::size_t bytes_ = 0;
  std::vector<Key> wanted_;
  bool isDrawing_ = false;
  std::shared_ptr<Worker> worker_;
  Lifetime alive_;
};

} // namespace tavrin
