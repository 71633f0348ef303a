#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardSource.h"

namespace tavrin {

/// What the clipboard's tile and panel read. Told of changes by its source.
class ClipboardModel {
public:
  ClipboardModel(DockWidget widget, ClipboardSource& source);
  ~ClipboardModel() { source_.onChange = nullptr; }
  ClipboardModel(const ClipboardModel&) = delete;
  ClipboardModel& operator=(const ClipboardModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  void setWidget(const DockWidget& widget);
  ClipboardSettings settings() const { return widget_.kind.settings<ClipboardSettings>(); }

  const ClipboardList& items() const { return source_.state().items; }
  int unseenCount() const { return source_.state().unseenCount; }
  const std::optional<ClipboardTrouble>& trouble() const { return source_.state().trouble; }
  bool hasRead() const { return source_.state().hasRead; }
  bool canCapture() const { return source_.canCapture(); }

  const std::string& searchText() const { return searchText_; }
  /// Does not tell: the asker shows the results himself.
  void setSearchText(const std::string& text);
  /// The items that the search text finds; all without one.
  const ClipboardList& results() const { return results_; }

  void start() { source_.start(); }
  void copy(const ClipboardItem& item) { source_.write(item); }
  void togglePin(const ClipboardItem& item) { source_.togglePin(item.id); }
  void remove(const ClipboardItem& item) { source_.remove(item.id); }
  void clearUnpinned() { source_.clearUnpinned(); }
  void markAllSeen() { source_.markAllSeen(); }

  std::function<void()> onChange;

private:
  void find() { results_ = ClipboardBoard::search(searchText_, items()); }

  DockWidget widget_;
  ClipboardSource& source_;
  std::string searchText_;
  ClipboardList results_;
};

} // namespace tavrin
