#pragma once

#include "TavrinSettings/Form/Picker.h"

namespace tavrin {

/// What else can be done, in a list that drops down from a button.
struct DropMenu {
  struct Entry {
    QString title;
    /// By its name in Symbols.h.
    const char* symbol;
    std::function<void()> action;
  };

  /// `menu` keeps the one that is open, so that there is one.
  static void open(QPointer<PickerPopup>& menu, QWidget* owner, const QString& name,
                   std::vector<Entry> entries);
};

} // namespace tavrin
