#include "TavrinSettings/Form/SimpleControls.h"

#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinSettings/Form/TypedLine.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace tavrin {

/// "25", not "25.00": digits that say nothing are left out.
/// What is no number of the range can be typed all the same, to be told why it is not taken.
class NumberBox final : public QDoubleSpinBox {
public:
  /// What stands there is not taken, and the last number comes back.
  std::function<void()> onRefuse;

  /// Nothing that is typed further makes it one of the range.
  bool isBeyond() const {
    QString words = text();
    int cursor = 0;
    return QDoubleSpinBox::validate(words, cursor) == QValidator::Invalid;
  }
  QValidator::State validate(QString& words, int& cursor) const override {
    const auto state = QDoubleSpinBox::validate(words, cursor);
    return state == QValidator::Invalid && isNumber(words) ? QValidator::Intermediate : state;
  }
  void fixup(QString& words) const override {
    QDoubleSpinBox::fixup(words);
    int cursor = 0;
    if (onRefuse && validate(words, cursor) != QValidator::Acceptable)
      onRefuse();
  }
  QString textFromValue(double value) const override {
    QString words = QDoubleSpinBox::textFromValue(value);
    const auto point = locale().decimalPoint();
    if (!words.contains(point))
      return words;
    while (words.endsWith(locale().zeroDigit()))
      words.chop(1);
    if (words.endsWith(point))
      words.chop(point.size());
    return words;
  }

private:
  bool isNumber(QString words) const {
    if (words.endsWith(suffix()))
      words.chop(suffix().size());
    bool isOne = false;
    locale().toDouble(words.trimmed(), &isOne);
    return isOne;
  }
};

namespace {

/// Words that stand side by side without crowding a form of the least width.
bool fitsSegments(const std::vector<ChoiceControl::Choice>& choices) {
  qsizetype letters = 0;
  for (const auto& choice : choices)
    letters += choice.second.size() + 3;
  return choices.size() <= 4 && letters <= 36;
}

} // namespace

ToggleControl::ToggleControl(const FieldInfo& field)
    : FormControl(field), toggle_(new PanelSwitch(title())) {
  makeRow()->addWidget(toggle_);
  toggle_->onChange = [this](bool on) { send(on); };
}

void ToggleControl::setValue(const JSONValue& value, const JSONValue&) {
  toggle_->setOn(value.boolean() != nullptr && *value.boolean());
}

QWidget* ToggleControl::target() {
  return toggle_;
}

ChoiceControl::ChoiceControl(const FieldInfo& field,
                             std::function<std::vector<Choice>(const JSONValue&)> choices)
    : FormControl(field), makeChoices_(std::move(choices)) {
  makeRow();
  choices_ = makeChoices_(JSONValue::Object());
  make();
}

void ChoiceControl::make() {
  delete segments_;
  delete drop_;
  segments_ = nullptr;
  drop_ = nullptr;
  if (fitsSegments(choices_)) {
    QStringList titles;
    for (const auto& choice : choices_)
      titles.append(choice.second);
    segments_ = new PanelSegments(title(), titles, this);
    segments_->onChange = [this](int index) { chose(index); };
    layout()->addWidget(segments_);
  } else {
    drop_ = new DropButton([this] { open(); });
    layout()->addWidget(drop_);
  }
}

ChoiceControl::~ChoiceControl() {
  delete popup_;
}

void ChoiceControl::open() {
  if (popup_ && popup_->isVisible())
    return;
  const auto source = [this](const QString&, const PickerAnswer& answer) -> TokenPtr {
    std::vector<PickerItem> items;
    for (const auto& [value, words] : choices_)
      items.push_back({.row = {.id = QString::number(items.size()),
                               .title = words,
                               .isChecked = value == value_},
                       .values = {{{}, value, {}}}});
    answer(std::move(items), {});
    return nullptr;
  };
  auto* popup = new PickerPopup(drop_, title(), {}, source);
  popup->onChoose = [this](const PickerItem& item) { chose(item.row.id.toInt()); };
  popup_ = popup;
  popup->open();
}

void ChoiceControl::chose(int index) {
  if (index < 0 || index >= static_cast<int>(choices_.size()))
    return;
  const auto chosen = choices_[static_cast<std::size_t>(index)].first;
  if (chosen != value_)
    send(chosen);
}

void ChoiceControl::setValue(const JSONValue& value, const JSONValue& record) {
  value_ = value;
  auto choices = makeChoices_(record);
  // What is stored and known to nobody is shown as it stands.
  if (std::ranges::count(choices, value, &Choice::first) == 0)
    choices.emplace_back(value, utf8(settingText(field(), value)));
  if (choices != choices_) {
    choices_ = std::move(choices);
    make();
  }
  const auto place = std::ranges::find(choices_, value, &Choice::first) - choices_.begin();
  if (segments_ != nullptr)
    segments_->setCurrent(static_cast<int>(place));
  else
    drop_->show(title(), choices_[static_cast<std::size_t>(place)].second);
}

QWidget* ChoiceControl::target() {
  return segments_ != nullptr ? static_cast<QWidget*>(segments_) : drop_;
}

NumberControl::NumberControl(const FieldInfo& field) : FormControl(field), box_(new NumberBox) {
  box_->setAccessibleName(title());
  box_->setFont(panelFont(PanelTextStyle::body));
  box_->setKeyboardTracking(false);
  box_->setAlignment(Qt::AlignHCenter);
  box_->setMinimumWidth(150);
  if (field.isNullable)
    box_->setSpecialValueText(worded(field.absent));
  makeRow()->addWidget(box_);
  connect(box_, &QDoubleSpinBox::valueChanged, this, [this](double shown) { changed(shown); });
  const auto refuse = [this] {
    complain(
        utf8(translated("\"{key}\" must be {allowed}",
                        {{"key", this->field().key}, {"allowed", allowedText(this->field())}})));
  };
  box_->onRefuse = refuse;
  connect(box_->findChild<QLineEdit*>(), &QLineEdit::textEdited, this, [this, refuse] {
    if (box_->isBeyond())
      refuse();
    else
      complain({});
  });
}

void NumberControl::setValue(const JSONValue& value, const JSONValue& record) {
  const QSignalBlocker quiet(box_);
  value_ = value;
  display_ = field().displayIn(record);
  const double factor = display_.factor;
  const bool isExact = factor == 1 && field().type == FieldType::integer;
  const double step = field().step > 0 ? field().step : factor;
  const auto range = field().range.value_or(FieldRange{-1e12, 1e12});
  box_->setDecimals(isExact ? 0 : factor == 60 ? 2 : 1);
  box_->setSingleStep(factor == 1 || factor == 60 || factor >= 1000 ? step / factor
                                                                    : std::max(1.0, step / 50));
  const double stored = value.doubleValue().value_or(range.lower);
  // A number from elsewhere may lie outside; it is shown, and only other numbers are bounded.
  const double lower = field().isNullable ? 0 : range.lower;
  box_->setRange(std::min(lower, stored) / factor, std::max(range.upper, stored) / factor);
  box_->setValue(value.isNull() ? box_->minimum() : stored / factor);
  showUnit();
}

void NumberControl::showUnit() {
  if (display_.unit.empty())
    return box_->setSuffix({});
  const auto unit = display_.unit == "d" ? wordedPlural("day", "days", std::llround(box_->value()))
                                         : worded(display_.unit);
  box_->setSuffix(QStringLiteral(" %1").arg(unit));
}

void NumberControl::changed(double shown) {
  showUnit();
  if (field().isNullable && shown == box_->minimum()) {
    send({});
    return;
  }
  const double stored = shown * display_.factor;
  const auto range = field().range.value_or(FieldRange{-1e12, 1e12});
  const double bounded = std::clamp(stored, range.lower, range.upper);
  if (field().type == FieldType::integer)
    send(static_cast<std::int64_t>(std::llround(bounded)));
  else
    send(std::round(bounded * 1000) / 1000);
}

bool NumberControl::isTyping() const {
  return box_->hasFocus() && box_->text() != box_->textFromValue(box_->value()) + box_->suffix() &&
         box_->text() != box_->specialValueText();
}

bool NumberControl::commit() {
  const bool isTaken = box_->hasAcceptableInput();
  box_->interpretText();
  return isTaken;
}

QWidget* NumberControl::target() {
  return box_;
}

TextControl::TextControl(const FieldInfo& field, const FormServices& services)
    : FormControl(field), services_(services),
      line_(new TypedLine(isTakenWhole(field) ? TypedLine::Taking::whole
                                              : TypedLine::Taking::letters)) {
  line_->setAccessibleName(title());
  line_->setFont(panelFont(PanelTextStyle::body));
  line_->setPlaceholderText(worded(field.absent));
  line_->setMinimumWidth(220);
  makeRow()->addWidget(line_, 1);
  line_->onTake = [this] { take(); };
  line_->onTyping = [this] {
    isTyping_ = true;
    complain({});
  };
}

bool TextControl::showsWhatIsStored() const {
  return isTakenWhole(field());
}

bool TextControl::isWide() const {
  return field().type == FieldType::text && field().role != FieldRole::plain;
}

void TextControl::setValue(const JSONValue& value, const JSONValue&) {
  isTyping_ = false;
  const auto words = value.isNull()              ? std::string()
                     : value.string() != nullptr ? *value.string()
                                                 : settingText(field(), value);
  line_->showText(utf8(words));
}

bool TextControl::take() {
  const auto words = line_->text().toStdString();
  isTyping_ = true;
  try {
    JSONValue value;
    if (!(words.empty() && field().isNullable))
      value = field().type == FieldType::text
                  ? JSONValue(words)
                  : settingFromText(field(), words, services_.now ? services_.now() : Date{});
    isTyping_ = !send(std::move(value));
  } catch (const SettingError& error) {
    complain(utf8(error.what()));
  }
  return !isTyping_;
}

bool TextControl::commit() {
  return !isTyping_ || take();
}

QWidget* TextControl::target() {
  return line_;
}

LinesControl::LinesControl(const FieldInfo& field)
    : FormControl(field), edit_(new PanelTextEdit(title(), worded(field.absent))) {
  edit_->setLines(4);
  makeRow()->addWidget(edit_, 1);
  edit_->onChange = [this](const QString&) { isTyping_ = !commit(); };
}

void LinesControl::setValue(const JSONValue& value, const JSONValue&) {
  isTyping_ = false;
  edit_->setText(utf8(value.string() != nullptr ? *value.string() : std::string()));
}

bool LinesControl::commit() {
  isTyping_ = !send(edit_->toPlainText().toStdString());
  return !isTyping_;
}

QWidget* LinesControl::target() {
  return edit_;
}

DateControl::DateControl(const FieldInfo& field) : FormControl(field), edit_(new QDateTimeEdit) {
  edit_->setAccessibleName(title());
  edit_->setFont(panelFont(PanelTextStyle::body));
  edit_->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm"));
  edit_->setKeyboardTracking(false);
  edit_->setAlignment(Qt::AlignHCenter);
  edit_->setMinimumWidth(220);
  makeRow()->addWidget(edit_);
  connect(edit_, &QDateTimeEdit::dateTimeChanged, this, [this](const QDateTime& moment) {
    send(Date::fromUnixSeconds(static_cast<double>(moment.toSecsSinceEpoch()))
             .secondsSinceReferenceDate);
  });
}

void DateControl::setValue(const JSONValue& value, const JSONValue&) {
  const QSignalBlocker quiet(edit_);
  const Date date{value.doubleValue().value_or(0)};
  edit_->setDateTime(
      QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(date.unixSeconds()))));
}

QWidget* DateControl::target() {
  return edit_;
}

} // namespace tavrin
