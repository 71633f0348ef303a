#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Base/ISO8601Date.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"

#include <memory>

namespace tavrin {

/// One thing that was copied.
struct ClipboardItem {
  enum class Kind { text, image, file };

  /// Characters (code points) of a text that are kept.
  static constexpr std::size_t longestText = 200'000;

  UUID id;
  Kind kind = Kind::text;
  ISO8601Date capturedAt;
  /// Pinned items survive retention, limit and "clear".
  bool isPinned = false;
  std::optional<std::string> text;
  /// TIFF or PNG as found; none for an image that was too large.
  std::optional<Data> imageData;
  /// A file address: "file:///home/ada/a%20b.txt".
  std::optional<std::string> fileURL;
  /// Of the text in UTF-8, the image or the file; 0 when unknown.
  std::int64_t byteSize = 0;
  std::optional<std::string> sourceAppBundleID;
  std::optional<std::string> sourceAppName;
  /// The text looks like a password or a key.
  bool isSensitive = false;
  std::optional<std::string> ogTitle;
  std::optional<std::string> ogDescription;
  std::optional<Data> ogImageData;
  std::optional<ISO8601Date> ogFetchedAt;

  static ClipboardItem ofText(std::string_view text);
  /// `data` may be missing.
  static ClipboardItem ofImage(std::optional<Data> data, std::int64_t size);
  static ClipboardItem ofFile(std::string url, std::int64_t size);

  static bool looksSensitive(std::string_view text);
  /// One http or https address and nothing else.
  static bool looksLikeURL(std::string_view text);
  /// Whether the host of `url` is a name on the public internet, judged by the name alone.
  static bool isFetchableHost(std::string_view url);

  /// Whether there is something to put back on the pasteboard: of a large image only its size was
  /// kept.
  bool hasContent() const { return kind != Kind::image || imageData.has_value(); }
  /// The host of an address that was copied, without "www."; empty for everything else.
  std::string linkHost() const;
  /// One line for lists and the tile, at most 200 characters.
  std::string previewLine() const;
  /// The last part of the file's path; empty for other kinds.
  std::string fileName() const;
  /// Overwrites and empties what is text.
  void wipeTexts();

  static constexpr auto fields() {
    using I = ClipboardItem;
    return std::tuple{required("id", &I::id),
                      required("kind", &I::kind),
                      required("capturedAt", &I::capturedAt),
                      required("isPinned", &I::isPinned),
                      optional("text", &I::text),
                      optional("imageData", &I::imageData),
                      optional("fileURL", &I::fileURL),
                      required("byteSize", &I::byteSize),
                      optional("sourceAppBundleID", &I::sourceAppBundleID),
                      optional("sourceAppName", &I::sourceAppName),
                      required("isSensitive", &I::isSensitive),
                      optional("ogTitle", &I::ogTitle),
                      optional("ogDescription", &I::ogDescription),
                      optional("ogImageData", &I::ogImageData),
                      optional("ogFetchedAt", &I::ogFetchedAt)};
  }
  bool operator==(const ClipboardItem&) const = default;
};

template <> struct EnumNames<ClipboardItem::Kind> {
  static constexpr auto names = std::to_array<std::pair<ClipboardItem::Kind, std::string_view>>(
      {{ClipboardItem::Kind::text, "text"},
       {ClipboardItem::Kind::image, "image"},
       {ClipboardItem::Kind::file, "file"}});
};

/// "12 KB", "3.1 MB": decimal units.
std::string byteText(std::int64_t bytes);

} // namespace tavrin
