#pragma once

#include "TavrinCore/Base/Data.h"
#include "TavrinPlatform/RunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// What programs copy and paste. Types are MIME types; text is "text/plain", in UTF-8.
class Pasteboard {
public:
  static constexpr const char* textType = "text/plain";
  /// File addresses, one a line.
  static constexpr const char* filesType = "text/uri-list";
  static constexpr const char* tiffType = "image/tiff";
  static constexpr const char* pngType = "image/png";
  /// Marks a copy that is to be forgotten, such as a password manager's.
  static constexpr const char* transientType = "org.nspasteboard.TransientType";

  /// One representation of what was copied.
  struct Format {
    std::string type;
    std::shared_ptr<const Data> data;
    /// Of the whole; `data` may be missing or hold the beginning only.
    std::size_t size = 0;
  };
  /// What was found after a change. Of the formats those that were asked for, could be read in time
  /// and were not empty.
  struct Capture {
    std::int64_t changeCount = 0;
    std::vector<std::string> types;
    std::vector<Format> formats;
    /// The change was a `write` of this process.
    bool isOwn = false;
    /// What every process that saw this copy calls it; empty where the desktop has no such name.
    std::string copyName = {};
  };
  /// How much of a capture is read.
  struct Limits {
    /// Longer text is cut behind this many bytes.
    std::size_t textBytes = 1'000'000;
    /// A larger image keeps its size and loses its data.
    std::size_t imageBytes = 2'000'000;
    bool operator==(const Limits&) const = default;
  };
  struct Observer {
    /// Something was copied; at once, whatever its owner is slow to tell.
    std::function<void(std::int64_t changeCount)> changed;
    std::function<void(Capture)> captured;
    /// The program that had copied last is gone, and what it had copied with it.
    std::function<void(std::int64_t changeCount)> abandoned;
  };

  virtual ~Pasteboard() = default;

  /// Whether this desktop tells of changes, and lets programs see what was copied.
  virtual bool canObserve() const = 0;
  /// Tells of every change from now on until the token goes, on the main thread. At most one
  /// observer; a second one takes the first one's place, whose token must be gone by then.
  [[nodiscard]] virtual TokenPtr observe(const Limits& limits, Observer observer) = 0;
  /// Offers `formats` in place of what was there, for as long as this process runs and nobody else
  /// copies. Other types by which this desktop's programs know the same are offered beside them.
  virtual void write(std::vector<Format> formats) = 0;

  void writeText(const std::string& text) {
    auto data = std::make_shared<const Data>(Data::fromText(text));
    const std::size_t size = data->bytes.size();
    write({{textType, std::move(data), size}});
  }
};

} // namespace tavrin
