#include "TavrinSettings/Editing/WidgetsChange.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinSettings/Editing/ChangeStep.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace tavrin {
namespace {

const DockWidget* find(const WidgetsFile& file, const UUID& id) {
  const auto found = std::ranges::find(file.widgets, id, &DockWidget::id);
  return found == file.widgets.end() ? nullptr : &*found;
}

/// Takes a value from `before` to `after` in `current`; false where it stands otherwise by now.
template <class Value> bool carry(const Value& before, const Value& after, Value& current) {
  if (before == after || current == after)
    return true;
  if (current != before)
    return false;
  current = after;
  return true;
}

/// The same for each setting by itself.
bool carrySettings(const DockWidget::Kind& before, const DockWidget::Kind& after,
                   DockWidget::Kind& current) {
  if (before == after)
    return true;
  if (before.index() != after.index() || current.index() != before.index())
    return carry(before, after, current);
  const JSONValue was = settingsJSON(before);
  const JSONValue becomes = settingsJSON(after);
  JSONValue settings = settingsJSON(current);
  bool isWhole = true;
  const auto valueIn = [](const JSONValue& record, const std::string& key) {
    const auto* value = record.member(key);
    return value == nullptr ? JSONValue() : *value;
  };
  for (const auto& field : describeSettings(after)) {
    const auto key = field.key;
    const auto old = valueIn(was, key);
    const auto made = valueIn(becomes, key);
    if (old == made)
      continue;
    const auto stands = valueIn(settings, key);
    if (stands != old && stands != made)
      isWhole = false;
    else if (becomes.member(key) == nullptr)
      settings.object()->erase(key);
    else
      settings.object()->insert_or_assign(key, made);
  }
  current = withSettings(current, settings);
  return isWhole;
}

} // namespace

WidgetsChange WidgetsChange::between(const WidgetsFile& before, const WidgetsFile& after) {
  WidgetsChange change;
  for (const auto& widget : before.widgets) {
    const auto* now = find(after, widget.id);
    if (now == nullptr)
      change.entries.push_back({widget, std::nullopt});
    else if (*now != widget)
      change.entries.push_back({widget, *now});
  }
  for (const auto& widget : after.widgets)
    if (find(before, widget.id) == nullptr)
      change.entries.push_back({std::nullopt, widget});
  return change;
}

WidgetsChange WidgetsChange::inverse() const {
  WidgetsChange change;
  for (const auto& entry : entries)
    change.entries.push_back({entry.after, entry.before});
  return change;
}

WidgetsChange WidgetsChange::followedBy(const WidgetsChange& next) const {
  WidgetsFile first;
  WidgetsFile last;
  const auto take = [](WidgetsFile& file, const std::optional<DockWidget>& widget) {
    if (widget && find(file, widget->id) == nullptr)
      file.widgets.push_back(*widget);
  };
  // The earliest state of each widget, and its latest.
  std::set<UUID> begun;
  for (const auto* change : {this, &next})
    for (const auto& entry : change->entries)
      if (begun.insert(entry.before ? entry.before->id : entry.after->id).second)
        take(first, entry.before);
  std::set<UUID> ended;
  for (const auto* change : {&next, this})
    for (const auto& entry : change->entries)
      if (ended.insert(entry.before ? entry.before->id : entry.after->id).second)
        take(last, entry.after);
  return between(first, last);
}

std::vector<std::string> WidgetsChange::apply(WidgetStore& store) const {
  std::vector<std::string> remarks;
  /// Who is to have which place once all have left theirs.
  std::vector<std::pair<UUID, int>> placings;
  for (const auto& [before, after] : entries) {
    auto current = store.widget(before ? before->id : after->id);
    if (!after) {
      if (current && *current != *before)
        remarks.push_back(staysAsChanged(current->name));
      else if (current)
        store.remove(current->id);
      continue;
    }
    if (!before) {
      if (current)
        continue;
      auto made = *after;
      if (const auto slot = std::exchange(made.slot, std::nullopt))
        placings.emplace_back(made.id, *slot);
      store.put(made);
      continue;
    }
    if (!current) {
      remarks.push_back(translated("\"{name}\" was removed elsewhere", {{"name", after->name}}));
      continue;
    }
    auto changed = *current;
    bool isWhole = carry(before->name, after->name, changed.name);
    isWhole = carry(before->span, after->span, changed.span) && isWhole;
    isWhole = carrySettings(before->kind, after->kind, changed.kind) && isWhole;
    isWhole = carry(before->slot, after->slot, changed.slot) && isWhole;
    if (changed.slot != current->slot && changed.slot) {
      placings.emplace_back(changed.id, *changed.slot);
      changed.slot.reset();
    }
    if (!isWhole)
      remarks.push_back(staysAsChanged(current->name));
    if (changed != *current)
      store.update(changed);
  }
  for (const auto& [id, slot] : placings) {
    const auto& file = store.file();
    const auto free = file.takenSlots().contains(slot) ? file.freeSlot() : std::optional(slot);
    store.change(id, [&](DockWidget& widget) { widget.slot = free; });
    if (!free)
      remarks.push_back(
          translated("\"{name}\" is kept off the strip, for all twelve places are taken",
                     {{"name", store.widget(id)->name}}));
  }
  return remarks;
}

} // namespace tavrin
