#include "TavrinWidgetsUI/Calendar/CalendarPanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

void showState(PanelEmptyState& empty, CalendarState state, const CalendarWords& words,
               const QString& symbol, const std::function<void()>& requestAccess) {
  empty.setSentence(symbol, words.sentence);
  empty.setHint(words.hint);
  empty.setTrouble(state == CalendarState::denied || state == CalendarState::gone);
  empty.setStep(state == CalendarState::denied     ? worded("Try Again")
                : state == CalendarState::notAsked ? worded("Allow Access")
                                                   : QString(),
                requestAccess);
}

} // namespace

CalendarPanelView::CalendarPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      list_(new PanelList(worded("Events"))), empty_(new PanelEmptyState({}, {})) {
  list_->setTall(true);
  list_->onOpen = [this](int) { source_.openCalendar(); };
  add(list_);
  add(empty_);
  setEditButton(worded("Edit Calendar…"), source_.edit);
  addFooterButton(
      new PanelButton(PanelButton::Kind::faint, worded("Open Calendar"), source_.openCalendar));
  refresh();
}

void CalendarPanelView::refresh() {
  const CalendarReading reading = source_.reading();
  setTitle(utf8(source_.name()));
  setState(utf8(reading.calendar.localText(reading.now, "EEEdMMM")));
  const bool hasItems = reading.state == CalendarState::items;
  list_->setVisible(hasItems);
  empty_->setVisible(!hasItems);
  showState(*empty_, reading.state, calendarWords(reading.state), "calendar",
            source_.requestAccess);
  std::vector<PanelRow> rows;
  for (const auto& event : reading.events) {
    PanelRow row;
    row.id = utf8(event.id) + QString::number(event.start.secondsSinceReferenceDate);
    row.title = eventTitle(event);
    row.subtitle = eventDetail(event, reading.now, reading.calendar);
    row.dot = colourFromHex(event.colorHex.value_or(""), calendarTint);
    if (!event.isAllDay && event.start.since(reading.now) <= 3600)
      row.trailing = eventWhen(event, reading.now, reading.calendar);
    rows.push_back(std::move(row));
  }
  list_->setRows(std::move(rows));
}

ReminderPanelView::ReminderPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      list_(new PanelList(worded("Reminders"))), empty_(new PanelEmptyState({}, {})) {
  list_->onOpen = [this](int row) {
    const QString id = list_->row(row).id;
    source_.toggle(id.toStdString());
  };
  add(list_);
  add(empty_);
  setEditButton(worded("Edit Reminders…"), source_.edit);
  addFooterButton(
      new PanelButton(PanelButton::Kind::faint, worded("Open Reminders"), source_.openReminders));
  refresh();
}

void ReminderPanelView::refresh() {
  const ReminderReading reading = source_.reading();
  setTitle(utf8(source_.name()));
  const bool hasItems = reading.state == CalendarState::items;
  list_->setVisible(hasItems);
  empty_->setVisible(!hasItems);
  showState(*empty_, reading.state, reminderWords(reading.state), "list.bullet",
            source_.requestAccess);
  std::vector<PanelRow> rows;
  int late = 0;
  for (const auto& reminder : reading.reminders) {
    PanelRow row;
    row.id = utf8(reminder.id);
    row.title = utf8(displayTitle(reminder));
    row.symbol = reminder.isCompleted ? "largecircle.fill.circle" : "circle";
    row.trailing = reminderWhen(reminder, reading.now, reading.calendar);
    row.isDone = reminder.isCompleted;
    late += isOverdue(reminder, reading.now, reading.calendar) ? 1 : 0;
    rows.push_back(std::move(row));
  }
  setState(late > 0 ? wordedPlural("{count} late", "{count} late", late) : QString(),
           late > 0 ? State::trouble : State::plain);
  list_->setRows(std::move(rows));
}

} // namespace tavrin
