#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

/// A history that can be read is written so that it reads the same; and whatever is copied as text
/// makes an item that can be written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto copied = std::make_shared<const ClipboardEntry>(ClipboardItem::ofText(text));
  const auto file = std::make_shared<const ClipboardEntry>(
      ClipboardItem::ofFile("file:" + cleanText(text, 4096), 0));
  const auto again = decodeClipboard(encodeClipboard({copied, file}));
  if (again.size() != 2 || again[0]->item != copied->item || again[1]->item != file->item)
    std::abort();
  copied->item.previewLine();
  file->item.previewLine();
  ClipboardItem::looksLikeURL(text);
  ClipboardItem::isFetchableHost(text);
  ClipboardBoard::search(text.substr(0, size / 2), {copied, file});
  try {
    const auto list = decodeClipboard(std::string(text));
    const std::string written = encodeClipboard(list);
    if (encodeClipboard(decodeClipboard(written)) != written)
      std::abort();
    ClipboardBoard::retained(list, {}, Date{8e8});
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
