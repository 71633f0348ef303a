#include "TavrinPlatform/macOS/Pasteboard/MacPasteboard.h"

#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin {
namespace {

using Format = Pasteboard::Format;
using Capture = Pasteboard::Capture;
using Limits = Pasteboard::Limits;

constexpr double interval = 0.5;

/// As nspasteboard.org lists them; the older ones are single programs' own.
constexpr std::array transientMarkers = {
    "org.nspasteboard.TransientType",     "org.nspasteboard.ConcealedType",
    "com.agilebits.onepassword",          "de.petermaurer.TransientPasteboardType",
    "com.typeit4me.clipping",             "Pasteboard generator type"};

/// MIME types and the system's, in the order in which they are looked for.
std::vector<std::pair<std::string_view, NSPasteboardType>> typeTable() {
  return {{Pasteboard::filesType, NSPasteboardTypeFileURL},
          {Pasteboard::tiffType, NSPasteboardTypeTIFF},
          {Pasteboard::pngType, NSPasteboardTypePNG},
          {Pasteboard::textType, NSPasteboardTypeString}};
}

std::vector<std::string> nativeTypes(NSPasteboard* board) {
  std::vector<std::string> types;
  const auto add = [&](NSArray<NSPasteboardType>* some) {
    for (NSPasteboardType type in some)
      if (const auto name = toText(type); std::ranges::find(types, name) == types.end())
        types.push_back(name);
  };
  add(board.types);
  for (NSPasteboardItem* item in board.pasteboardItems)
    add(item.types);
  return types;
}

std::vector<std::string> mimeTypes(const std::vector<std::string>& native) {
  const auto has = [&](const std::string& name) {
    return std::ranges::find(native, name) != native.end();
  };
  std::vector<std::string> types;
  for (const auto& [mime, type] : typeTable())
    if (has(toText(type)))
      types.emplace_back(mime);
  if (std::ranges::any_of(transientMarkers, has))
    types.emplace_back(Pasteboard::transientType);
  return types;
}

std::shared_ptr<const Data> bytesOf(const void* bytes, std::size_t size) {
  const auto* begin = static_cast<const std::uint8_t*>(bytes);
  return std::make_shared<const Data>(Data{std::vector<std::uint8_t>(begin, begin + size)});
}

Format textFormat(std::string_view mime, const std::string& text, std::size_t limit) {
  // A cut may fall into the middle of a character.
  std::size_t kept = std::min(text.size(), limit);
  while (kept < text.size() && kept > 0 && (static_cast<unsigned char>(text[kept]) & 0xC0) == 0x80)
    --kept;
  return {std::string(mime), bytesOf(text.data(), kept), text.size()};
}

std::string fileAddresses(NSPasteboard* board) {
  std::string lines;
  NSArray* urls = [board readObjectsForClasses:@[ NSURL.class ]
                                       options:@{NSPasteboardURLReadingFileURLsOnlyKey : @YES}];
  for (NSURL* url in urls)
    lines += toText(url.absoluteString) + "\r\n";
  return lines;
}

Format imageFormat(std::string_view mime, NSData* data, std::size_t limit) {
  Format format{std::string(mime), nullptr, data.length};
  if (data.length <= limit)
    format.data = bytesOf(data.bytes, data.length);
  return format;
}

/// Of the first type that has something to read.
std::vector<Format> readFormats(NSPasteboard* board, const std::vector<std::string>& types,
                                const Limits& limits) {
  for (const auto& [mime, type] : typeTable()) {
    if (std::ranges::find(types, mime) == types.end())
      continue;
    Format format;
    if (mime == Pasteboard::filesType)
      format = textFormat(mime, fileAddresses(board), limits.textBytes);
    else if (mime == Pasteboard::textType)
      format = textFormat(mime, toText([board stringForType:type]), limits.textBytes);
    else
      format = imageFormat(mime, [board dataForType:type], limits.imageBytes);
    if (format.size > 0)
      return {format};
  }
  return {};
}

class MacPasteboard final : public Pasteboard {
public:
  explicit MacPasteboard(RunLoop& runLoop) : runLoop_(runLoop) {}

  bool canObserve() const override { return true; }

  TokenPtr observe(const Limits& limits, Observer observer) override {
    struct Observation final : Token {
      explicit Observation(MacPasteboard& board) : board(board) {}
      ~Observation() override {
        board.timer_.reset();
        board.listener_.reset();
      }
      MacPasteboard& board;
    };
    limits_ = limits;
    listener_ = std::make_shared<Observer>(std::move(observer));
    seen_ = board().changeCount;
    timer_ = runLoop_.repeat(interval, [this] { look(); });
    return std::make_unique<Observation>(*this);
  }

  void write(std::vector<Format> formats) override {
    NSMutableArray<id<NSPasteboardWriting>>* objects = [NSMutableArray array];
    NSPasteboardItem* item = [[NSPasteboardItem alloc] init];
    bool hasContent = false;
    for (const Format& format : formats) {
      if (!format.data)
        continue;
      if (format.type == filesType)
        addFiles(objects, format.data->view());
      else
        hasContent = put(item, format) || hasContent;
    }
    if (hasContent)
      [objects addObject:item];
    [board() clearContents];
    [board() writeObjects:objects];
    own_ = board().changeCount;
  }

private:
  static NSPasteboard* board() { return NSPasteboard.generalPasteboard; }

  static bool put(NSPasteboardItem* item, const Format& format) {
    NSData* data = [NSData dataWithBytes:format.data->bytes.data()
                                  length:format.data->bytes.size()];
    for (const auto& [mime, type] : typeTable())
      if (format.type == mime)
        return [item setData:data forType:type];
    return [item setData:data forType:toNSString(format.type)];
  }

  static void addFiles(NSMutableArray<id<NSPasteboardWriting>>* objects, std::string_view lines) {
    while (!lines.empty()) {
      const auto end = std::min(lines.find_first_of("\r\n"), lines.size());
      if (NSURL* url = end > 0 ? [NSURL URLWithString:toNSString(lines.substr(0, end))] : nil)
        [objects addObject:url];
      lines.remove_prefix(std::min(end + 1, lines.size()));
    }
  }

  void look() {
    const NSInteger count = board().changeCount;
    if (std::exchange(seen_, count) == count)
      return;
    // A handler may end the observation, and with it this timer.
    const auto listener = listener_;
    if (count == own_) {
      if (listener->captured)
        listener->captured({count, {}, {}, true});
      return;
    }
    read(count);
    if (listener->changed)
      listener->changed(count);
  }

  void read(NSInteger count) {
    if (!queue_)
      queue_ = runLoop_.makeSerialQueue();
    queue_->run([&runLoop = runLoop_, limits = limits_, weak = std::weak_ptr(listener_), count] {
      @autoreleasepool {
        if (weak.expired())
          return;
        Capture capture{count, mimeTypes(nativeTypes(board())), {}, false};
        capture.formats = readFormats(board(), capture.types, limits);
        // The count is the whole session's.
        capture.copyName = "NSPasteboard " + std::to_string(count);
        // Something else was copied meanwhile, and is read next.
        if (board().changeCount != count)
          return;
        runLoop.post([weak, capture = std::move(capture)] {
          const auto listener = weak.lock();
          if (listener && listener->captured)
            listener->captured(capture);
        });
      }
    });
  }

  RunLoop& runLoop_;
  Limits limits_;
  std::shared_ptr<Observer> listener_;
  NSInteger seen_ = 0;
  NSInteger own_ = -1;
  TokenPtr timer_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace

std::unique_ptr<Pasteboard> makeMacPasteboard(RunLoop& runLoop) {
  return std::make_unique<MacPasteboard>(runLoop);
}

} // namespace tavrin
