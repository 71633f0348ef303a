#include "TavrinSettings/Form/Picker.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace tavrin {
namespace {
constexpr int popupWidth = 340;
constexpr int visibleRows = 8;
} // namespace

PickerPopup::PickerPopup(QWidget* owner, const QString& name, const QString& prompt,
                         PickerSource source)
    : FormPopup(owner, name), source_(std::move(source)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(panel::grid, panel::grid, panel::grid, panel::grid);
  column->setSpacing(panel::grid);
  list_ = new PanelList(name, this);
  list_->setMaximumVisibleRows(visibleRows);
  list_->onOpen = [this](int row) { choose(row); };
  if (!prompt.isEmpty()) {
    search_ = new PanelSearchField(prompt, this);
    search_->setList(list_);
    search_->onChange = [this](const QString& words) { ask(words); };
    search_->onReturn = [this] { choose(std::max(0, list_->currentRow())); };
    column->addWidget(search_);
  }
  trouble_ = new PanelText({}, PanelTextStyle::secondary, this);
  trouble_->setContentsMargins(panel::grid, 0, panel::grid, panel::grid);
  column->addWidget(trouble_);
  column->addWidget(list_);
  column->addStretch(1);
  setFixedWidth(std::max(popupWidth, owner->width()));
}

void PickerPopup::open() {
  ask({});
  if (search_ != nullptr)
    keepHeight();
  FormPopup::open();
  (search_ != nullptr ? static_cast<QWidget*>(search_) : list_)->setFocus(Qt::PopupFocusReason);
}

/// What is typed must not move what it is typed into.
void PickerPopup::keepHeight() {
  const int rows = items_.empty() ? visibleRows : std::min(list_->count(), visibleRows);
  const int wanted = search_->sizeHint().height() + 3 * panel::grid + rows * list_->rowHeight();
  const int least = search_->sizeHint().height() + 3 * panel::grid + 2 * list_->rowHeight();
  setFixedHeight(std::max(std::min(wanted, roomBeside()), least));
}

void PickerPopup::ask(const QString& words) {
  asking_.reset();
  const QPointer<PickerPopup> self(this);
  auto asking = source_(words, [self](std::vector<PickerItem> items, const QString& trouble) {
    if (self)
      self->take(std::move(items), trouble);
  });
  asking_ = std::move(asking);
}

void PickerPopup::take(std::vector<PickerItem> items, const QString& trouble) {
  items_ = std::move(items);
  std::vector<PanelRow> rows;
  int chosen = -1;
  for (const auto& item : items_) {
    if (item.row.isChecked)
      chosen = static_cast<int>(rows.size());
    rows.push_back(item.row);
  }
  list_->setRows(std::move(rows));
  if (chosen >= 0)
    list_->setCurrentRow(chosen);
  trouble_->setWords(trouble);
  trouble_->setVisible(!trouble.isEmpty());
  list_->setVisible(!items_.empty());
  if (isVisible() && search_ != nullptr && search_->text().isEmpty())
    keepHeight();
  place();
}

void PickerPopup::choose(int index) {
  if (index < 0 || index >= static_cast<int>(items_.size()))
    return;
  const auto item = items_[static_cast<std::size_t>(index)];
  const auto tell = onChoose;
  close();
  if (tell)
    tell(item);
}

DropButton::DropButton(std::function<void()> open)
    : PanelButton(PanelButton::Kind::quiet, {}, std::move(open)) {
  setSymbol(QStringLiteral("chevron.down"));
  setMaximumWidth(260);
}

void DropButton::show(const QString& name, const QString& chosen) {
  setTitle(chosen);
  setAccessibleName(name);
  setAccessibleDescription(chosen);
}

void DropButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up)
    click();
  else
    PanelButton::keyPressEvent(event);
}

PickerControl::PickerControl(const FieldInfo& field, const QString& prompt, PickerSource source,
                             std::function<QString(const JSONValue&, const JSONValue&)> titleOf)
    : FormControl(field), prompt_(prompt), source_(std::move(source)), titleOf_(std::move(titleOf)),
      button_(new DropButton([this] { open(); })) {
  makeRow()->addWidget(button_);
}

void PickerControl::setValue(const JSONValue& value, const JSONValue& record) {
  value_ = value;
  record_ = record;
  refresh();
}

void PickerControl::refresh() {
  button_->show(title(), value_.isNull() ? worded(field().absent) : titleOf_(value_, record_));
}

QWidget* PickerControl::target() {
  return button_;
}

void PickerControl::open() {
  if (popup_ && popup_->isVisible())
    return;
  auto source = [this](const QString& words, PickerAnswer answer) {
    return source_(
        words, [this, words, answer](std::vector<PickerItem> items, const QString& trouble) {
          if (field().isNullable && words.isEmpty() && !field().absent.empty())
            items.insert(items.begin(),
                         {.row = {.id = QStringLiteral("none"), .title = worded(field().absent)},
                          .values = {{{}, {}, {}}}});
          for (auto& item : items)
            if (item.row.id == QLatin1String("none"))
              for (const auto& path : also_)
                item.values.push_back({path, {}, {}});
          for (auto& item : items)
            item.row.isChecked = item.values.size() == 1 && item.values.front().value == value_;
          answer(std::move(items), trouble);
        });
  };
  popup_ = new PickerPopup(button_, title(), prompt_, std::move(source));
  popup_->onChoose = [this](const PickerItem& item) {
    if (onEdit)
      onEdit(item.values);
  };
  popup_->open();
}

} // namespace tavrin
