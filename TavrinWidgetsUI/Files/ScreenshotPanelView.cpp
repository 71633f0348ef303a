#include "TavrinWidgetsUI/Files/ScreenshotPanelView.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelUndo.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <algorithm>

namespace tavrin {

namespace {

constexpr int columns = 3;
constexpr int screenshotRows = 3;

} // namespace

ScreenshotPanelView::ScreenshotPanelView(const PanelAppearance& appearance, ScreenshotRoll& roll,
                                         FilePanelServices services)
    : PanelView(appearance, Width::grids), roll_(roll), services_(std::move(services)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      grid_(new PanelGrid(worded("Screenshots"), columns)),
      chosenAbout_(new PanelText({}, PanelTextStyle::body)),
      chosenName_(new PanelText({}, PanelTextStyle::caption)), actions_(new QWidget),
      empty_(new PanelEmptyState("photo", {})) {
  add(trouble_);
  makeGrid();
  makeActions();
  add(empty_);
  setEditButton(worded("Edit Screenshots…"), services_.edit);
  undo_ = new PanelUndo([this] { services_.undo(); });
  addFooterButton(undo_);
  openFolder_ = new PanelButton(PanelButton::Kind::faint, worded("Open Folder"), [this] {
    if (!roll_.folder().empty())
      services_.open(roll_.folder());
  });
  addFooterButton(openFolder_);
  refresh();
}

void ScreenshotPanelView::makeGrid() {
  grid_->setMaximumVisibleRows(screenshotRows);
  grid_->setOpensOnDoubleClick(true);
  grid_->setActions(
      {worded("Open"), worded("Copy"), worded("Show in Folder"), worded("Move to Trash")});
  grid_->onOpen = [this](int) { act(services_.open); };
  grid_->onCopy = [this](int) { act(services_.copy); };
  grid_->onRemove = [this](int) { act(services_.moveToTrash); };
  grid_->onCurrentChange = [this](int) { showChosen(); };
  grid_->onAction = [this](int index, int action) {
    grid_->setCurrentCell(index);
    const Action* const all[] = {&services_.open, &services_.copy, &services_.reveal,
                                 &services_.moveToTrash};
    act(*all[action]);
  };
  grid_->onDrag = [this](int index) {
    return std::vector{shown_.at(static_cast<std::size_t>(index)).path};
  };
  add(grid_);
}

void ScreenshotPanelView::makeActions() {
  chosenName_->setSingleLine(true, Qt::ElideMiddle);
  chosenAbout_->setSingleLine(true);
  auto* row = new QHBoxLayout(actions_);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  auto* words = new QVBoxLayout;
  words->setSpacing(0);
  words->addWidget(chosenAbout_);
  words->addWidget(chosenName_);
  row->addLayout(words, 1);
  row->addWidget(
      PanelButton::icon("trash", worded("Move to Trash"), [this] { act(services_.moveToTrash); }));
  row->addWidget(PanelButton::icon("folder.fill", worded("Show in Folder"),
                                   [this] { act(services_.reveal); }));
  row->addWidget(
      PanelButton::icon("arrow.up.right", worded("Open"), [this] { act(services_.open); }));
  auto* copy = new PanelButton(PanelButton::Kind::prominent, worded("Copy"),
                               [this] { act(services_.copy); });
  row->addWidget(copy);
  add(actions_);
}

void ScreenshotPanelView::act(const Action& action) {
  const int index = grid_->currentCell();
  if (index < 0 || static_cast<std::size_t>(index) >= shown_.size())
    return;
  // The list may change while it is at work.
  const auto path = shown_[static_cast<std::size_t>(index)].path;
  action(path);
}

void ScreenshotPanelView::appearanceChanged() {
  grid_->viewport()->update();
}

void ScreenshotPanelView::refresh() {
  setTitle(services_.name());
  const auto& files = roll_.files();
  if (files != shown_) {
    const int current = grid_->currentCell();
    const auto chosen = current > 0 && static_cast<std::size_t>(current) < shown_.size()
                            ? shown_[static_cast<std::size_t>(current)].path
                            : std::filesystem::path();
    shown_ = files;
    grid_->setCells(static_cast<int>(shown_.size()), [this](int index) {
      const FolderFile& file = shown_.at(static_cast<std::size_t>(index));
      PanelCell cell;
      cell.name = fileTitle(file.path);
      cell.image = roll_.picture(file);
      if (cell.image.isNull())
        cell.symbol = roll_.isBroken(file) ? "questionmark.square" : "photo";
      return cell;
    });
    // The chosen one stays chosen; the newest one is whatever is newest.
    const auto same = std::ranges::find(shown_, chosen, &FolderFile::path);
    if (!shown_.empty())
      grid_->setCurrentCell(same != shown_.end() ? static_cast<int>(same - shown_.begin()) : 0);
  }
  grid_->viewport()->update();
  showChosen();
  showWords();
}

void ScreenshotPanelView::showChosen() {
  const int index = grid_->currentCell();
  const bool hasChosen = index >= 0 && static_cast<std::size_t>(index) < shown_.size();
  actions_->setVisible(hasChosen);
  if (!hasChosen)
    return;
  const FolderFile& file = shown_[static_cast<std::size_t>(index)];
  chosenAbout_->setWords(
      joinedPieces({momentText(file.date, services_.clock.now()),
                    QString::fromStdString(byteText(static_cast<std::int64_t>(file.size)))}));
  chosenName_->setWords(fileTitle(file.path));
}

void ScreenshotPanelView::showWords() {
  const QString trouble = services_.trouble();
  trouble_->setVisible(!trouble.isEmpty());
  trouble_->setWords(trouble);
  undo_->setWhat(services_.undoable());
  const QString folder = QString::fromStdString(shownFolder(roll_.folder(), services_.home));
  setState(folder);
  grid_->setVisible(!shown_.empty());
  empty_->setVisible(shown_.empty());
  openFolder_->setVisible(roll_.isKnown() && roll_.state() == FolderListing::State::listed);
  empty_->setTrouble(false);
  if (!roll_.isKnown()) {
    empty_->setSentence("photo", worded("Looking for screenshots"));
    empty_->setHint({});
  } else if (roll_.state() == FolderListing::State::missing) {
    empty_->setSentence("folder.fill", worded("There is no folder {folder}", {{"folder", folder}}));
    empty_->setHint(worded("Once it is there, its pictures show up here."));
  } else if (roll_.state() == FolderListing::State::unreadable) {
    empty_->setTrouble(true);
    empty_->setSentence("exclamationmark.triangle.fill",
                        worded("{folder} cannot be read", {{"folder", folder}}));
    empty_->setHint(worded("You may not look into this folder."));
  } else {
    empty_->setSentence("photo", worded("No screenshots yet"));
    empty_->setHint(worded("New pictures in {folder} show up here.", {{"folder", folder}}));
  }
}

} // namespace tavrin
