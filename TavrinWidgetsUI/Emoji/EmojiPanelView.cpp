#include "TavrinWidgetsUI/Emoji/EmojiPanelView.h"

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinWidgetsUI/Emoji/EmojiTones.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <numeric>

namespace tavrin {
namespace {

constexpr int columns = 9;
constexpr int visibleRows = 6;
/// The recents and the nine groups of Unicode.
constexpr int tabColumns = 10;
/// What a cell leaves around its picture, both sides together.
constexpr int cellMargin = 10;

/// The groups as Unicode calls them.
constexpr std::array groupNames{
    marked("Smileys & Emotion"), marked("People & Body"),   marked("Animals & Nature"),
    marked("Food & Drink"),      marked("Travel & Places"), marked("Activities"),
    marked("Objects"),           marked("Symbols"),         marked("Flags")};

/// A group that is newer than this program keeps Unicode's words.
QString groupName(const std::string& name) {
  const auto known = std::ranges::find(groupNames, std::string_view(name));
  return known != groupNames.end() ? worded(*known) : utf8(name);
}

QString capitalised(QString text) {
  if (!text.isEmpty())
    text[0] = text[0].toUpper();
  return text;
}

} // namespace

EmojiPanelView::EmojiPanelView(const PanelAppearance& appearance, EmojiModel& model, Source source)
    : PanelView(appearance, Width::grids), model_(model), source_(std::move(source)),
      search_(new PanelSearchField(worded("Search emoji"))),
      tabs_(new PanelGrid(worded("Groups"), tabColumns)),
      grid_(new PanelGrid(worded("Emoji"), columns)), empty_(new PanelEmptyState({}, {})),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      name_(new PanelText({}, PanelTextStyle::secondary)),
      tones_(new EmojiTones([this](EmojiSkinTone tone) { source_.setTone(tone); })) {
  add(trouble_);
  add(search_);
  tabs_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  body()->addWidget(tabs_);
  makeGrid();
  add(empty_);
  name_->setSingleLine(true);
  add(name_);
  add(tones_);
  setEditButton(worded("Edit Emoji…"), source_.edit);
  clear_ = new PanelButton(PanelButton::Kind::faint, worded("Clear Recents"), source_.clear);
  addFooterButton(clear_);
  refresh();
}

EmojiPanelView::~EmojiPanelView() {
  model_.glyphs().onDrawn = nullptr;
}

void EmojiPanelView::makeGrid() {
  tabs_->setMaximumVisibleRows(1);
  tabs_->onOpen = [this](int tab) {
    search_->clear();
    showGroup(tab - 1);
  };
  grid_->setVisibleRows(visibleRows);
  grid_->onOpen = [this](int index) { copy(index); };
  grid_->setMouseTracking(true);
  connect(grid_, &QListView::entered, this,
          [this](const QModelIndex& index) { showName(index.row()); });
  add(grid_);
  search_->setList(grid_);
  search_->onChange = [this](const QString&) {
    showContent();
    showWords();
  };
  search_->onReturn = [this] { copy(0); };
  model_.glyphs().onDrawn = [this] {
    grid_->viewport()->update();
    tabs_->viewport()->update();
  };
}

void EmojiPanelView::showEvent(QShowEvent* event) {
  search_->reset();
  group_ = source_.recents().empty() ? 0 : -1;
  refresh();
  search_->setFocus();
  PanelView::showEvent(event);
}

void EmojiPanelView::showGroup(int group) {
  group_ = group;
  showContent();
  showTabs();
  showWords();
  grid_->scrollToTop();
}

EmojiPanelView::Content EmojiPanelView::wantedContent() const {
  Content content;
  const EmojiTable& table = model_.table();
  const QString query = search_->text().trimmed();
  const auto& groups = table.groups();
  if (!query.isEmpty()) {
    content.indexes = table.search(query.toStdString(), source_.uses());
  } else if (group_ < 0 || static_cast<std::size_t>(group_) >= groups.size()) {
    content.isRecents = true;
    content.recents = source_.recents();
  } else {
    const auto place = static_cast<std::size_t>(group_);
    const std::size_t begin = groups[place].begin;
    const std::size_t end = place + 1 < groups.size() ? groups[place + 1].begin : table.size();
    content.indexes.resize(end - begin);
    std::iota(content.indexes.begin(), content.indexes.end(), static_cast<std::uint16_t>(begin));
  }
  return content;
}

void EmojiPanelView::showContent() {
  Content wanted = wantedContent();
  if (content_ == wanted)
    return;
  content_ = std::move(wanted);
  grid_->setCells(shownCount(), [this](int index) { return cell(index, *grid_); });
  grid_->scrollToTop();
  showName(-1);
}

int EmojiPanelView::shownCount() const {
  if (!content_)
    return 0;
  return static_cast<int>(content_->isRecents ? content_->recents.size()
                                              : content_->indexes.size());
}

std::optional<Emoji> EmojiPanelView::shown(int index) const {
  if (index < 0 || index >= shownCount())
    return std::nullopt;
  const auto place = static_cast<std::size_t>(index);
  if (content_->isRecents)
    return content_->recents[place];
  const auto entry = content_->indexes[place];
  return entry < model_.table().size() ? std::optional(model_.table().emoji(entry)) : std::nullopt;
}

QString EmojiPanelView::nameOf(int index) const {
  const auto emoji = shown(index);
  if (!emoji)
    return {};
  const auto entry =
      content_->isRecents
          ? model_.table().find(emoji->text)
          : std::optional<std::size_t>(content_->indexes[static_cast<std::size_t>(index)]);
  return entry ? capitalised(utf8(model_.table().name(*entry)))
               : QString::fromStdString(emoji->text);
}

QImage EmojiPanelView::picture(const std::string& emoji, const PanelGrid& grid) {
  const double points = grid.gridSize().width() - cellMargin;
  return model_.glyphs().whenDrawn(emoji,
                                   static_cast<int>(points * grid.devicePixelRatioF() + 0.5));
}

PanelCell EmojiPanelView::cell(int index, const PanelGrid& grid) {
  const auto emoji = shown(index);
  if (!emoji)
    return {};
  return {.name = nameOf(index), .image = picture(emoji->inTone(tone_), grid)};
}

PanelCell EmojiPanelView::tab(int index, const PanelGrid& grid) {
  const bool isChosen = search_->text().isEmpty() && group_ == index - 1;
  if (index == 0)
    return {.name = worded("Recents"), .symbol = "clock", .isChosen = isChosen};
  const auto place = static_cast<std::size_t>(index - 1);
  const auto& groups = model_.table().groups();
  if (place >= groups.size())
    return {};
  return {.name = groupName(groups[place].name),
          .image = picture(model_.table().emoji(groups[place].begin).inTone(tone_), grid),
          .isChosen = isChosen};
}

void EmojiPanelView::showTabs() {
  const int count = static_cast<int>(model_.table().groups().size()) + 1;
  if (count != tabCount_) {
    tabCount_ = count;
    tabs_->setCells(count, [this](int index) { return tab(index, *tabs_); });
  }
  tabs_->viewport()->update();
}

void EmojiPanelView::showName(int index) {
  const QString name = nameOf(index >= 0 ? index : grid_->currentCell());
  // A blank keeps the line's height.
  name_->setWords(name.isEmpty() ? QStringLiteral(" ") : name);
}

void EmojiPanelView::showWords() {
  const bool isSearching = !search_->text().trimmed().isEmpty();
  const bool hasTable = !model_.table().isEmpty();
  const bool isReading = model_.state() != EmojiModel::State::read;
  empty_->setVisible(shownCount() == 0);
  grid_->setVisible(shownCount() > 0);
  // Nothing moves while one searches, or goes from group to group.
  empty_->setMinimumHeight(hasTable ? grid_->sizeHint().height() : 0);
  name_->setVisible(hasTable);
  tabs_->setVisible(hasTable);
  search_->setEnabled(hasTable || isReading);
  empty_->setHint({});
  if (isReading) {
    empty_->setSentence("face.smiling", worded("Loading emoji"));
  } else if (!hasTable) {
    empty_->setSentence("exclamationmark.triangle.fill", worded("This computer has no emoji data"));
    empty_->setHint(worded("They come with the package unicode-data."));
  } else if (isSearching) {
    empty_->setSentence("magnifyingglass", worded("Nothing found"));
    empty_->setHint(worded("Try a different word."));
  } else {
    empty_->setSentence("clock", worded("No emoji used yet"));
  }
}

void EmojiPanelView::copy(int index) {
  if (const auto emoji = shown(index))
    source_.copy(*emoji);
}

void EmojiPanelView::refresh() {
  setTitle(QString::fromStdString(source_.name()));
  const auto trouble = QString::fromStdString(source_.trouble());
  trouble_->setWords(trouble);
  trouble_->setVisible(!trouble.isEmpty());
  const EmojiSkinTone tone = source_.settings().skinTone;
  if (tone != tone_) {
    tone_ = tone;
    grid_->viewport()->update();
  }
  tones_->setTone(tone);
  showContent();
  showTabs();
  showWords();
  clear_->setEnabled(!source_.recents().empty());
}

} // namespace tavrin
