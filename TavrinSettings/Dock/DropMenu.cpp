#include "TavrinSettings/Dock/DropMenu.h"

namespace tavrin {

void DropMenu::open(QPointer<PickerPopup>& menu, QWidget* owner, const QString& name,
                    std::vector<Entry> entries) {
  if (menu && menu->isVisible())
    return;
  const auto source = [entries](const QString&, const PickerAnswer& answer) {
    std::vector<PickerItem> items;
    for (const auto& entry : entries)
      items.push_back({.row = {.id = QString::number(items.size()),
                               .title = entry.title,
                               .symbol = QString::fromUtf8(entry.symbol)},
                       .values = {}});
    answer(std::move(items), {});
    return TokenPtr();
  };
  menu = new PickerPopup(owner, name, {}, source);
  menu->onChoose = [entries](const PickerItem& chosen) {
    entries[static_cast<std::size_t>(chosen.row.id.toInt())].action();
  };
  menu->open();
}

} // namespace tavrin
