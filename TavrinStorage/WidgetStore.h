#pragma once

#include "TavrinCore/Widgets/WidgetsFile.h"

#include <filesystem>

namespace tavrin {

/// The widgets file, held in memory and rewritten after each change. Other processes may write it
/// too: `reload` when told that it changed. Whoever changes widgets posts
/// `DockSlot::widgetsChangedNotification` afterwards; this class posts nothing.
///
/// A failed read throws FileError and leaves `file` as it was. A failed write throws FileError
/// and keeps the change in memory.
class WidgetStore {
public:
  /// Where there is no widgets file yet, the app collections of `legacyCollections` become one and
  /// their file is removed.
  explicit WidgetStore(std::filesystem::path url,
                       const std::optional<std::filesystem::path>& legacyCollections = {});

  const std::filesystem::path& url() const { return url_; }
  const WidgetsFile& file() const { return file_; }

  /// A file that is not there reads as one without widgets.
  void reload();

  std::optional<DockWidget> widget(const UUID& id) const;
  /// The first widget in the slot, in file order.
  std::optional<DockWidget> widget(int slot) const;

  /// A new widget without a slot, one tile wide; a blank name becomes "Widget".
  DockWidget create(std::string_view name, DockWidget::Kind kind);
  /// Gives the widget the lowest free slot and returns it as it then is; unchanged when it has one
  /// already. No value when there is no such widget or no free slot.
  std::optional<DockWidget> claimSlot(const UUID& id);
  void releaseSlot(const UUID& id);
  /// Replaces the widget with the same id. Throws DockError when there is none.
  void update(const DockWidget& widget);
  void remove(const UUID& id);

private:
  DockWidget* find(const UUID& id);
  void save() const;

  std::filesystem::path url_;
  WidgetsFile file_;
};

} // namespace tavrin
