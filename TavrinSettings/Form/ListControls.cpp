#include "TavrinSettings/Form/ListControls.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Settings/SettingRoles.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinSettings/Form/FormRow.h"
#include "TavrinSettings/Form/SystemControls.h"
#include "TavrinSettings/Form/TabOrder.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {
namespace {

enum Action { moveUp, moveDown, takeOut };

std::vector<PanelRowAction> rowActions() {
  return {{.symbol = QStringLiteral("chevron.up"), .name = worded("Move up")},
          {.symbol = QStringLiteral("chevron.down"), .name = worded("Move down")},
          {.symbol = QStringLiteral("xmark"), .name = worded("Take out"), .stays = true}};
}

QString memberText(const JSONValue& record, std::string_view key) {
  const auto* value = record.member(key);
  return value == nullptr || value->string() == nullptr ? QString() : utf8(*value->string());
}

/// "Add repository": the field's title of one element.
QString addTitle(const FieldInfo& field) {
  // The title's singular is English's alone.
  if (textLanguage() != "en")
    return worded("Add");
  auto words = utf8(field.title);
  if (words.endsWith(QLatin1String("ies")))
    words = words.chopped(3) + QLatin1Char('y');
  else if (words.endsWith(QLatin1Char('s')))
    words.chop(1);
  return QStringLiteral("Add %1").arg(words.toLower());
}

} // namespace

ListControl::ListControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), services_(services), column_(new QVBoxLayout(this)),
      list_(new PanelList(title(), this)) {
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(6);
  column_->addWidget(list_);
  list_->setMaximumVisibleRows(6);
  list_->onAction = [this](int row, int action) { act(row, action); };
  list_->onRemove = [this](int row) { act(row, takeOut); };
}

void ListControl::setValue(const JSONValue& value, const JSONValue&) {
  elements_ = value.array() != nullptr ? *value.array() : JSONValue::Array();
  std::vector<PanelRow> rows;
  for (const auto& element : elements_) {
    auto row = rowOf(element);
    row.id = QString::number(rows.size());
    row.actions = rowActions();
    rows.push_back(std::move(row));
  }
  list_->setVisible(!rows.empty());
  list_->setRows(std::move(rows));
  list_->setMinimumHeight(list_->sizeHint().height());
  if (onHeightChange)
    onHeightChange();
}

void ListControl::act(int row, int action) {
  const auto at = static_cast<std::ptrdiff_t>(row);
  auto elements = elements_;
  if (row < 0 || row >= static_cast<int>(elements.size()))
    return;
  if (action == takeOut) {
    elements.erase(elements.begin() + at);
    sendList(std::move(elements));
    return;
  }
  const int other = row + (action == moveUp ? -1 : 1);
  if (other < 0 || other >= static_cast<int>(elements.size()))
    return;
  std::swap(elements[static_cast<std::size_t>(row)], elements[static_cast<std::size_t>(other)]);
  if (sendList(std::move(elements)))
    list_->setCurrentRow(other);
}

bool ListControl::append(JSONValue element) {
  auto elements = elements_;
  elements.push_back(std::move(element));
  return sendList(std::move(elements));
}

QWidget* ListControl::target() {
  return list_;
}

TextListControl::TextListControl(const FieldInfo& field, const FormServices& services)
    : ListControl(field, services), line_(new QLineEdit) {
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  line_->setFont(panelFont(PanelTextStyle::body));
  line_->setPlaceholderText(field.unit == "s" ? worded("such as 25m or 1h30m")
                                              : utf8(allowedText(field.element())));
  line_->setAccessibleName(addTitle(field));
  row->addWidget(line_, 1);
  row->addWidget(new PanelButton(PanelButton::Kind::quiet, worded("Add"), [this] { add(); }));
  const bool isPath = field.role == FieldRole::file || field.role == FieldRole::folder;
  if (isPath && services.choosePaths)
    row->addWidget(
        new PanelButton(PanelButton::Kind::quiet, worded("Choose…"), [this] { choose(); }));
  column()->addLayout(row);
  connect(line_, &QLineEdit::returnPressed, this, [this] { add(); });
  list()->onOpen = [this](int index) {
    line_->setText(
        utf8(settingText(this->field().element(), elements()[static_cast<std::size_t>(index)])));
    line_->setFocus(Qt::OtherFocusReason);
  };
}

PanelRow TextListControl::rowOf(const JSONValue& element) const {
  const auto one = field().element();
  PanelRow row{.title = utf8(settingText(one, element))};
  if (!settingWarning(one, element, services().system).empty())
    row.trailing = worded("not there");
  return row;
}

bool TextListControl::isTyping() const {
  return !line_->text().trimmed().isEmpty();
}

bool TextListControl::add() {
  const auto words = line_->text().trimmed().toStdString();
  if (words.empty())
    return true;
  try {
    const auto element = settingFromText(field().element(), words, {});
    if (std::ranges::count(elements(), element) > 0) {
      complain(worded("That is in the list already"));
      return false;
    }
    // Refused, the words stay to be mended; taken, the line is free before the list is shown anew.
    line_->clear();
    if (append(element))
      return true;
    line_->setText(utf8(words));
  } catch (const SettingError& error) {
    complain(utf8(error.what()));
  }
  return false;
}

void TextListControl::choose() {
  const auto how = field().role == FieldRole::folder ? FormServices::Choosing::folder
                                                     : FormServices::Choosing::files;
  auto elements = this->elements();
  for (const auto& path : services().choosePaths(window(), how, services().system.home)) {
    const JSONValue element(pathText(path));
    if (std::ranges::count(elements, element) == 0)
      elements.push_back(element);
  }
  if (elements != this->elements())
    sendList(std::move(elements));
}

QWidget* TextListControl::target() {
  return line_;
}

ApplicationListControl::ApplicationListControl(const FieldInfo& field, const FormServices& services)
    : ListControl(field, services),
      add_(new PanelButton(PanelButton::Kind::quiet, worded("Add app…"), [this] {
        if (popup_ && popup_->isVisible())
          return;
        popup_ = new PickerPopup(add_, title(), worded("Application"),
                                 applicationsSource(this->services()));
        popup_->onChoose = [this](const PickerItem& item) { append(item.values.front().value); };
        popup_->open();
      })) {
  column()->addWidget(add_, 0, Qt::AlignLeading);
  if (services.observeInstalledApps)
    apps_ = services.observeInstalledApps([this] { setValue(elements(), {}); });
}

PanelRow ApplicationListControl::rowOf(const JSONValue& element) const {
  const auto name = memberText(element, "displayName");
  const auto path = memberText(element, "path");
  PanelRow row{.title = name.isEmpty() ? path : name,
               .subtitle = name.isEmpty() ? QString() : path,
               .symbol = QStringLiteral("square.grid.2x2.fill")};
  constexpr int iconSide = 28;
  try {
    if (services().installedApp) {
      const auto app =
          services().installedApp(decode<AppEntry>(element), iconSide, devicePixelRatioF());
      row.image = app.icon;
      if (app.isGone)
        row.trailing = worded("Not installed");
    }
  } catch (const CodingError&) {
    // It is shown as it stands.
  }
  return row;
}

QWidget* ApplicationListControl::target() {
  return add_;
}

RecordListControl::RecordListControl(const FieldInfo& field, const FormServices& services)
    : ListControl(field, services), editor_(new QWidget) {
  auto* column = new QVBoxLayout(editor_);
  column->setContentsMargins(panel::padding, 0, 0, 0);
  column->setSpacing(panel::grid);
  editor_->hide();
  this->column()->addWidget(editor_);
  this->column()->addWidget(
      new PanelButton(PanelButton::Kind::quiet, addTitle(field), [this] { add(); }), 0,
      Qt::AlignLeading);
  list()->onOpen = [this](int index) {
    commit();
    if (draft_)
      aside_ = draft_;
    open(index == open_ ? -1 : index);
  };
}

PanelRow RecordListControl::rowOf(const JSONValue& element) const {
  PanelRow row;
  for (const auto& each : field().fields) {
    const auto words = memberText(element, each.key);
    if (each.type != FieldType::text || words.isEmpty())
      continue;
    if (row.title.isEmpty())
      row.title = words;
    else if (row.subtitle.isEmpty())
      row.subtitle = words;
  }
  if (row.title.isEmpty())
    row.title = worded("Untitled");
  return row;
}

void RecordListControl::setValue(const JSONValue& value, const JSONValue& record) {
  ListControl::setValue(value, record);
  const auto count = static_cast<int>(elements().size());
  if (draft_)
    open_ = count;
  else if (open_ >= count)
    return open(-1);
  showOpen();
}

bool RecordListControl::leadToMissing() {
  const auto isRefused = [](FormRow* row) { return !row->commit(); };
  if (const auto refused = std::ranges::find_if(rows_, isRefused); refused != rows_.end()) {
    (*refused)->focusControl();
    return true;
  }
  if (!draft_)
    return false;
  for (auto* row : rows_)
    for (const auto& each : field().fields)
      if (row->path() == each.key && lacks(*draft_, each)) {
        row->focusControl();
        row->demand();
        return true;
      }
  return false;
}

void RecordListControl::add() {
  if (leadToMissing())
    return;
  const auto count = static_cast<int>(elements().size());
  if (aside_) {
    open(count, std::exchange(aside_, std::nullopt));
    leadToMissing();
    return;
  }
  JSONValue::Object fresh;
  for (const auto& each : field().fields)
    if (each.isRequired)
      fresh.emplace(each.key, each.role == FieldRole::link   ? JSONValue("")
                              : each.type == FieldType::text ? JSONValue(translated("Untitled"))
                                                             : each.defaultValue);
  draft_.reset();
  const bool isWhole = append(fresh);
  if (!isWhole)
    complain({});
  open(count, isWhole ? std::nullopt : std::optional(std::move(fresh)));
}

void RecordListControl::open(int index, std::optional<JSONValue::Object> draft) {
  open_ = index;
  draft_ = std::move(draft);
  for (auto* row : rows_) {
    // Nothing of it is to be reached by Tab until it is gone.
    row->hide();
    row->deleteLater();
  }
  rows_.clear();
  if (open_ >= 0)
    for (const auto& each : field().fields) {
      if (each.isHidden)
        continue;
      auto* row = new FormRow(each, std::string(each.key), services(), editor_);
      row->onEdit = [this](const std::vector<SettingValue>& values) { return change(values); };
      row->onHeightChange = [this] {
        if (onHeightChange)
          onHeightChange();
      };
      rows_.push_back(row);
      editor_->layout()->addWidget(row);
    }
  followInTabOrder(*list(), *editor_);
  editor_->setVisible(open_ >= 0);
  showOpen();
  if (!rows_.empty())
    rows_.front()->focusControl();
  if (onHeightChange)
    onHeightChange();
}

void RecordListControl::showOpen() {
  const auto count = static_cast<int>(elements().size());
  if (open_ < 0 || (!draft_ && open_ >= count))
    return;
  if (!draft_)
    list()->setCurrentRow(open_);
  const JSONValue shown = draft_ ? JSONValue(*draft_) : elements()[static_cast<std::size_t>(open_)];
  for (auto* row : rows_)
    row->show(shown);
}

/// A text that must be there is not there yet.
bool RecordListControl::lacks(const JSONValue::Object& record, const FieldInfo& each) const {
  return each.isRequired && each.type == FieldType::text && memberText(record, each.key).isEmpty();
}

/// It lacks a text that is not the one that is being written.
bool RecordListControl::lacksOtherThan(const JSONValue::Object& record,
                                       const std::string& key) const {
  return std::ranges::any_of(field().fields, [&](const FieldInfo& each) {
    return each.key != key && lacks(record, each);
  });
}

std::string RecordListControl::change(const std::vector<SettingValue>& values) {
  auto elements = this->elements();
  auto draft = std::exchange(draft_, std::nullopt);
  if (draft)
    elements.emplace_back(*draft);
  if (open_ < 0 || open_ >= static_cast<int>(elements.size()))
    return translated("this is not taken");
  auto& record = *elements[static_cast<std::size_t>(open_)].object();
  for (const auto& [path, value, before] : values)
    if (value.isNull())
      record.erase(path);
    else
      record[path] = value;
  const auto changed = record;
  auto refusal = offerList(std::move(elements));
  // It is said at the field.
  if (!refusal.empty())
    complain({});
  if (!draft || refusal.empty())
    return refusal;
  const bool isKept = lacksOtherThan(changed, values.front().path);
  draft_ = isKept ? changed : draft;
  if (!isKept)
    return refusal;
  showOpen();
  return {};
}

bool RecordListControl::isTyping() const {
  return std::ranges::any_of(rows_, [](const FormRow* row) { return row->isTyping(); });
}

bool RecordListControl::commit() {
  return std::ranges::all_of(rows_, [](FormRow* row) { return row->commit(); });
}

} // namespace tavrin
