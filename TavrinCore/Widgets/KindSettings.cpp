#include "TavrinCore/Widgets/KindTable.h"

#include <fmt/format.h>

namespace tavrin {

std::optional<DockWidget::Kind> freshKind(std::string_view key, Date now) {
  constexpr double week = 604'800;
  std::optional<DockWidget::Kind> fresh;
  const auto take = [&](const auto& row) {
    if (row.key == key)
      fresh = typename std::decay_t<decltype(row)>::Settings{};
  };
  std::apply([&](const auto&... row) { (take(row), ...); }, kindTable);
  if (fresh)
    if (auto* countdown = fresh->get<CountdownSettings>())
      countdown->target = now + week;
  return fresh;
}

std::vector<FieldInfo> describeSettings(const DockWidget::Kind& kind) {
  return std::visit(
      [](const auto& settings) { return describe<std::decay_t<decltype(settings)>>(); }, kind);
}

JSONValue settingsJSON(const DockWidget::Kind& kind) {
  return std::visit([](const auto& settings) { return encode(settings); }, kind);
}

DockWidget::Kind withSettings(const DockWidget::Kind& kind, const JSONValue& settings) {
  return std::visit(
      [&](const auto& current) -> DockWidget::Kind {
        return decode<std::decay_t<decltype(current)>>(settings);
      },
      kind);
}

namespace {

bool isOutside(const FieldRange& range, const JSONValue& value) {
  if (const auto* list = value.array()) {
    for (const auto& item : *list)
      if (item.doubleValue() && isOutside(range, item))
        return true;
    const auto count = static_cast<double>(list->size());
    const bool isNumeric = !list->empty() && list->front().doubleValue();
    return !isNumeric && !list->empty() && (count < range.lower || count > range.upper);
  }
  const auto number = value.doubleValue();
  return number && !(*number >= range.lower && *number <= range.upper);
}

std::string rangeClause(const std::string& path, const FieldInfo& field) {
  const bool countsItems = field.type == FieldType::list &&
                           field.elementType != FieldType::number &&
                           field.elementType != FieldType::integer;
  const std::string unit = countsItems ? " entries" : field.unit.empty() ? "" : " " + field.unit;
  return fmt::format("\"{}\" must {} between {:.15g} and {:.15g}{}", path,
                     countsItems ? "have" : "be", field.range->lower, field.range->upper, unit);
}

std::optional<std::string> firstOutside(const std::vector<FieldInfo>& fields,
                                        const JSONValue& record, const std::string& prefix) {
  for (const auto& field : fields) {
    const auto* value = record.member(field.key);
    if (value == nullptr)
      continue;
    const std::string path = prefix + field.key;
    if (field.range && isOutside(*field.range, *value))
      return rangeClause(path, field);
    if (field.type == FieldType::record)
      if (auto clause = firstOutside(field.fields, *value, path + "."))
        return clause;
  }
  return std::nullopt;
}

} // namespace

std::optional<std::string> settingOutOfRange(const DockWidget::Kind& kind) {
  return firstOutside(describeSettings(kind), settingsJSON(kind), "");
}

} // namespace tavrin
