#include "TavrinSettings/Form/FormRow.h"

#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace tavrin {
namespace {

/// The sentence with the setting's title in place of its key, as the user sees it.
QString withTitle(QString sentence, const FieldInfo& field) {
  const auto key = QString::fromStdString(field.key);
  // Each language has its own quotation marks.
  for (const auto* marks : {"\"%1\"", "„%1“", "«%1»"})
    sentence.replace(QString::fromUtf8(marks).arg(key),
                     QString::fromUtf8(marks[0] == '"' ? "“%1”" : marks).arg(worded(field.title)));
  if (!sentence.isEmpty())
    sentence[0] = sentence[0].toUpper();
  return sentence;
}

/// A choice by its title; what else there is, as it is written.
std::string shownText(const FieldInfo& field, const JSONValue& value) {
  const auto* word = value.string();
  for (std::size_t i = 0; word != nullptr && i < field.choices.size(); ++i)
    if (field.choices[i] == *word && i < field.choiceTitles.size())
      return translated(field.choiceTitles[i]);
  return settingText(field, value);
}

} // namespace

FormRow::FormRow(const FieldInfo& field, std::string path, const FormServices& services,
                 QWidget* parent)
    : QWidget(parent), field_(field), path_(std::move(path)), services_(services),
      control_(makeFormControl(field, services)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 6, 0, 6);
  column->setSpacing(3);
  line_ = new QBoxLayout(QBoxLayout::LeftToRight);
  line_->setSpacing(panel::grid);
  if (!control_->hasTitle()) {
    title_ = new PanelText(control_->title(), PanelTextStyle::body, this);
    line_->addWidget(title_, 1);
  }
  line_->addWidget(control_, control_->isWide() || control_->hasTitle() ? 2 : 0);
  column->addLayout(line_);
  if (!field.help.empty()) {
    auto* help = new PanelText(worded(field.help), PanelTextStyle::caption, this);
    column->addWidget(help);
  }
  auto* below = new QHBoxLayout;
  below->setSpacing(panel::grid);
  message_ = new PanelText({}, PanelTextStyle::trouble, this);
  message_->hide();
  takeOther_ = new PanelButton(PanelButton::Kind::plain, worded("Show it"), [this] {
    remark_.clear();
    trouble_.clear();
    fill(known_, record_);
    showMessage();
  });
  takeOther_->hide();
  below->addWidget(message_, 1);
  below->addWidget(takeOther_);
  column->addLayout(below);
  control_->onEdit = [this](std::vector<SettingValue> values) { return edit(std::move(values)); };
  control_->onTrouble = [this](const QString& sentence) { complain(sentence); };
  control_->onHeightChange = [this] {
    if (onHeightChange)
      onHeightChange();
  };
  setNarrow(false);
  label();
}

void FormRow::label() {
  if (title_ != nullptr)
    title_->setBuddy(control_->target());
  control_->target()->setAccessibleDescription(utf8(field_.help));
}

void FormRow::fill(const JSONValue& value, const JSONValue& record) {
  control_->setValue(value, record);
  // Other choices may have made it another widget.
  label();
}

void FormRow::setNarrow(bool isNarrow) {
  const auto direction =
      isNarrow || control_->isWide() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
  line_->setDirection(direction);
}

void FormRow::show(const JSONValue& record) {
  const auto* found = record.member(field_.key);
  const auto value = found == nullptr ? JSONValue() : *found;
  const bool isOther = isShown_ && value != known_;
  record_ = record;
  setEnabled(field_.condition.holds(record));
  if (isShown_ && control_->isTyping() && !control_->leavesTyping()) {
    if (isOther)
      remark_ = worded("Changed elsewhere to {value}", {{"value", shownText(field_, value)}});
    known_ = value;
  } else {
    // "Two " is stored as "Two"; taking the blank away would leave "Twowords".
    const bool isBeingWritten = isShown_ && !isOther &&
                                qobject_cast<QLineEdit*>(control_->target()) != nullptr &&
                                control_->target()->hasFocus();
    known_ = value;
    isShown_ = true;
    remark_.clear();
    trouble_.clear();
    if (!isBeingWritten)
      fill(value, record);
  }
  warn();
  showMessage();
}

/// What is stored may come from anywhere.
void FormRow::warn() {
  const auto fault = storedFault(field_, known_, services_.system);
  warning_ = withTitle(
      utf8(fault.empty() ? settingWarning(field_, known_, services_.system) : fault), field_);
}

std::string FormRow::edit(std::vector<SettingValue> values) {
  for (auto& each : values) {
    if (each.path.empty()) {
      each.path = path_;
      each.before = known_;
    }
  }
  auto refusal = onEdit ? onEdit(values) : std::string();
  if (refusal.empty()) {
    remark_.clear();
    trouble_.clear();
    if (control_->showsWhatIsStored())
      fill(known_, record_);
  } else {
    trouble_ = withTitle(utf8(refusal), field_);
  }
  warn();
  showMessage();
  if (!refusal.empty() && !control_->isTyping() && !control_->isWide())
    fill(known_, record_);
  return refusal;
}

void FormRow::complain(const QString& sentence) {
  trouble_ = withTitle(sentence, field_);
  showMessage();
}

void FormRow::demand() {
  complain(utf8(translated("\"{key}\" must be {allowed}",
                           {{"key", field_.key}, {"allowed", allowedText(field_)}})));
}

void FormRow::showMessage() {
  QStringList sentences;
  for (const auto& sentence : {trouble_, remark_, warning_})
    if (!sentence.isEmpty())
      sentences.append(sentence);
  const auto words = sentences.join(QStringLiteral(". "));
  const bool isNew = words != message_->text();
  message_->setWords(words);
  message_->setVisible(!words.isEmpty());
  takeOther_->setVisible(!remark_.isEmpty());
  control_->target()->setAccessibleDescription(words.isEmpty() ? worded(field_.help) : words);
  if (isNew && onHeightChange)
    onHeightChange();
}

bool FormRow::isTyping() const {
  return control_->isTyping();
}

bool FormRow::commit() {
  return control_->commit();
}

void FormRow::focusControl() {
  control_->target()->setFocus(Qt::TabFocusReason);
}

} // namespace tavrin
