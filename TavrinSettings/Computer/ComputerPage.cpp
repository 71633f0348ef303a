#include "TavrinSettings/Computer/ComputerPage.h"

#include "TavrinCore/Settings/SettingText.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinSettings/Base/ScrollFade.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pictures/Symbols.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

using State = DesktopReport::State;

QString symbolOf(State state) {
  return state == State::good      ? QStringLiteral("checkmark.circle")
         : state == State::limited ? QStringLiteral("exclamationmark.triangle.fill")
                                   : QStringLiteral("xmark.circle.fill");
}

/// A symbol in the colour of what it stands for.
class StateMark final : public QWidget {
public:
  explicit StateMark(State state) : state_(state) { setFixedSize(18, 18); }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto colours = PanelPalette::from(palette());
    drawSymbol(painter, symbolOf(state_).toStdString(), QRectF(rect()).adjusted(1, 1, -1, -1),
               state_ == State::good ? colours.accent : colours.trouble);
  }

private:
  State state_;
};

/// Words that wrap, and quieter ones below them.
QLayout* pairOfTexts(const QString& words, const QString& quieter, bool isSelectable) {
  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  auto* text = new PanelText(words, PanelTextStyle::body);
  if (isSelectable)
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  column->addWidget(text);
  if (!quieter.isEmpty())
    column->addWidget(new PanelText(quieter, PanelTextStyle::caption));
  return column;
}

QScrollArea* scrollingArea(const QString& name, QWidget* parent) {
  auto* area = ScrollFade::makeArea(parent);
  area->setAccessibleName(name);
  return area;
}

/// Shows what `fill` puts into the column, in place of what was shown.
void showIn(QScrollArea* area, const std::function<void(QVBoxLayout* column)>& fill) {
  auto* inner = new QWidget;
  auto* column = new QVBoxLayout(inner);
  column->setContentsMargins(0, panel::grid, panel::grid, panel::grid);
  column->setSpacing(panel::padding);
  fill(column);
  column->addStretch(1);
  const int place = area->verticalScrollBar()->value();
  area->setWidget(inner);
  area->viewport()->setAutoFillBackground(false);
  inner->setAutoFillBackground(false);
  area->verticalScrollBar()->setValue(place);
}

/// So that it is not told by a picture alone.
QString wordOf(State state) {
  return state == State::good      ? worded("There")
         : state == State::limited ? worded("Limited")
                                   : worded("Missing");
}

std::string titleOfKind(const std::string& key) {
  for (const auto& kind : allKinds())
    if (kind.key == key)
      return translated(kind.title);
  return key;
}

/// Which widgets go without, and what to do.
QString detailOf(const DesktopReport::Item& item) {
  std::string words;
  if (!item.kinds.empty()) {
    std::vector<std::string> titles;
    for (const auto& kind : item.kinds)
      titles.push_back(titleOfKind(kind));
    words = translated("For {widgets}.", {{"widgets", enumeration(titles)}}) + " ";
  }
  return QString::fromStdString(words + item.remedy);
}

/// Of a remedy what one types, the words in grave accents; the whole of it where it has none.
QString copyable(const std::string& remedy) {
  const auto begin = remedy.find('`');
  const auto end = begin == std::string::npos ? begin : remedy.find('`', begin + 1);
  return QString::fromStdString(
      end == std::string::npos ? remedy : remedy.substr(begin + 1, end - begin - 1));
}

} // namespace

std::string reportSummary(const DesktopReport& report) {
  const auto count = [&](State state) {
    return std::ranges::count(report.items, state, &DesktopReport::Item::state);
  };
  const auto missing = count(State::missing);
  const auto limited = count(State::limited);
  if (missing == 0 && limited == 0)
    return translated("Everything that widgets use is here.");
  std::vector<std::string> parts;
  if (missing > 0)
    parts.push_back(plural("{count} thing is missing", "{count} things are missing", missing));
  if (limited > 0)
    parts.push_back(plural("{count} is limited", "{count} are limited", limited));
  return enumeration(parts) + ".";
}

std::string reportRemedies(const DesktopReport& report) {
  std::string words;
  int number = 0;
  for (const auto& item : report.items)
    if (!item.remedy.empty()) {
      ++number;
      words += fmt::format("{}{}. {}", number == 1 ? "" : "\n", number, item.remedy);
    }
  return words;
}

ComputerPage::ComputerPage(PageServices& services, std::function<DesktopReport()> look,
                           Autostart& autostart, QWidget* parent)
    : QWidget(parent), services_(services), look_(std::move(look)), autostart_(autostart) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  starts_ = new PanelSwitch(worded("Start the widgets with the session"), this);
  starts_->onChange = [this](bool isOn) { setAutostart(isOn); };
  column->addWidget(starts_);
  startsHow_ = new PanelText({}, PanelTextStyle::secondary, this);
  column->addWidget(startsHow_);
  column->addWidget(new PanelDivider(this));
  auto* row = new QHBoxLayout;
  summary_ = new PanelText({}, PanelTextStyle::heading, this);
  summary_->setSingleLine(true);
  remedy_ = new PanelButton(
      PanelButton::Kind::prominent, worded("What to Do"),
      [this] { turn(stack_->currentWidget() == list_); }, this);
  again_ = PanelButton::icon(
      QStringLiteral("arrow.clockwise"), worded("Look Again"), [this] { reload(); }, this);
  row->addWidget(summary_, 1);
  row->addWidget(again_);
  row->addWidget(remedy_);
  column->addLayout(row);
  stack_ = new QStackedWidget(this);
  list_ = scrollingArea(worded("What this computer has"), stack_);
  steps_ = scrollingArea(worded("What to do"), stack_);
  stack_->addWidget(list_);
  stack_->addWidget(steps_);
  column->addWidget(stack_, 1);
}

void ComputerPage::turn(bool toSteps) {
  if (toSteps)
    makeSteps();
  stack_->setCurrentWidget(toSteps ? steps_ : list_);
  remedy_->setTitle(toSteps ? worded("What Is There") : worded("What to Do"));
}

void ComputerPage::makeSteps() {
  showIn(steps_, [this](QVBoxLayout* column) {
    int number = 0;
    for (const auto& item : report_.items)
      if (!item.remedy.empty())
        column->addLayout(stepOf(item, ++number));
  });
}

QLayout* ComputerPage::stepOf(const DesktopReport::Item& item, int number) {
  auto* row = new QHBoxLayout;
  row->setSpacing(panel::grid);
  auto* mark = new PanelText(QString::number(number), PanelTextStyle::heading);
  mark->setFixedWidth(28);
  const auto copied = copyable(item.remedy);
  auto* copy = PanelButton::icon(
      QStringLiteral("doc.on.clipboard"), worded("Copy “{words}”", {{"words", copied}}),
      [this, copied] {
        QGuiApplication::clipboard()->setText(copied);
        services_.tell(worded("“{words}” is copied.", {{"words", copied}}), false);
      });
  row->addWidget(mark, 0, Qt::AlignTop);
  row->addLayout(
      pairOfTexts(QString::fromStdString(item.remedy), QString::fromStdString(item.sentence), true),
      1);
  row->addWidget(copy, 0, Qt::AlignTop);
  return row;
}

/// Up, Down and the like look through what is long.
void ComputerPage::keyPressEvent(QKeyEvent* event) {
  auto* bar = static_cast<QScrollArea*>(stack_->currentWidget())->verticalScrollBar();
  switch (event->key()) {
  case Qt::Key_Up:
    return bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
  case Qt::Key_Down:
    return bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
  case Qt::Key_PageUp:
    return bar->triggerAction(QAbstractSlider::SliderPageStepSub);
  case Qt::Key_PageDown:
    return bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
  case Qt::Key_Home:
    return bar->triggerAction(QAbstractSlider::SliderToMinimum);
  case Qt::Key_End:
    return bar->triggerAction(QAbstractSlider::SliderToMaximum);
  default:
    QWidget::keyPressEvent(event);
  }
}

void ComputerPage::reload() {
  summary_->setWords(worded("Looking…"));
  remedy_->setEnabled(false);
  // The words are to be seen before what takes its time.
  QTimer::singleShot(0, this, [this] {
    services_.attempt([this] { show(autostart_.status()); });
    services_.attempt([this] { show(look_()); });
  });
}

void ComputerPage::setAutostart(bool isOn) {
  // What was refused is shown as it stands.
  if (!services_.attempt([&] { show(autostart_.set(isOn)); }))
    services_.attempt([this] { show(autostart_.status()); });
}

void ComputerPage::show(const Autostart::Status& status) {
  starts_->setOn(status.isOn);
  starts_->setEnabled(status.isAvailable);
  startsHow_->setWords(QString::fromStdString(status.sentence));
}

void ComputerPage::show(const DesktopReport& report) {
  report_ = report;
  summary_->setWords(QString::fromStdString(reportSummary(report)));
  showIn(list_, [&](QVBoxLayout* column) {
    for (const auto& item : report.items) {
      auto* row = new QHBoxLayout;
      row->setSpacing(panel::grid);
      row->addWidget(new StateMark(item.state), 0, Qt::AlignTop);
      row->addLayout(pairOfTexts(QString::fromStdString(item.sentence), detailOf(item), false), 1);
      auto* word = new PanelText(wordOf(item.state), PanelTextStyle::secondary);
      word->setSingleLine(true);
      row->addWidget(word, 0, Qt::AlignTop);
      column->addLayout(row);
    }
  });
  remedy_->setEnabled(!reportRemedies(report).empty());
  const bool hasSteps = remedy_->isEnabled();
  if (stack_->currentWidget() == steps_)
    turn(hasSteps);
}

} // namespace tavrin
