#include "TavrinWidgetsUI/Colour/ColourPanelView.h"

#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinWidgetsUI/Colour/ColourViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

namespace tavrin {
namespace {

constexpr int columns = 8;
constexpr int visibleRows = 3;
constexpr double cardHeight = 76;

QString formatTitle(ColourFormat format) {
  const auto name = title(format);
  return utf8(name);
}

} // namespace

ColourPanelView::ColourPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      empty_(new PanelEmptyState("eyedropper", worded("No colours yet"))),
      trouble_(new PanelText({}, PanelTextStyle::trouble)), filled_(new QWidget) {
  empty_->setHint(worded("Pick a point of the screen and its colour will show up here."));
  add(empty_);
  add(trouble_);
  auto* column = new QVBoxLayout(filled_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  card_ = new ViewWidget({static_cast<double>(width()) - 32, cardHeight});
  column->addWidget(card_);
  swatches_ = new PanelGrid(worded("Colours"), columns);
  swatches_->setMaximumVisibleRows(visibleRows);
  swatches_->onOpen = [this](int index) { choose(index); };
  column->addWidget(swatches_);
  makeChosenRow();
  makeFormatRow();
  add(filled_);
  auto* pick = new PanelButton(PanelButton::Kind::prominent, worded("Pick Colour"), source_.pick);
  pick->setSymbol("eyedropper");
  add(pick);
  setEditButton(worded("Edit Colour Picker…"), source_.edit);
  clear_ = new PanelButton(PanelButton::Kind::faint, worded("Clear"), source_.clearUnpinned);
  setPlainToolTip(clear_, worded("Removes every colour that is not pinned"));
  addFooterButton(clear_);
  refresh();
}

void ColourPanelView::makeChosenRow() {
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  copyAs_ =
      new PanelButton(PanelButton::Kind::quiet, worded("Copy As…"), [this] { showNotations(); });
  copyAs_->setSymbol("doc.on.clipboard");
  row->addWidget(copyAs_, 1);
  pin_ = PanelButton::icon("pin", worded("Pin"), [this] {
    if (const auto* colour = chosen())
      source_.togglePin(colour->id);
  });
  row->addWidget(pin_);
  row->addWidget(PanelButton::icon("trash", worded("Remove"), [this] {
    if (const auto* colour = chosen())
      source_.remove(colour->id);
  }));
  qobject_cast<QVBoxLayout*>(filled_->layout())->addLayout(row);
}

void ColourPanelView::makeFormatRow() {
  format_ = new QComboBox;
  for (const ColourFormat each : allCases<ColourFormat>())
    format_->addItem(formatTitle(each));
  connect(format_, &QComboBox::activated, this, [this](int index) {
    source_.setFormat(allCases<ColourFormat>()[static_cast<std::size_t>(index)]);
  });
  filled_->layout()->addWidget(new PanelField(worded("Copies as"), format_));
}

const PickedColour* ColourPanelView::chosen() const {
  const auto& history = source_.history();
  const PickedColour* colour = chosen_ ? history.find(*chosen_) : nullptr;
  if (colour == nullptr && !history.colours.empty())
    colour = &history.colours.front();
  return colour;
}

void ColourPanelView::choose(int index) {
  const auto& colours = source_.history().colours;
  if (index < 0 || static_cast<std::size_t>(index) >= colours.size())
    return;
  chosen_ = colours[static_cast<std::size_t>(index)].id;
  copyChosen(source_.settings().format);
}

void ColourPanelView::copyChosen(ColourFormat format) {
  const auto* colour = chosen();
  if (colour == nullptr)
    return;
  source_.copy(*colour, format);
  hasCopied_ = true;
  refresh();
  hasCopied_ = false;
}

void ColourPanelView::showNotations() {
  const auto* colour = chosen();
  if (colour == nullptr)
    return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const ColourFormat each : allCases<ColourFormat>())
    menu->addAction(colourText(*colour, each), this, [this, each] { copyChosen(each); });
  menu->popup(copyAs_->mapToGlobal(QPoint(0, copyAs_->height())));
}

void ColourPanelView::refresh() {
  const auto& history = source_.history();
  const auto settings = source_.settings();
  const PickedColour* colour = chosen();
  setTitle(QString::fromStdString(source_.name()));
  setState(hasCopied_ ? worded("Copied") : QString(), State::active);
  const auto trouble = QString::fromStdString(source_.trouble());
  trouble_->setWords(trouble);
  trouble_->setVisible(!trouble.isEmpty());
  empty_->setVisible(colour == nullptr);
  filled_->setVisible(colour != nullptr);
  bool hasUnpinned = false;
  std::vector<PanelCell> cells;
  int current = -1;
  for (const auto& each : history.colours) {
    const QString value = colourText(each, settings.format);
    if (colour != nullptr && each.id == colour->id)
      current = static_cast<int>(cells.size());
    cells.push_back(
        {.name = each.isPinned ? worded("{colour}, pinned", {{"colour", value}}) : value,
         .colour = colourOf(each),
         .isChecked = each.isPinned});
    hasUnpinned |= !each.isPinned;
  }
  swatches_->setCells(std::move(cells));
  clear_->setEnabled(hasUnpinned);
  if (colour == nullptr)
    return;
  swatches_->setCurrentCell(current);
  card_->setView(colourCard(*colour, settings.format));
  card_->setName(
      worded("Chosen colour, {colour}", {{"colour", colourText(*colour, settings.format)}}));
  pin_->setSymbol(colour->isPinned ? "pin.fill" : "pin");
  pin_->setAccessibleName(colour->isPinned ? worded("Unpin") : worded("Pin"));
  setPlainToolTip(pin_, pin_->accessibleName());
  format_->setCurrentIndex(static_cast<int>(settings.format));
}

} // namespace tavrin
