#include "TavrinCore/Kinds/Clipboard/PagePreview.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

/// The first line is the content type, the rest the page. What is read is UTF-8 in one line within
/// its bounds, whatever the page and its character set.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const auto end = std::min(input.find('\n'), input.size());
  const auto page =
      readPagePreview(input.substr(std::min(end + 1, input.size())), input.substr(0, end));
  for (const auto& [text, longest] :
       {std::pair(page.title, PagePreview::longestTitle),
        std::pair(page.description, PagePreview::longestDescription),
        std::pair(page.image, std::size_t{2048}), std::pair(page.base, std::size_t{2048})})
    if (!isUTF8(text) || text.find('\n') != std::string::npos || oneLine(text, longest) != text)
      std::abort();
  return 0;
}
