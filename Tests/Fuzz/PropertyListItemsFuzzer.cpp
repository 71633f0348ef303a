#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinCore/Dock/DockTileMapping.h"
#include "Tests/Fuzz/Require.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tavrin;

std::vector<DockItem> items(const PropertyList& root, std::string_view key, DockSection section) {
  std::vector<DockItem> found;
  for (const auto& tile : tileArray(root.entry(key), key, "dock.plist"))
    found.push_back(decodeItem(tile, section, "dock.plist"));
  return found;
}

/// What is read is written so that it reads the same, and writing that again changes nothing.
void roundTrip(const std::vector<DockItem>& all, DockSection section) {
  for (const auto& item : all) {
    const auto tile = encodeItem(item);
    const auto again = decodeItem(tile, section, "dock.plist");
    require(again.payload.index() == item.payload.index(), "an item keeps its sort");
    require(PropertyList(encodeItem(again)).binary() == PropertyList(tile).binary(),
            "a written tile stays as it is");
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  try {
    const auto root =
        PropertyList::parse(std::string_view(reinterpret_cast<const char*>(bytes), size));
    const auto binary = root.binary();
    require(PropertyList::parse(binary.view()).binary() == binary, "the binary form is stable");
    try {
      const auto xml = root.xml();
      require(PropertyList::parse(xml).xml() == xml, "the XML form is stable");
    } catch (const PropertyListError&) {
      // Texts and dates that XML cannot hold.
    }
    roundTrip(items(root, DockTiles::appsKey, DockSection::apps), DockSection::apps);
    roundTrip(items(root, DockTiles::othersKey, DockSection::others), DockSection::others);
  } catch (const PropertyListError&) {
  } catch (const DockError&) {
  }
  return 0;
}
