#include "TavrinSettings/Editing/WidgetsEditor.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Widgets/StarterSet.h"
#include "TavrinSettings/Editing/ChangeStep.h"
#include "TavrinSettings/Editing/StripOrder.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

std::set<int> slotsOf(const WidgetsFile& file) {
  std::set<int> slots;
  for (const auto& [slot, unused] : file.placedWidgets())
    slots.insert(slot);
  return slots;
}

[[noreturn]] void throwFull() {
  throw HostError(
      ExitCode::noFreeSlot,
      translated("All twelve places are taken. Take a widget off the strip to make room"));
}

} // namespace

WidgetsEditor::WidgetsEditor(HostContext& context, History& history)
    : context_(context), history_(history), library_(context), shown_(library_.file()) {}

const DockWidget* WidgetsEditor::widget(const UUID& id) const {
  const auto found = std::ranges::find(file().widgets, id, &DockWidget::id);
  return found == file().widgets.end() ? nullptr : &*found;
}

std::string WidgetsEditor::nameOf(const UUID& id) const {
  const auto* found = widget(id);
  return found == nullptr ? translated("Widget") : found->name;
}

void WidgetsEditor::reload() {
  library_.reload();
  follow();
}

void WidgetsEditor::follow() {
  if (file() == shown_)
    return;
  const auto had = slotsOf(std::exchange(shown_, WidgetsFile(file())));
  auto fresh = slotsOf(file());
  std::erase_if(fresh, [&](int slot) { return had.contains(slot); });
  if (onChange)
    onChange();
  if (!fresh.empty() && onNewSlots)
    onNewSlots(fresh);
}

void WidgetsEditor::perform(const std::string& title, const std::string& field,
                            const std::function<void(WidgetStore&)>& change) {
  const auto difference = library_.change([&](WidgetStore& store) {
    const auto before = store.file();
    change(store);
    return WidgetsChange::between(before, store.file());
  });
  if (!difference.isEmpty())
    history_.add(std::make_unique<ChangeStep<WidgetsChange>>(
        title, field, difference, [this](auto& made) { return apply(made); }));
  follow();
}

std::vector<std::string> WidgetsEditor::apply(WidgetsChange& change) {
  auto [remarks, done] = library_.change([&](WidgetStore& store) {
    const auto before = store.file();
    auto said = change.apply(store);
    return std::pair(std::move(said), WidgetsChange::between(before, store.file()));
  });
  change = std::move(done);
  follow();
  return std::move(remarks);
}

UUID WidgetsEditor::add(std::string_view kind, std::optional<std::size_t> place) {
  const auto& info = kindNamed(kind);
  const auto fresh = *freshKind(info.key, context_.platform().clock().now());
  UUID made;
  perform(translated("Add {name}", {{"name", translation(info.title)}}), {},
          [&](WidgetStore& store) {
            made = store.create(freeName(store.file(), translation(info.title)), fresh).id;
            if (!insertInStrip(store, made, place.value_or(store.file().widgets.size())))
              throwFull();
          });
  return made;
}

void WidgetsEditor::addStarterSet() {
  perform(translated("Starter Set"), {}, [&](WidgetStore& store) {
    tavrin::addStarterSet(store, context_.platform().clock().now());
  });
}

void WidgetsEditor::place(const UUID& id, std::size_t place) {
  perform(isOnStrip(file(), id) ? translated("Move {name}", {{"name", nameOf(id)}})
                                : translated("Place {name}", {{"name", nameOf(id)}}),
          {}, [&](WidgetStore& store) {
            if (isOnStrip(store.file(), id))
              moveInStrip(store, id, place);
            else if (store.widget(id) && !insertInStrip(store, id, place))
              throwFull();
          });
}

void WidgetsEditor::takeOff(const UUID& id) {
  perform(translated("Take Off {name}", {{"name", nameOf(id)}}), {},
          [&](WidgetStore& store) { store.releaseSlot(id); });
}

void WidgetsEditor::remove(const UUID& id) {
  perform(translated("Delete {name}", {{"name", nameOf(id)}}), {},
          [&](WidgetStore& store) { store.remove(id); });
}

void WidgetsEditor::setSpan(const UUID& id, int span) {
  edit(id, translated("Resize {name}", {{"name", nameOf(id)}}), {},
       [span](DockWidget& widget) { widget.span = std::clamp(span, 1, widget.kind.maxSpan()); });
}

void WidgetsEditor::edit(const UUID& id, const std::string& title, const std::string& field,
                         const std::function<void(DockWidget&)>& edit) {
  const auto step = field.empty() ? field : id.text() + "/" + field;
  perform(title, step, [&](WidgetStore& store) {
    auto widget = store.widget(id);
    if (!widget)
      throw HostError(ExitCode::notFound, translated("This widget was removed elsewhere"));
    edit(*widget);
    store.update(*widget);
  });
}

} // namespace tavrin
