#include "TavrinSettings/Computer/ComputerPage.h"

#include "TavrinCore/Settings/SettingText.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

using State = DesktopReport::State;

QString symbolOf(State state) {
  return state == State::good      ? QStringLiteral("checkmark.circle.fill")
         : state == State::limited ? QStringLiteral("info.circle")
                                   : QStringLiteral("exclamationmark.triangle.fill");
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
      PanelButton::Kind::prominent, worded("What to Do"), [this] { showRemedies(); }, this);
  again_ = PanelButton::icon(
      QStringLiteral("arrow.clockwise"), worded("Look Again"), [this] { reload(); }, this);
  row->addWidget(summary_, 1);
  row->addWidget(again_);
  row->addWidget(remedy_);
  column->addLayout(row);
  remedies_ = new PanelText({}, PanelTextStyle::body, this);
  remedies_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  remedies_->hide();
  column->addWidget(remedies_);
  list_ = new PanelList(worded("What this computer has"), this);
  list_->setTall(true);
  column->addWidget(list_, 1);
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
    rows.push_back(row);
  }
  list_->setRows(rows);
  remedy_->setEnabled(!reportRemedies(report).empty());
  if (remedies_->isVisible())
    showRemedies();
}

void ComputerPage::showRemedies() {
  remedies_->setWords(QString::fromStdString(reportRemedies(report_)));
  remedies_->setVisible(!remedies_->text().isEmpty());
  remedies_->setFocus(Qt::OtherFocusReason);
}

} // namespace tavrin
