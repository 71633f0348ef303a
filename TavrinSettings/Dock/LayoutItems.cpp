#include "TavrinSettings/Dock/LayoutItems.h"

#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinSettings/Dock/DockItemRow.h"
#include "TavrinSettings/Dock/DropMenu.h"
#include "TavrinSettings/Dock/ItemEditor.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

namespace tavrin {

LayoutItems::LayoutItems(PageServices& page, HostContext& context,
                         std::function<QImage(const DockItem&, int, double)> icon, QWidget* parent)
    : QWidget(parent), page_(page), context_(context), picker_(context, page.forms) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  makeHead(column);
  row_ = new DockItemRow(this);
  row_->icon = std::move(icon);
  row_->onMove = [this](const auto& item, DockPosition to) { move(item, to); };
  row_->onRemove = [this](const auto& item) { remove(item); };
  row_->onOpen = [this](const auto& item) { open(item); };
  row_->onDrop = [this](const std::vector<std::filesystem::path>& files, DockPosition to) {
    picker_.identify(files, [this, to](const auto& items) { drop(items, to); });
  };
  auto* scroll = ScrollFade::makeArea(this);
  scroll->setWidget(row_);
  column->addWidget(scroll, 1);
}

void LayoutItems::makeHead(QVBoxLayout* column) {
  auto* title = new QHBoxLayout;
  title->addWidget(new PanelText(worded("Items"), PanelTextStyle::section, this), 1);
  add_ = new PanelButton(PanelButton::Kind::quiet, worded("Add…"), {}, this);
  add_->setSymbol(QStringLiteral("plus"));
  add_->setAction([this] {
    picker_.open(add_, worded("Add an Item"), [this](const auto& items) { add(items, {}); });
  });
  more_ = PanelButton::icon(
      QStringLiteral("ellipsis"), worded("More for Items"), [this] { offerMore(); }, this);
  title->addWidget(add_);
  title->addWidget(more_);
  column->addLayout(title);
}

void LayoutItems::show(const Profile& profile) {
  row_->setItems(profile.items, profile.others);
  const auto isSpacer = [](const DockItem& item) { return item.spacer() != nullptr; };
  hasSpacers_ =
      std::ranges::any_of(profile.items, isSpacer) || std::ranges::any_of(profile.others, isSpacer);
  more_->setEnabled(!profile.items.empty() || !profile.others.empty());
  if (!editor_)
    return;
  const auto& placed = editor_->placed();
  if (const auto* item = row_->itemAt({placed.section, placed.index}))
    editor_->follow(*item);
  else
    editor_->close();
}

void LayoutItems::add(const std::vector<DockItem>& items, std::optional<DockPosition> at) {
  QString known;
  DockAddition addition{items, {}, {}, {}};
  if (at) {
    addition.section = at->section;
    addition.place = DockPlace{DockPlace::Number{at->index + 1}};
  }
  std::optional<DockPosition> last;
  const auto edit =
      adding(std::move(addition), [&](const DockItem& item) { known = utf8(item.displayName()); });
  onEdit(marked("Add an Item to {name}"), {}, [&](DockSnapshot& dock) {
    edit(dock);
    for (const auto& one : placedItems(dock))
      if (one.item == fitting(items.back(), one.section))
        last = {one.section, one.index};
  });
  // It is the one that is moved or set next.
  if (at)
    last = DockPosition{at->section, at->index + items.size() - 1};
  if (last)
    row_->focusAt(*last);
  if (!known.isEmpty())
    page_.tell(worded("“{name}” is in the layout already.", {{"name", known}}), false);
}

/// Applications stand before the divider, wherever they were let go; files behind it.
void LayoutItems::drop(const std::vector<DockItem>& items, DockPosition to) {
  std::vector<DockItem> apps;
  std::ranges::copy_if(items, std::back_inserter(apps),
                       [](const DockItem& item) { return item.app() != nullptr; });
  if (apps.size() == items.size() && to.section == DockSection::others)
    add(items, {});
  else
    add(items, to);
}

void LayoutItems::move(const PlacedDockItem& item, DockPosition to) {
  onEdit(marked("Move an Item in {name}"), {}, movingTo(item, to));
}

void LayoutItems::remove(const PlacedDockItem& item) {
  onEdit(marked("Remove an Item from {name}"), {}, replacingAt(item, {}));
}

void LayoutItems::open(const PlacedDockItem& item) {
  auto* tile = row_->tileAt({item.section, item.index});
  if (tile == nullptr)
    return;
  if (editor_)
    editor_->close();
  editor_ = new ItemEditor(tile, item);
  editor_->onChange = [this](const DockItem& changed, const std::string& field) {
    const auto placed = editor_->placed();
    const auto letters =
        field.empty()
            ? field
            : fmt::format("{}/{}/{}", field, placed.section == DockSection::apps, placed.index);
    return onEdit(marked("Set an Item of {name}"), letters, replacingAt(placed, {changed}));
  };
  editor_->onRemove = [this] {
    const auto placed = editor_->placed();
    editor_->close();
    remove(placed);
  };
  editor_->onReplace = [this] {
    const auto placed = editor_->placed();
    editor_->close();
    replace(placed);
  };
  // At its new place it has another tile.
  editor_->onMove = [this](int towards) {
    const auto placed = editor_->placed();
    const auto to = row_->beside({placed.section, placed.index}, towards);
    if (!to)
      return;
    editor_->close();
    move(placed, *to);
    row_->focusAt(*to);
    if (const auto* moved = row_->itemAt(*to)) {
      open({to->section, to->index, *moved});
      editor_->focusMove(towards);
    }
  };
  editor_->open();
}

void LayoutItems::replace(const PlacedDockItem& item) {
  if (auto* tile = row_->tileAt({item.section, item.index}))
    picker_.open(tile, worded("Put in its place"), [this, item](const auto& items) {
      onEdit(marked("Replace an Item of {name}"), {}, replacingAt(item, items));
    });
}

void LayoutItems::offerMore() {
  std::vector<DropMenu::Entry> entries;
  if (hasSpacers_)
    entries.push_back({worded("Remove All Spacers"), "arrow.left.arrow.right", [this] {
                         onEdit(marked("Remove All Spacers from {name}"), {},
                                removing({.references = {}, .allSpacers = true, .section = {}}));
                       }});
  entries.push_back({worded("Remove All Items"), "trash", [this] {
                       onEdit(marked("Remove All Items from {name}"), {},
                              removing({.references = {}, .everything = true, .section = {}}));
                     }});
  DropMenu::open(menu_, more_, worded("More for Items"), std::move(entries));
}

} // namespace tavrin
