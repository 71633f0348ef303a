#pragma once

#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinSettings/Editing/History.h"
#include "TavrinSettings/Editing/WidgetsChange.h"

#include <functional>
#include <set>

namespace tavrin {

/// The widgets as the window changes them: each change is a transaction of the widgets file, is
/// announced to the slots, and becomes a step of the history. Throws HostError and FileError with a
/// whole sentence; nothing is changed then.
class WidgetsEditor {
public:
  WidgetsEditor(HostContext& context, History& history);

  const WidgetsFile& file() const { return library_.file(); }
  const DockWidget* widget(const UUID& id) const;
  /// Others may have changed the file.
  void reload();

  /// A new widget of a kind, by its key, at a place of the strip; without a place at its end. With
  /// all twelve taken, the widget is not made.
  UUID add(std::string_view kind, std::optional<std::size_t> place = {});
  /// The set of a first user, on the strip.
  void addStarterSet();
  /// Brings a widget to a place of the strip, from wherever it is.
  void place(const UUID& id, std::size_t place);
  /// It keeps its settings.
  void takeOff(const UUID& id);
  void remove(const UUID& id);
  /// Brought to what the kind allows.
  void setSpan(const UUID& id, int span);
  /// Changes one widget by `edit`, which throws what refuses it. Changes of the same `field` that
  /// follow each other are one step.
  void edit(const UUID& id, const std::string& title, const std::string& field,
            const std::function<void(DockWidget&)>& edit);

  /// The widgets are others than before, whoever changed them.
  std::function<void()> onChange;
  /// These slots have widgets that they had not.
  std::function<void(const std::set<int>& slots)> onNewSlots;

private:
  /// Runs `change` as one step.
  void perform(const std::string& title, const std::string& field,
               const std::function<void(WidgetStore&)>& change);
  /// Gives what could not be in sentences; `change` becomes what was really done.
  std::vector<std::string> apply(WidgetsChange& change);
  /// Tells of what is other than it was when it was told of last.
  void follow();
  std::string nameOf(const UUID& id) const;

  HostContext& context_;
  History& history_;
  WidgetLibrary library_;
  WidgetsFile shown_;
};

} // namespace tavrin
