#pragma once

#include "TavrinHost/HostContext.h"
#include "TavrinStorage/WidgetStore.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tavrin {

/// The user's widgets as the commands see them: read fresh, found by what people call them, and
/// every change announced.
class WidgetLibrary {
public:
  /// Opens the widgets file, taking over the older file of collections where there is only that.
  /// Remarks on a file of a newer version. Throws HostError that names the way back when it cannot
  /// be read, and FileError where there is no data folder.
  explicit WidgetLibrary(HostContext& context);

  const WidgetsFile& file() const { return store_->file(); }
  /// Reads the file again. Throws FileError, and keeps what was read last.
  void reload() { store_->reload(); }

  /// The widget that goes by a name, an identifier, "slot3", or the start of a name or
  /// identifier, case aside. A nearer match wins over a farther one. Throws HostError:
  /// notFound, or ambiguous with the candidates.
  const DockWidget& find(std::string_view reference) const;

  /// Runs changes of the store as one, on the file as it is then, and announces them. `change`
  /// gives a value, and may run more than once; what it throws undoes all of it.
  template <class Change> auto change(Change change) {
    auto result = store_->together([&] { return change(*store_); });
    announce();
    return result;
  }

  void announce();

private:
  void warnOfNewerVersion() const;

  HostContext& context_;
  std::optional<WidgetStore> store_;
};

/// Why the slot that a widget has does not show it: "there is no slot 77; they are 1 to 12". Empty
/// where it does, or where the widget has none.
std::string slotFault(const WidgetsFile& file, const DockWidget& widget);

/// What a new widget is called after its kind: "Timer", or "Timer 2" when that is taken.
std::string freeName(const WidgetsFile& file, std::string_view title);

/// The kind that goes by a key or title, or the start of one, case aside. Throws HostError.
const KindInfo& kindNamed(std::string_view reference);

} // namespace tavrin
