#pragma once

#include "TavrinCore/Widgets/WidgetsFile.h"
#include "TavrinStorage/SharedDocument.h"

namespace tavrin {

/// The widgets file, changed by the host and by the slots: each change is made in the file as it is
/// then. `reload` when told that others changed it. Whoever changes widgets posts
/// `DockSlot::widgetsChangedNotification` afterwards; this class posts nothing. Identifiers and
/// records are taken by value: what they may be taken from is read anew first.
///
/// A failed read throws FileError and leaves `file` as it was. A failed write throws FileError
/// and keeps the change in memory.
class WidgetStore {
public:
  /// Where there is no widgets file yet, the app collections of `legacyCollections` become one and
  /// their file is removed.
  explicit WidgetStore(std::filesystem::path url,
                       const std::optional<std::filesystem::path>& legacyCollections = {});

  const std::filesystem::path& url() const { return document_.url(); }
  const WidgetsFile& file() const { return document_.value(); }

  /// A file that is not there reads as one without widgets.
  void reload() { document_.reload(); }

  std::optional<DockWidget> widget(const UUID& id) const;
  /// The first widget in the slot, in file order.
  std::optional<DockWidget> widget(int slot) const;

  /// A new widget without a slot, one tile wide; a blank name becomes "Widget".
  DockWidget create(std::string_view name, const DockWidget::Kind& kind);
  /// Gives the widget the lowest free slot and returns it as it then is; unchanged when it has one
  /// already. No value when there is no such widget or no free slot.
  std::optional<DockWidget> claimSlot(UUID id);
  void releaseSlot(UUID id);
  /// Replaces the widget with the same id. Throws DockError when there is none.
  void update(DockWidget widget);
  /// Changes the widget as it is in the file. `change` may answer whether there is anything to
  /// write; what it throws leaves everything as it was. Throws DockError when there is no such
  /// widget.
  template <class Change> void change(UUID id, const Change& change) {
    document_.change([&](WidgetsFile& file) { return change(required(file, id)); });
  }
  void remove(UUID id);
  /// Replaces the widget with the same id, or adds this one where there is none: what was removed
  /// comes back as it was.
  void put(DockWidget widget);

  /// Several changes as one: the file is read before the first and written after the last. What
  /// `changes` throws undoes them all. Gives what `changes` gives; that may run more than once.
  template <class Changes> auto together(const Changes& changes) {
    std::optional<decltype(changes())> result;
    document_.change([&](WidgetsFile&) {
      result = changes();
      return false;
    });
    return std::move(*result);
  }

private:
  /// Throws DockError when there is none.
  static DockWidget& required(WidgetsFile& file, const UUID& id);
  void migrate(const std::filesystem::path& legacyCollections);

  SharedDocument<WidgetsFile> document_;
};

} // namespace tavrin
