#include "TavrinSettings/Computer/ComputerPage.h"

#include "TavrinCore/Settings/SettingText.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollArea>
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
  list_ = new PanelList(worded("What this computer has"), stack_);
  list_->setTall(true);
  steps_ = new QScrollArea(stack_);
  steps_->setAccessibleName(worded("What to do"));
  steps_->setFrameShape(QFrame::NoFrame);
  steps_->setWidgetResizable(true);
  steps_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  steps_->setFocusPolicy(Qt::NoFocus);
  stack_->addWidget(list_);
  stack_->addWidget(steps_);
  column->addWidget(stack_, 1);
}

void ComputerPage::turn(bool toSteps) {
  if (toSteps)
    makeSteps();
  stack_->setCurrentWidget(toSteps ? static_cast<QWidget*>(steps_) : list_);
  remedy_->setTitle(toSteps ? worded("What Is There") : worded("What to Do"));
}

void ComputerPage::makeSteps() {
  auto* inner = new QWidget;
  auto* column = new QVBoxLayout(inner);
  column->setContentsMargins(0, panel::grid, panel::grid, panel::grid);
  column->setSpacing(panel::padding);
  int number = 0;
  for (const auto& item : report_.items) {
    if (item.remedy.empty())
      continue;
    const auto remedy = QString::fromStdString(item.remedy);
    auto* row = new QHBoxLayout;
    row->setSpacing(panel::grid);
    auto* mark = new PanelText(QString::number(++number), PanelTextStyle::heading);
    mark->setFixedWidth(28);
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    auto* step = new PanelText(remedy, PanelTextStyle::body);
    step->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    words->addWidget(step);
    words->addWidget(new PanelText(QString::fromStdString(item.sentence), PanelTextStyle::caption));
    const auto copied = copyable(item.remedy);
    auto* copy = PanelButton::icon(QStringLiteral("doc.on.clipboard"),
                                   worded("Copy “{words}”", {{"words", copied}}), [this, copied] {
                                     QGuiApplication::clipboard()->setText(copied);
                                     services_.tell(worded("“{words}” is copied.",
                                                           {{"words", copied}}),
                                                    false);
                                   });
    row->addWidget(mark, 0, Qt::AlignTop);
    row->addLayout(words, 1);
    row->addWidget(copy, 0, Qt::AlignTop);
    column->addLayout(row);
  }
  column->addStretch(1);
  inner->setAutoFillBackground(false);
  steps_->setWidget(inner);
  steps_->viewport()->setAutoFillBackground(false);
  inner->setAutoFillBackground(false);
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
  std::vector<PanelRow> rows;
  for (const auto& item : report.items) {
    PanelRow row;
    row.id = QString::fromStdString(item.topic);
    row.title = QString::fromStdString(item.sentence);
    row.subtitle = detailOf(item);
    row.symbol = symbolOf(item.state);
    row.trailing = wordOf(item.state);
    rows.push_back(row);
  }
  list_->setRows(rows);
  remedy_->setEnabled(!reportRemedies(report).empty());
  const bool hasSteps = remedy_->isEnabled();
  if (stack_->currentWidget() == steps_)
    turn(hasSteps);
}

} // namespace tavrin
