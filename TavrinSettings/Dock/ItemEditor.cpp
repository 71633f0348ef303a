#include "TavrinSettings/Dock/ItemEditor.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QLineEdit>
#include <QVBoxLayout>

namespace tavrin {
namespace {

constexpr int editorWidth = 420;
/// In the order of the segments.
constexpr std::array spacerWidths = {SpacerVariant::small, SpacerVariant::standard,
                                     SpacerVariant::flex};

using Options = FolderOptions;

} // namespace

ItemEditor::ItemEditor(QWidget* tile, PlacedDockItem placed)
    : FormPopup(tile, worded("Item “{name}”", {{"name", placed.item.displayName()}})),
      placed_(std::move(placed)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(panel::padding, panel::padding, panel::padding, panel::padding);
  column->setSpacing(panel::grid);
  makeHead(column);
  if (placed_.item.spacer() != nullptr)
    makeSpacer(column);
  else
    makeName(column);
  if (placed_.item.file() != nullptr && placed_.item.file()->isDirectory)
    makeFolder(column);
  makeActions(column);
  setFixedWidth(std::min(editorWidth, window()->width() - 2 * panel::padding));
}

void ItemEditor::open() {
  FormPopup::open();
  for (auto* child : findChildren<QWidget*>())
    if ((child->focusPolicy() & Qt::TabFocus) != 0)
      return child->setFocus(Qt::PopupFocusReason);
}

void ItemEditor::makeHead(QVBoxLayout* column) {
  auto* address = new PanelText(utf8(addressOf(placed_.item)), PanelTextStyle::caption, this);
  address->setVisible(!address->text().isEmpty());
  column->addWidget(address);
}

void ItemEditor::makeName(QVBoxLayout* column) {
  name_ = new QLineEdit(utf8(placed_.item.displayName()), this);
  name_->setPlaceholderText(
      utf8(withLook(placed_.item, {.label = "", .folder = {}}).displayName()));
  name_->setMinimumWidth(240);
  connect(name_, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (!isShowing_)
      change(
          withLook(placed_.item, {.label = std::string(trimmed(text.toStdString())), .folder = {}}),
          "label");
  });
  connect(name_, &QLineEdit::returnPressed, this, [this] { close(); });
  column->addWidget(new PanelField(worded("Name"), name_, this));
  // Beside the layout's.
  name_->setAccessibleName(worded("Item's name"));
}

void ItemEditor::makeFolder(QVBoxLayout* column) {
  auto* sort = new PanelSegments(
      worded("Sorted by"),
      {worded("Name"), worded("Added"), worded("Modified"), worded("Created"), worded("Kind")},
      this);
  auto* display =
      new PanelSegments(worded("Looks like"), {worded("Stack"), worded("Folder")}, this);
  auto* view =
      new PanelSegments(worded("Opens as"),
                        {worded("Automatic"), worded("Fan"), worded("Grid"), worded("List")}, this);
  const auto set = [this](const Options& options) {
    change(withLook(placed_.item, {.label = std::nullopt, .folder = options}));
  };
  sort->onChange = [set](int index) {
    set({.arrangement = static_cast<Options::Arrangement>(
             index + static_cast<int>(Options::Arrangement::name)),
         .display = {},
         .view = {}});
  };
  display->onChange = [set](int index) {
    set({.arrangement = {}, .display = static_cast<Options::Display>(index), .view = {}});
  };
  view->onChange = [set](int index) {
    set({.arrangement = {}, .display = {}, .view = static_cast<Options::View>(index)});
  };
  showLook_ = [this, sort, display, view] {
    const auto options = folderOptions(*placed_.item.file());
    sort->setCurrent(static_cast<int>(options.arrangement.value_or(Options::Arrangement::name)) -
                     static_cast<int>(Options::Arrangement::name));
    display->setCurrent(static_cast<int>(options.display.value_or(Options::Display::stack)));
    view->setCurrent(static_cast<int>(options.view.value_or(Options::View::automatic)));
  };
  showLook_();
  // Titles above: five segments want the whole width in any language.
  column->addWidget(new PanelText(worded("Sorted by"), PanelTextStyle::caption, this));
  column->addWidget(sort);
  column->addWidget(new PanelField(worded("Looks like"), display, this));
  column->addWidget(new PanelField(worded("Opens as"), view, this));
}

void ItemEditor::makeSpacer(QVBoxLayout* column) {
  auto* width = new PanelSegments(worded("Width"),
                                  {worded("Narrow"), worded("Usual"), worded("Stretches")}, this);
  width->onChange = [this](int index) { change({spacerWidths[static_cast<std::size_t>(index)]}); };
  showLook_ = [this, width] {
    for (std::size_t i = 0; i < spacerWidths.size(); ++i)
      if (*placed_.item.spacer() == spacerWidths[i])
        width->setCurrent(static_cast<int>(i));
  };
  showLook_();
  column->addWidget(new PanelField(worded("Width"), width, this));
}

void ItemEditor::makeActions(QVBoxLayout* column) {
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const auto mover = [this](int towards, bool isLeft) {
    return PanelButton::icon(
        isLeft ? QStringLiteral("chevron.left") : QStringLiteral("chevron.right"),
        isLeft ? worded("Move Left") : worded("Move Right"),
        [this, towards] {
          if (onMove)
            onMove(towards);
        },
        this);
  };
  back_ = mover(-1, !isMirrored);
  on_ = mover(1, isMirrored);
  auto* replace = new PanelButton(
      PanelButton::Kind::quiet, worded("Replace…"),
      [this] {
        if (onReplace)
          onReplace();
      },
      this);
  auto* remove = new PanelButton(
      PanelButton::Kind::quiet, worded("Remove"),
      [this] {
        if (onRemove)
          onRemove();
      },
      this);
  auto* row = new QHBoxLayout;
  row->addWidget(back_);
  row->addWidget(on_);
  row->addStretch(1);
  row->addWidget(replace);
  row->addWidget(remove);
  column->addLayout(row);
}

void ItemEditor::change(const DockItem& changed, const std::string& field) {
  if (changed != placed_.item && onChange && onChange(changed, field))
    placed_.item = changed;
}

void ItemEditor::follow(const DockItem& item) {
  if (item == placed_.item)
    return;
  if (item.payload.index() != placed_.item.payload.index() ||
      addressOf(item) != addressOf(placed_.item)) {
    close();
    return;
  }
  placed_.item = item;
  isShowing_ = true;
  // What is being typed stays, also while it is not yet a name.
  if (name_ != nullptr && !name_->hasFocus())
    name_->setText(utf8(item.displayName()));
  isShowing_ = false;
  if (showLook_)
    showLook_();
}

void ItemEditor::focusMove(int towards) {
  (towards < 0 ? back_ : on_)->setFocus(Qt::PopupFocusReason);
}

} // namespace tavrin
