#include "TavrinWidgetsUI/Files/ShelfPanelView.h"

#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Files/QuickLook.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {

namespace {

constexpr int shelfRows = 8;
constexpr int contentWidth = 288;

} // namespace

ShelfPanelView::ShelfPanelView(const PanelAppearance& appearance, ShelfModel& model,
                               Services services)
    : PanelView(appearance, Width::lists), model_(model), services_(std::move(services)),
      list_(new PanelList(worded("Shelf"))),
      quickLook_(new QuickLook(services_.runLoop, contentWidth)),
      empty_(new PanelEmptyState("tray.full.fill", worded("Nothing on the shelf"))) {
  makeList();
  quickLook_->onBack = [this] { lookAway(); };
  quickLook_->onOpen = [this](const auto& file) {
    const auto path = file;
    services_.open(path);
  };
  quickLook_->hide();
  add(quickLook_);
  empty_->setHint(worded("Drop files on the tile and they wait here until you need them."));
  add(empty_);
  setEditButton(worded("Edit Shelf…"), services_.edit);
  copyAll_ = new PanelButton(PanelButton::Kind::faint, worded("Copy All"), [this] {
    std::vector<std::filesystem::path> there;
    for (const ShelfItem& item : model_.items())
      if (!item.isMissing)
        there.push_back(item.path);
    services_.copy(there);
  });
  clear_ =
      new PanelButton(PanelButton::Kind::faint, worded("Clear"), [this] { services_.clear(); });
  setPlainToolTip(clear_, worded("Takes everything off the shelf; the files stay where they are"));
  addFooterButton(copyAll_);
  addFooterButton(clear_);
  refresh();
}

void ShelfPanelView::makeList() {
  list_->setTall(true);
  list_->setIconSize({filePictureWidth, filePictureWidth});
  list_->setMaximumVisibleRows(shelfRows);
  list_->onOpen = [this](int row) {
    if (const auto* item = itemAt(row); item != nullptr && !item->isMissing) {
      const auto path = item->path;
      services_.open(path);
    }
  };
  list_->onSpace = [this](int row) { look(row); };
  list_->onCopy = [this](int row) {
    if (const auto* item = itemAt(row); item != nullptr && !item->isMissing)
      services_.copy({item->path});
  };
  list_->onRemove = [this](int row) {
    if (const auto* item = itemAt(row)) {
      const auto path = item->path;
      services_.remove(path);
    }
  };
  list_->onAction = [this](int row, int action) { act(row, action); };
  list_->onDrag = [this](int row) {
    const auto* item = itemAt(row);
    return item == nullptr || item->isMissing ? std::vector<std::filesystem::path>()
                                              : std::vector{item->path};
  };
  add(list_);
}

const ShelfItem* ShelfPanelView::itemAt(int row) const {
  return row >= 0 && static_cast<std::size_t>(row) < model_.items().size()
             ? &model_.items()[static_cast<std::size_t>(row)]
             : nullptr;
}

PanelRow ShelfPanelView::makeRow(const ShelfItem& item) {
  const QString folder =
      QString::fromStdString(shownFolder(item.path.parent_path(), services_.home));
  PanelRow row;
  if (item.file) {
    row = fileRow(*item.file, model_.picture(item), {}, services_.clock.now());
    row.subtitle = folder;
  } else {
    row.id = QString::fromStdString(item.path.native());
    row.title = fileTitle(item.path);
    row.isFileName = true;
    row.symbol = item.isMissing ? QStringLiteral("exclamationmark.triangle.fill")
                                : fileSymbol(fileKind(item.path.filename().native()));
    row.subtitle =
        item.isMissing ? worded("Missing · was in {folder}", {{"folder", folder}}) : folder;
    row.isDone = item.isMissing;
  }
  if (!item.isMissing)
    row.actions = {{"eye", worded("Quick Look")}, {"folder.fill", worded("Show in Folder")}};
  row.actions.push_back({"xmark", worded("Take Off"), item.isMissing});
  return row;
}

void ShelfPanelView::act(int row, int action) {
  const auto* item = itemAt(row);
  const auto actions = list_->row(row).actions;
  if (item == nullptr || action < 0 || static_cast<std::size_t>(action) >= actions.size())
    return;
  const auto path = item->path;
  const QString name = actions[static_cast<std::size_t>(action)].name;
  if (name == worded("Quick Look"))
    look(row);
  else if (name == worded("Show in Folder"))
    services_.reveal(path);
  else
    services_.remove(path);
}

void ShelfPanelView::look(int row) {
  const auto* item = itemAt(row);
  if (item == nullptr || item->isMissing)
    return;
  isLooking_ = true;
  showParts();
  quickLook_->lookAt(item->path);
}

void ShelfPanelView::lookAway() {
  isLooking_ = false;
  showParts();
  list_->setFocus();
}

void ShelfPanelView::showEvent(QShowEvent* event) {
  lookAway();
  PanelView::showEvent(event);
}

void ShelfPanelView::appearanceChanged() {
  list_->viewport()->update();
}

void ShelfPanelView::refresh() {
  setTitle(services_.name());
  std::vector<PanelRow> rows;
  for (const ShelfItem& item : model_.items())
    rows.push_back(makeRow(item));
  list_->setRows(std::move(rows));
  const auto count = model_.items().size();
  const auto missing = model_.missingCount();
  setState(missing > 0
               ? wordedPlural("{count} missing", "{count} missing", static_cast<long long>(missing))
           : count == 0
               ? QString()
               : wordedPlural("{count} item", "{count} items", static_cast<long long>(count)),
           missing > 0 ? State::trouble : State::plain);
  // What is being looked at may have gone.
  if (isLooking_ && std::ranges::find(model_.items(), quickLook_->file(), &ShelfItem::path) ==
                        model_.items().end())
    lookAway();
  showParts();
}

void ShelfPanelView::showParts() {
  const bool isEmpty = model_.items().empty();
  quickLook_->setVisible(isLooking_);
  list_->setVisible(!isLooking_ && !isEmpty);
  empty_->setVisible(!isLooking_ && isEmpty);
  copyAll_->setVisible(model_.items().size() > model_.missingCount());
  clear_->setVisible(!isEmpty);
}

} // namespace tavrin
