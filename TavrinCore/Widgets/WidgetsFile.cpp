#include "TavrinCore/Widgets/WidgetsFile.h"

#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Widgets/DockSlot.h"

#include <set>

namespace tavrin {
namespace {

struct LegacyCollection {
  UUID id;
  std::string name;
  std::vector<AppEntry> apps;
  std::optional<int> slot;

  static constexpr auto fields() {
    return std::tuple{
        required("id", &LegacyCollection::id), required("name", &LegacyCollection::name),
        required("apps", &LegacyCollection::apps), optional("slot", &LegacyCollection::slot)};
  }
};

struct LegacyCollections {
  std::vector<LegacyCollection> collections;

  static constexpr auto fields() {
    return std::tuple{required("collections", &LegacyCollections::collections)};
  }
};

} // namespace

std::set<int> WidgetsFile::takenSlots() const {
  std::set<int> taken;
  for (const auto& widget : widgets)
    if (widget.slot)
      taken.insert(*widget.slot);
  for (const auto& entry : unrecognized)
    if (const auto* slot = entry.raw.member("slot"))
      if (const auto number = slot->integerValue(); number && std::in_range<int>(*number))
        taken.insert(static_cast<int>(*number));
  return taken;
}

std::optional<int> WidgetsFile::freeSlot() const {
  return DockSlot::lowestFree(takenSlots());
}

std::map<int, const DockWidget*> WidgetsFile::placedWidgets() const {
  std::map<int, const DockWidget*> placed;
  for (const auto& widget : widgets)
    if (widget.slot && *widget.slot >= 1 && *widget.slot <= DockSlot::count)
      placed.emplace(*widget.slot, &widget);
  return placed;
}

WidgetsFile WidgetsFile::migrating(const JSONValue& legacyCollections) {
  WidgetsFile file;
  for (auto& legacy : decode<LegacyCollections>(legacyCollections).collections)
    file.widgets.emplace_back(legacy.id, std::move(legacy.name), legacy.slot,
                              CollectionSettings{std::move(legacy.apps), CollectionLayout::grid},
                              1);
  return file;
}

WidgetsFile Coder<WidgetsFile>::decode(const JSONValue& json) {
  WidgetsFile file;
  file.version = decodeMember<std::int64_t>(json, "version");
  for (const auto& entry : decodeMember<std::vector<JSONValue>>(json, "widgets")) {
    try {
      file.widgets.push_back(tavrin::decode<DockWidget>(entry));
    } catch (const CodingError&) {
      file.unrecognized.push_back({entry});
    }
  }
  return file;
}

JSONValue Coder<WidgetsFile>::encode(const WidgetsFile& file) {
  JSONValue::Array entries;
  entries.reserve(file.widgets.size() + file.unrecognized.size());
  for (const auto& widget : file.widgets)
    entries.push_back(tavrin::encode(widget));
  for (const auto& entry : file.unrecognized)
    entries.push_back(entry.raw);
  return JSONValue::Object{{"version", file.version}, {"widgets", std::move(entries)}};
}

} // namespace tavrin
