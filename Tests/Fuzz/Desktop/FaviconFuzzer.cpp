#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinWidgetsUI/Bookmarks/Favicon.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever a server sends for an icon, what comes of it is a square of the size wanted or nothing;
/// whatever is typed for an address, what is made of it is one again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view data(reinterpret_cast<const char*>(bytes), size);
  const QImage icon = faviconFrom(data, 48);
  if (!icon.isNull() && icon.size() != QSize(48, 48))
    std::abort();
  if (const auto address = WebAddress::from(data)) {
    const auto again = WebAddress::from(address->url);
    if (!again || again->origin() != address->origin() || !WebAddress::from(address->origin()))
      std::abort();
  }
  return 0;
}
