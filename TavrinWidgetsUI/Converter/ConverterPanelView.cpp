#include "TavrinWidgetsUI/Converter/ConverterPanelView.h"

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinWidgetsUI/Converter/ConverterViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <cmath>

namespace tavrin {
namespace {

/// In a field, and in the copy; the double behind it is good for three more.
constexpr int fieldDigits = 12;
constexpr int rateDigits = 8;
constexpr int numberHeight = 36;

void choose(QComboBox& box, std::string_view symbol) {
  const QSignalBlocker quiet(&box);
  box.setCurrentIndex(box.findData(utf8(symbol)));
}

/// A letter more at the end, or one less: the same text goes on.
bool isNextKey(const QString& before, const QString& after) {
  return std::abs(before.size() - after.size()) <= 1 &&
         (before.startsWith(after) || after.startsWith(before));
}

std::string chosen(const QComboBox& box) {
  return box.currentData().toString().toStdString();
}

} // namespace

ConverterPanelView::ConverterPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::grids), source_(std::move(source)), category_(new QComboBox),
      upper_(makeSide(worded("Value"))), lower_(makeSide(worded("Result"))),
      rate_(new PanelText({}, PanelTextStyle::caption)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)) {
  category_->setMaxVisibleItems(allCases<ConverterCategory>().size());
  for (const auto category : allCases<ConverterCategory>())
    category_->addItem(utf8(tavrin::title(category)));
  connect(category_, &QComboBox::activated, this, [this](int index) {
    typedIn_ = nullptr;
    source_.change(withCategory(source_.settings(),
                                allCases<ConverterCategory>()[static_cast<std::size_t>(index)]));
  });
  add(category_);
  nameChoice(*category_, worded("Category"));
  addSpace(4);
  addSides();
  rate_->setSingleLine(true);
  trouble_->setSingleLine(true);
  add(rate_);
  add(trouble_);
  addSpace(4);
  copy_ = new PanelButton(PanelButton::Kind::prominent, worded("Copy Result"),
                          [this] { copyResult(); });
  copy_->setSymbol("doc.on.clipboard");
  add(copy_);
  setEditButton(worded("Edit Converter…"), source_.edit);
  // Not `textEdited`: what assistive technology sets is typed too.
  connect(upper_.number, &QLineEdit::textChanged, this,
          [this](const QString& text) { typed(true, text); });
  connect(lower_.number, &QLineEdit::textChanged, this,
          [this](const QString& text) { typed(false, text); });
  for (QLineEdit* number : {upper_.number, lower_.number})
    connect(number, &QLineEdit::selectionChanged, this, [this, number] {
      if (number->hasSelectedText())
        typedText_.reset();
    });
  for (QComboBox* unit : {upper_.unit, lower_.unit})
    connect(unit, &QComboBox::activated, this, [this] { chooseUnits(); });
  refresh();
}

ConverterPanelView::Side ConverterPanelView::makeSide(const QString& name) {
  auto* number = new QLineEdit;
  number->setAccessibleName(name);
  number->setMinimumHeight(numberHeight);
  number->setMaxLength(64);
  number->setFont(panelFont(PanelTextStyle::title));
  auto* unit = new QComboBox;
  unit->setMinimumHeight(numberHeight);
  unit->setMaxVisibleItems(16);
  unit->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  unit->setMinimumContentsLength(10);
  return {number, unit};
}

void ConverterPanelView::addSides() {
  auto* holder = new QWidget;
  auto* grid = new QGridLayout(holder);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(8);
  auto* swap = PanelButton::icon("arrow.up.arrow.down", worded("Swap"), [this] {
    typedIn_ = nullptr;
    source_.change(swapped(source_.settings()));
  });
  int row = 0;
  for (const Side& side : {upper_, lower_}) {
    grid->addWidget(side.number, row, 0);
    grid->addWidget(side.unit, row, 1);
    nameChoice(*side.unit, worded("{name} unit", {{"name", side.number->accessibleName()}}));
    ++row;
  }
  grid->addWidget(swap, 0, 2, 2, 1, Qt::AlignVCenter);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  add(holder);
  QWidget* before = category_;
  for (QWidget* next : std::initializer_list<QWidget*>{upper_.number, upper_.unit, lower_.number,
                                                       lower_.unit, swap}) {
    setTabOrder(before, next);
    before = next;
  }
}

void ConverterPanelView::showEvent(QShowEvent* event) {
  typedIn_ = nullptr;
  isNumber_ = true;
  upper_.number->setFocus();
  upper_.number->selectAll();
  PanelView::showEvent(event);
}

void ConverterPanelView::fillUnits(ConverterCategory category) {
  if (filled_ == category)
    return;
  filled_ = category;
  for (QComboBox* box : {upper_.unit, lower_.unit}) {
    const QSignalBlocker quiet(box);
    box->clear();
    for (const auto& unit : converterUnits(category)) {
      QString name = utf8(displayName(unit));
      name[0] = name[0].toUpper();
      box->addItem(name, utf8(unit.symbol));
    }
  }
}

void ConverterPanelView::typed(bool isUpper, const QString& text) {
  QLineEdit* field = isUpper ? upper_.number : lower_.number;
  ConverterSettings settings = source_.settings();
  // Another value than what was typed so far is somebody else's.
  if (typedIn_ != field || settings.value != typedValue_ || !typedText_ ||
      !isNextKey(*typedText_, text))
    standing_ = settings.value;
  typedIn_ = field;
  typedText_ = text;
  const auto value = source_.notation.evaluate(text.toStdString());
  const Conversion conversion(settings);
  const double upper = !value    ? std::nan("")
                       : isUpper ? *value
                                 : convert(*value, *conversion.to, *conversion.from);
  isNumber_ = std::isfinite(upper);
  typedValue_ = isNumber_ ? upper : standing_;
  settings.value = typedValue_;
  source_.change(settings);
  refresh();
}

void ConverterPanelView::chooseUnits() {
  ConverterSettings settings = source_.settings();
  settings.from = chosen(*upper_.unit);
  settings.to = chosen(*lower_.unit);
  typedIn_ = nullptr;
  source_.change(settings);
}

void ConverterPanelView::copyResult() {
  const Conversion conversion(source_.settings());
  standing_ = conversion.value;
  source_.copy(
      source_.notation.format(conversion.result(), fieldDigits, NumberNotation::Grouping::plain));
  hasCopied_ = true;
  refresh();
  hasCopied_ = false;
}

void ConverterPanelView::showNumber(QLineEdit& field, double value) {
  const QString text = QString::fromStdString(source_.notation.format(value, fieldDigits));
  if (field.text() != text) {
    const QSignalBlocker quiet(&field);
    field.setText(text);
    // A number too long for its field shows its beginning.
    field.setCursorPosition(0);
  }
}

void ConverterPanelView::showNumbers(const Conversion& conversion) {
  const double result = conversion.result();
  if (typedIn_ != nullptr) {
    // Set from elsewhere while typed in: what was typed is no longer what is shown.
    const auto typed = source_.notation.evaluate(typedIn_->text().toStdString());
    const double now = typedIn_ == upper_.number ? conversion.value : result;
    const bool isSame = typed && std::abs(*typed - now) <= 1e-9 * std::abs(now);
    if (isNumber_ && !isSame)
      typedIn_ = nullptr;
  }
  if (typedIn_ != upper_.number)
    showNumber(*upper_.number, isNumber_ ? conversion.value : std::nan(""));
  if (typedIn_ != lower_.number)
    showNumber(*lower_.number, isNumber_ ? result : std::nan(""));
}

void ConverterPanelView::refresh() {
  const ConverterSettings settings = source_.settings();
  const Conversion conversion(settings);
  setTitle(QString::fromStdString(source_.name()));
  setState(hasCopied_ ? worded("Copied") : "", State::active);
  {
    const QSignalBlocker quiet(category_);
    category_->setCurrentIndex(static_cast<int>(settings.category));
  }
  fillUnits(settings.category);
  choose(*upper_.unit, conversion.from->symbol);
  choose(*lower_.unit, conversion.to->symbol);
  showNumbers(conversion);
  const bool asksForCurrency =
      !isNumber_ && typedIn_ != nullptr && namesCurrency(typedIn_->text().toStdString());
  const QString trouble = asksForCurrency
                              ? worded("Currencies are left out: no rates can be relied on.")
                          : !isNumber_                      ? worded("This is not a number.")
                          : conversion.isImpossible()       ? worded("This is below absolute zero.")
                          : std::isinf(conversion.result()) ? worded("The result is too large.")
                                                            : "";
  trouble_->setWords(trouble);
  trouble_->setVisible(!trouble.isEmpty());
  const double one = convert(1, *conversion.from, *conversion.to);
  rate_->setWords(joinedPieces({quantityText(1, *conversion.from, source_.notation, rateDigits),
                                quantityText(one, *conversion.to, source_.notation, rateDigits)},
                               QStringLiteral(" = ")));
  rate_->setVisible(trouble.isEmpty());
  copy_->setEnabled(trouble.isEmpty());
}

} // namespace tavrin
