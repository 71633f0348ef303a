#include "TavrinWidgetsUI/Calendar/CalendarModel.h"

#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"

#include <algorithm>

namespace tavrin {
namespace {

using Entity = CalendarStore::Entity;

/// A change is followed by others: a move is a removal and an addition.
constexpr double changePause = 0.25;
constexpr double countdown = 3600;
constexpr double day = 86'400;

} // namespace

CalendarStoreModel::CalendarStoreModel(CalendarStore& store, Entity entity, Clock& clock,
                                       RunLoop& runLoop, Workspace& workspace)
    : store_(store), entity_(entity), clock_(clock), runLoop_(runLoop), workspace_(workspace) {}

void CalendarStoreModel::start() {
  observations_.push_back(store_.observeChanges([this] { changedSoon(); }));
  const auto timeJumped = [this] {
    calendar_ = Calendar();
    reload();
  };
  observations_.push_back(workspace_.observeWake(timeJumped));
  observations_.push_back(workspace_.observeDayChange(timeJumped));
  observations_.push_back(workspace_.observeClockChange(timeJumped));
  reload();
}

void CalendarStoreModel::changedSoon() {
  if (!pause_)
    pause_ = runLoop_.after(changePause, [this] {
      const auto ended = std::move(pause_);
      reload();
    });
}

void CalendarStoreModel::reload() {
  if (store_.access(entity_) == CalendarAccess::granted)
    load();
  else
    requestAccess();
}

void CalendarStoreModel::requestAccess() {
  access_ = store_.requestAccess(entity_, [this](CalendarAccess access) {
    const auto ended = std::move(access_);
    if (access == CalendarAccess::granted)
      load();
    else
      show(access == CalendarAccess::denied ? CalendarState::denied : CalendarState::notAsked);
  });
}

void CalendarStoreModel::load() {
  accounts_ = store_.accounts(entity_, [this](const CalendarStore::Accounts& accounts) {
    const auto ended = std::move(accounts_);
    fetch(accounts);
  });
}

void CalendarStoreModel::show(CalendarState state) {
  state_ = state == CalendarState::items && isEmpty() ? CalendarState::empty : state;
  schedule();
  if (onChange)
    onChange();
}

void CalendarStoreModel::schedule() {
  timer_.reset();
  const auto next = state_ == CalendarState::items ? nextChange() : std::nullopt;
  if (next)
    timer_ = runLoop_.after(std::clamp(next->since(now()) + 0.01, 0.05, day), [this] { tick(); });
}

void CalendarStoreModel::tick() {
  expire();
  show(CalendarState::items);
}

CalendarModel::CalendarModel(CalendarStore& store, Clock& clock, RunLoop& runLoop,
                             Workspace& workspace, const CalendarSettings& settings)
    : CalendarStoreModel(store, Entity::events, clock, runLoop, workspace), settings_(settings) {}

void CalendarModel::setSettings(const CalendarSettings& settings) {
  const bool readsOther = settings.daysAhead != settings_.daysAhead ||
                          settings.showsAllDay != settings_.showsAllDay ||
                          settings.calendars != settings_.calendars;
  settings_ = settings;
  if (readsOther)
    reload();
}

void CalendarModel::fetch(const CalendarStore::Accounts& accounts) {
  const auto chosen = settings_.calendars.resolve(choices(accounts.accounts));
  if (chosen && chosen->empty()) {
    request_.reset();
    events_.clear();
    show(CalendarState::gone);
    return;
  }
  // Today is the first of the days ahead.
  const Date end =
      calendar().addingDays(std::clamp(settings_.daysAhead, 1, 366), calendar().startOfDay(now()));
  request_ = store_.events({now(), end}, chosen, [this](std::vector<CalendarEvent> events) {
    const auto ended = std::move(request_);
    std::erase_if(events, [this](const CalendarEvent& event) {
      return event.isAllDay && !settings_.showsAllDay;
    });
    UpNext::sort(events, now(), calendar());
    events_ = UpNext::select(events, now(), limit);
    show(CalendarState::items);
  });
}

void CalendarModel::expire() {
  const auto count = events_.size();
  events_ = UpNext::select(events_, now(), limit);
  // Of a full list the rest was not kept.
  if (count == limit && events_.size() < limit)
    reload();
}

/// Starts, ends, and the minutes of the last hour before a start.
std::optional<Date> CalendarModel::nextChange() const {
  std::optional<Date> next;
  const Date now = this->now();
  const auto consider = [&](Date moment) {
    if (moment > now && (!next || moment < *next))
      next = moment;
  };
  for (const auto& event : events_) {
    consider(event.end);
    if (event.isAllDay || event.start <= now)
      continue;
    const auto minutes = static_cast<double>(UpNext::minutesUntil(event, now));
    consider(minutes <= countdown / 60 ? event.start - (minutes - 1) * 60
                                       : event.start - countdown);
    consider(event.start);
  }
  return next;
}

ReminderModel::ReminderModel(CalendarStore& store, Clock& clock, RunLoop& runLoop,
                             Workspace& workspace, const ReminderSettings& settings)
    : CalendarStoreModel(store, Entity::reminders, clock, runLoop, workspace), settings_(settings) {
}

void ReminderModel::setSettings(const ReminderSettings& settings) {
  const bool readsOther = settings.listID != settings_.listID ||
                          settings.daysAhead != settings_.daysAhead ||
                          settings.showsCompleted != settings_.showsCompleted;
  settings_ = settings;
  if (readsOther)
    reload();
}

void ReminderModel::fetch(const CalendarStore::Accounts& accounts) {
  const auto lists = choices(accounts.accounts);
  const auto wanted = settings_.listID ? settings_.listID : accounts.defaultID;
  const bool isThere = wanted && std::any_of(lists.begin(), lists.end(),
                                             [&](const auto& list) { return list.id == *wanted; });
  if (!isThere) {
    request_.reset();
    reminders_.clear();
    show(CalendarState::items);
    return;
  }
  request_ = store_.reminders(*wanted, [this](std::vector<Reminder> reminders) {
    const auto ended = std::move(request_);
    reminders_ = selectReminders(std::move(reminders), settings_, now(), calendar());
    show(CalendarState::items);
  });
}

std::optional<Date> ReminderModel::nextChange() const {
  std::optional<Date> next;
  for (const auto& reminder : reminders_)
    if (!reminder.isCompleted && !reminder.isAllDay && reminder.due && *reminder.due > now() &&
        (!next || *reminder.due < *next))
      next = reminder.due;
  return next;
}

std::size_t ReminderModel::openCount() const {
  return static_cast<std::size_t>(
      std::count_if(reminders_.begin(), reminders_.end(),
                    [](const Reminder& reminder) { return !reminder.isCompleted; }));
}

void ReminderModel::toggle(const std::string& id) {
  const auto found = std::find_if(reminders_.begin(), reminders_.end(),
                                  [&](const Reminder& reminder) { return reminder.id == id; });
  if (found == reminders_.end())
    return;
  const Reminder before = *found;
  found->isCompleted = !before.isCompleted;
  found->completedAt = found->isCompleted ? std::optional(now()) : std::nullopt;
  // What the store then has is read, whether it took the change or not.
  completion_ = store_.setCompleted(before, !before.isCompleted, [this](bool) {
    const auto ended = std::move(completion_);
    reload();
  });
  show(CalendarState::items);
}

} // namespace tavrin
