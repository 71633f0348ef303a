#include "TavrinWidgetsUI/Files/FilesPanelView.h"

#include "TavrinWidgetsUI/Files/FileViews.h"
#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelUndo.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QLocale>

namespace tavrin {

namespace {

constexpr int fileRows = 9;

enum RowAction { reveal, moveToTrash };

} // namespace

FilesPanelView::FilesPanelView(const PanelAppearance& appearance, FileRoll& roll,
                               FilePanelServices services)
    : PanelView(appearance, Width::lists), roll_(roll), services_(std::move(services)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)), list_(new PanelList(worded("Files"))),
      empty_(new PanelEmptyState("folder.fill", {})) {
  add(trouble_);
  makeList();
  add(empty_);
  setEditButton(worded("Edit Files…"), services_.edit);
  undo_ = new PanelUndo([this] { services_.undo(); });
  addFooterButton(undo_);
  openFolder_ = new PanelButton(PanelButton::Kind::faint, worded("Open Folder"), [this] {
    if (!roll_.folders().empty())
      services_.open(roll_.folders().front().path);
  });
  addFooterButton(openFolder_);
  refresh();
}

void FilesPanelView::makeList() {
  list_->setTall(true);
  list_->setIconSize({filePictureWidth, filePictureWidth});
  list_->setMaximumVisibleRows(fileRows);
  list_->onOpen = [this](int row) { act(row, services_.open); };
  list_->onCopy = [this](int row) { act(row, services_.copy); };
  list_->onRemove = [this](int row) { act(row, services_.moveToTrash); };
  list_->onAction = [this](int row, int action) {
    act(row, action == RowAction::reveal ? services_.reveal : services_.moveToTrash);
  };
  list_->onDrag = [this](int row) {
    return std::vector{shown_.at(static_cast<std::size_t>(row)).path};
  };
  add(list_);
}

void FilesPanelView::act(int row, const FilePanelServices::Action& action) {
  if (row < 0 || static_cast<std::size_t>(row) >= shown_.size())
    return;
  // The list may change while it is at work.
  const auto path = shown_[static_cast<std::size_t>(row)].path;
  action(path);
}

void FilesPanelView::appearanceChanged() {
  list_->viewport()->update();
}

PanelRow FilesPanelView::makeRow(const FolderFile& file) {
  // Where several folders are followed, which of them it lies in.
  const QString place = roll_.folders().size() > 1 ? fileTitle(file.path.parent_path()) : QString();
  PanelRow row = fileRow(file, roll_.picture(file), place, services_.clock.now());
  row.isNew = roll_.isMarked(file);
  row.actions = {{"folder.fill", worded("Show in Folder")}, {"trash", worded("Move to Trash")}};
  return row;
}

void FilesPanelView::refresh() {
  setTitle(services_.name());
  shown_ = roll_.files();
  std::vector<PanelRow> rows;
  for (const FolderFile& file : shown_)
    rows.push_back(makeRow(file));
  list_->setRows(std::move(rows));
  showWords();
}

void FilesPanelView::showWords() {
  const QString failure = services_.trouble();
  trouble_->setVisible(!failure.isEmpty());
  trouble_->setWords(failure);
  undo_->setWhat(services_.undoable());
  std::size_t marked = 0;
  for (const FolderFile& file : shown_)
    marked += roll_.isMarked(file) ? 1 : 0;
  const auto unfinished = roll_.unfinished();
  setState(unfinished > 0 ? wordedPlural("{count} downloading", "{count} downloading",
                                         static_cast<long long>(unfinished))
           : marked > 0
               ? worded("{unseen} new", {{"unseen", unseenText(marked, roll_.hasMoreMarked())}})
               : QString(),
           unfinished > 0 ? State::active : State::plain);
  list_->setVisible(!shown_.empty());
  empty_->setVisible(shown_.empty());
  const auto* trouble = roll_.trouble();
  openFolder_->setVisible(roll_.isKnown() && trouble == nullptr);
  const QString folder =
      roll_.folders().empty()
          ? QString()
          : QString::fromStdString(shownFolder(roll_.folders().front().path, services_.home));
  empty_->setTrouble(false);
  if (!roll_.isKnown()) {
    empty_->setSentence("folder.fill", worded("Looking for files"));
    empty_->setHint({});
  } else if (trouble == nullptr) {
    empty_->setSentence("folder.fill",
                        unfinished > 0 ? worded("Nothing finished yet") : worded("No files yet"));
    empty_->setHint(worded("New files in {folder} show up here.", {{"folder", folder}}));
  } else if (trouble->state == FolderListing::State::missing) {
    empty_->setSentence("folder.fill", worded("There is no folder {folder}", {{"folder", folder}}));
    empty_->setHint(worded("Once it is there, its files show up here."));
  } else {
    empty_->setTrouble(true);
    empty_->setSentence("exclamationmark.triangle.fill",
                        worded("{folder} cannot be read", {{"folder", folder}}));
    empty_->setHint(worded("You may not look into this folder."));
  }
}

} // namespace tavrin
