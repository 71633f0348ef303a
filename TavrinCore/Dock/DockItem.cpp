#include "TavrinCore/Dock/DockItem.h"

#include "TavrinCore/Base/Overloaded.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <unordered_map>

namespace tavrin {
namespace {

std::string lastComponent(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

template <class Payload> DockItem decodePayload(const JSONValue& json, std::string_view key) {
  DockItem item;
  try {
    item.payload = decodeMember<Payload>(json, "_0");
  } catch (const CodingError& error) {
    throw error.inside(key);
  }
  if constexpr (Record<Payload>)
    item.unrecognized = RecordCoder<Payload>::unknownMembers(*json.member("_0"));
  return item;
}

} // namespace

const char* spacerName(SpacerVariant variant) {
  switch (variant) {
  case SpacerVariant::small:
    return marked("Small spacer");
  case SpacerVariant::flex:
    return marked("Flex spacer");
  case SpacerVariant::standard:
    break;
  }
  return marked("Spacer");
}

std::string DockItem::displayName() const {
  return std::visit(
      Overloaded{[](SpacerVariant variant) { return translated(spacerName(variant)); },
                 [](const URLEntry& entry) { return entry.displayName.value_or(entry.url); },
                 [](const auto& entry) {
                   return entry.displayName ? *entry.displayName : lastComponent(entry.path);
                 }},
      payload);
}

std::vector<DockItem> DockSnapshot::allItems() const {
  auto items = apps;
  items.insert(items.end(), others.begin(), others.end());
  return items;
}

DockItem Coder<DockItem>::decode(const JSONValue& json) {
  const auto* object = json.object();
  if (object == nullptr)
    detail::throwWrongType("an object");
  if (object->size() != 1)
    throw CodingError("Invalid number of keys found, expected one.");
  const auto& [key, value] = *object->begin();
  if (key == "app")
    return decodePayload<AppEntry>(value, key);
  if (key == "spacer")
    return decodePayload<SpacerVariant>(value, key);
  if (key == "file")
    return decodePayload<FileEntry>(value, key);
  if (key == "url")
    return decodePayload<URLEntry>(value, key);
  throw CodingError("\"" + key + "\" is no sort of Dock item");
}

JSONValue Coder<DockItem>::encode(const DockItem& item) {
  constexpr std::array keys = {"app", "spacer", "file", "url"};
  auto payload = std::visit([](const auto& entry) { return tavrin::encode(entry); }, item.payload);
  if (auto* members = payload.object())
    members->insert(item.unrecognized.begin(), item.unrecognized.end());
  return JSONValue::Object{
      {keys[item.payload.index()], JSONValue::Object{{"_0", std::move(payload)}}}};
}

} // namespace tavrin

std::size_t std::hash<tavrin::DockItem>::operator()(const tavrin::DockItem& item) const {
  auto plain = item;
  plain.unrecognized.clear();
  return std::hash<std::string>()(tavrin::encode(plain).compact());
}
