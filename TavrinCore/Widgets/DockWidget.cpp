#include "TavrinCore/Widgets/DockWidget.h"

#include "TavrinCore/Widgets/KindTable.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace tavrin {

using Kind = DockWidget::Kind;

Kind::Kind() : Kind(CollectionSettings{}) {}

std::size_t Kind::index() const {
  const auto kinds = allKinds();
  const auto place = std::ranges::find(kinds, key(), &KindInfo::key);
  assert(place != kinds.end() && "the record is in the kind table");
  return static_cast<std::size_t>(place - kinds.begin());
}
std::string_view Kind::title() const {
  return translation(allKinds()[index()].title);
}
int Kind::maxSpan() const {
  return allKinds()[index()].maxSpan;
}
bool Kind::takesFiles() const {
  return allKinds()[index()].takesFiles;
}

int Kind::defaultSpan() const {
  return visitKind(
      *this, [](const auto& settings) { return kindRow(settings).defaultSpan(settings); });
}

std::span<const KindInfo> allKinds() {
  static constexpr auto infos = std::apply(
      [](const auto&... row) {
        return std::array{KindInfo{row.key, row.title, row.symbol, row.purpose, row.words,
                                   row.maxSpan, row.takesFiles}...};
      },
      kindTable);
  return infos;
}

DockWidget::DockWidget(UUID widgetID, std::string widgetName, std::optional<int> widgetSlot,
                       Kind widgetKind, int widgetSpan)
    : id(widgetID), name(std::move(widgetName)), slot(widgetSlot), kind(std::move(widgetKind)),
      span(std::min(std::max(widgetSpan, 1), kind.maxSpan())) {}

namespace {

template <class Settings> Kind decodePayload(const KindRow<Settings>& row, const JSONValue& json) {
  if (row.payload == KindPayload::none && json.member(row.key)->object() == nullptr)
    return Settings{};
  if (row.payload != KindPayload::wrapped)
    return decodeMember<Settings>(json, row.key);
  try {
    return decodeMember<Settings>(*json.member(row.key), "_0");
  } catch (const CodingError& error) {
    throw error.inside(row.key);
  }
}

/// The kinds as indices in the order in which a decoder looks for them: that of their declaration,
/// but `fans` and `keyboardLock` follow `airdrop`.
constexpr auto decodingOrder = [] {
  constexpr std::size_t count = AllKinds::size;
  constexpr std::size_t fans = kindIndex<FanSettings>;
  constexpr std::size_t keyboardLock = kindIndex<KeyboardLockSettings>;
  std::array<std::size_t, count> order{};
  std::size_t next = 0;
  for (std::size_t index = 0; index < count; ++index) {
    if (index == fans || index == keyboardLock)
      continue;
    order[next++] = index;
    if (index == kindIndex<AirDropSettings>) {
      order[next++] = fans;
      order[next++] = keyboardLock;
    }
  }
  return order;
}();

using PayloadDecoder = Kind (*)(const JSONValue&);

template <std::size_t... Index> constexpr auto payloadDecoders(std::index_sequence<Index...>) {
  return std::array<PayloadDecoder, sizeof...(Index)>{
      [](const JSONValue& json) { return decodePayload(std::get<Index>(kindTable), json); }...};
}

} // namespace

Kind Coder<Kind>::decode(const JSONValue& json) {
  static constexpr auto decoders =
      payloadDecoders(std::make_index_sequence<std::tuple_size_v<decltype(kindTable)>>());
  if (json.object() == nullptr)
    detail::throwWrongType("an object");
  for (const std::size_t index : decodingOrder)
    if (json.member(allKinds()[index].key) != nullptr)
      return decoders[index](json);
  throw CodingError("Unknown widget kind");
}

JSONValue Coder<Kind>::encode(const Kind& kind) {
  return visitKind(kind, [](const auto& settings) -> JSONValue {
    const auto& row = kindRow(settings);
    JSONValue payload = tavrin::encode(settings);
    if (row.payload == KindPayload::wrapped)
      payload = JSONValue::Object{{"_0", std::move(payload)}};
    return JSONValue::Object{{std::string(row.key), std::move(payload)}};
  });
}

DockWidget Coder<DockWidget>::decode(const JSONValue& json) {
  const auto optionalNumber = [&]<class Number>(std::string_view key, Number) {
    return json.member(key) ? decodeMember<std::optional<Number>>(json, key) : std::nullopt;
  };
  const auto id = decodeMember<UUID>(json, "id");
  auto name = decodeMember<std::string>(json, "name");
  const auto slot = optionalNumber("slot", std::int64_t());
  // Not taken for the nearest: the entry is kept as it is.
  if (slot && !std::in_range<int>(*slot))
    throw CodingError("slot", "must be a whole number in range");
  auto kind = decodeMember<Kind>(json, "kind");
  const auto span = optionalNumber("span", std::int64_t()).value_or(kind.defaultSpan());
  const auto fitting = std::clamp<std::int64_t>(span, 1, kind.maxSpan());
  return {id, std::move(name), slot ? std::optional(static_cast<int>(*slot)) : std::nullopt,
          std::move(kind), static_cast<int>(fitting)};
}

JSONValue Coder<DockWidget>::encode(const DockWidget& widget) {
  JSONValue::Object members{{"id", tavrin::encode(widget.id)},
                            {"name", widget.name},
                            {"kind", tavrin::encode(widget.kind)},
                            {"span", widget.span}};
  if (widget.slot)
    members.emplace("slot", *widget.slot);
  return members;
}

} // namespace tavrin
