#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinCore/Widgets/KindTable.h"
#include "TavrinCore/Widgets/SettingChanges.h"

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
  return visitKind(
      kind, [](const auto& settings) { return describe<std::decay_t<decltype(settings)>>(); });
}

JSONValue settingsJSON(const DockWidget::Kind& kind) {
  return visitKind(kind, [](const auto& settings) { return encode(settings); });
}

DockWidget::Kind withSettings(const DockWidget::Kind& kind, const JSONValue& settings) {
  return visitKind(kind, [&](const auto& current) -> DockWidget::Kind {
    return decode<std::decay_t<decltype(current)>>(settings);
  });
}

DockWidget::Kind withChanges(const DockWidget::Kind& current, const DockWidget::Kind& base,
                             const DockWidget::Kind& edited) {
  if (base.index() != edited.index())
    return edited;
  const auto before = settingsJSON(base);
  const auto after = settingsJSON(edited);
  auto settings = settingsJSON(current);
  for (const auto& field : describeSettings(current)) {
    const auto* was = before.member(field.key);
    const auto* is = after.member(field.key);
    if (was != nullptr && is != nullptr ? *was == *is : was == is)
      continue;
    settings.object()->erase(field.key);
    if (is != nullptr)
      settings.object()->emplace(field.key, *is);
  }
  return withSettings(current, settings);
}

} // namespace tavrin
