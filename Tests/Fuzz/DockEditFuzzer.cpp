#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinHost/Dock/DockEditing.h"
#include "TavrinHost/HostError.h"

#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

namespace {

using namespace tavrin;

std::optional<DockSection> section(FuzzedDataProvider& data) {
  const int choice = data.ConsumeIntegralInRange<int>(0, 2);
  return choice == 0   ? std::nullopt
         : choice == 1 ? std::optional(DockSection::apps)
                       : std::optional(DockSection::others);
}

DockPlace place(FuzzedDataProvider& data) {
  if (data.ConsumeBool())
    return {DockPlace::Beside{data.ConsumeRandomLengthString(12), data.ConsumeBool()}};
  return DockPlace::parse(data.ConsumeRandomLengthString(12));
}

DockSelection selection(FuzzedDataProvider& data) {
  DockSelection chosen;
  for (int left = data.ConsumeIntegralInRange<int>(0, 3); left > 0; --left)
    chosen.references.push_back(data.ConsumeRandomLengthString(16));
  chosen.allSpacers = data.ConsumeBool();
  chosen.everything = data.ConsumeBool();
  chosen.everyMatch = data.ConsumeBool();
  chosen.section = section(data);
  return chosen;
}

DockEdit edit(FuzzedDataProvider& data, const DockSnapshot& dock) {
  switch (data.ConsumeIntegralInRange<int>(0, 2)) {
  case 0: {
    DockAddition addition;
    const auto& items = data.ConsumeBool() ? dock.apps : dock.others;
    if (!items.empty())
      addition.items = {items[data.ConsumeIntegralInRange<std::size_t>(0, items.size() - 1)]};
    addition.section = section(data);
    if (data.ConsumeBool())
      addition.place = place(data);
    if (data.ConsumeBool())
      addition.replacing = data.ConsumeRandomLengthString(16);
    return adding(std::move(addition), [](const DockItem&) {});
  }
  case 1:
    return removing(selection(data));
  default:
    return moving(selection(data), section(data), place(data));
  }
}

/// What stays of a Dock is written as it would be to its file, and reads again.
void check(const DockSnapshot& dock) {
  for (const auto* items : {&dock.apps, &dock.others})
    for (const auto& item : *items)
      decodeItem(encodeItem(item), items == &dock.apps ? DockSection::apps : DockSection::others,
                 "dock.plist");
  for (const auto& placed : placedItems(dock)) {
    described(placed);
    addressOf(placed.item);
  }
}

} // namespace

/// The command line over a Dock's file: the words may be anything, and so may the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  try {
    const std::size_t words = data.ConsumeIntegralInRange<std::size_t>(0, 120);
    const std::string typed = data.ConsumeBytesAsString(words);
    const auto root = PropertyList::parse(data.ConsumeRemainingBytesAsString());
    DockSnapshot dock;
    for (const auto& tile : tileArray(root.entry(DockTiles::appsKey), DockTiles::appsKey, "file"))
      dock.apps.push_back(decodeItem(tile, DockSection::apps, "file"));
    for (const auto& tile :
         tileArray(root.entry(DockTiles::othersKey), DockTiles::othersKey, "file"))
      dock.others.push_back(decodeItem(tile, DockSection::others, "file"));
    FuzzedDataProvider line(reinterpret_cast<const std::uint8_t*>(typed.data()), typed.size());
    for (int left = line.ConsumeIntegralInRange<int>(1, 4); left > 0; --left)
      edit(line, dock)(dock);
    check(dock);
  } catch (const PropertyListError&) {
  } catch (const DockError&) {
  } catch (const HostError&) {
    // It says what is wrong with the words.
  }
  return 0;
}
