#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"
#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/Reminder.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinPlatform/CalendarStore.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/Workspace.h"

namespace tavrin {

/// What a calendar or reminders widget can say.
enum class CalendarState { notAsked, denied, gone, empty, items };

/// What the two models share: access, being told of changes, and waking when what is shown changes
/// by the clock alone.
class CalendarStoreModel {
public:
  virtual ~CalendarStoreModel() = default;
  CalendarStoreModel(const CalendarStoreModel&) = delete;
  CalendarStoreModel& operator=(const CalendarStoreModel&) = delete;

  void start();
  void reload();
  void requestAccess();
  void openApplication() { store_.openApplication(entity_); }

  CalendarState state() const { return state_; }
  Date now() const { return clock_.now(); }
  const Calendar& calendar() const { return calendar_; }

  std::function<void()> onChange;

protected:
  CalendarStoreModel(CalendarStore& store, CalendarStore::Entity entity, Clock& clock,
                     RunLoop& runLoop, Workspace& workspace);

  /// Access is granted: fetch, then call `show`.
  virtual void fetch(const CalendarStore::Accounts& accounts) = 0;
  /// When the views differ next though nothing in the store changes.
  virtual std::optional<Date> nextChange() const = 0;
  virtual bool isEmpty() const = 0;
  /// Takes what is over out of what is shown.
  virtual void expire() {}

  void show(CalendarState state);

  CalendarStore& store_;
  TokenPtr request_;

private:
  void load();
  void changedSoon();
  void tick();
  void schedule();

  CalendarStore::Entity entity_;
  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  Calendar calendar_;
  CalendarState state_ = CalendarState::notAsked;
  TokenPtr access_;
  TokenPtr accounts_;
  TokenPtr pause_;
  TokenPtr timer_;
  std::vector<TokenPtr> observations_;
};

class CalendarModel final : public CalendarStoreModel {
public:
  /// As many as tile and panel show at the most.
  static constexpr std::size_t limit = 60;

  CalendarModel(CalendarStore& store, Clock& clock, RunLoop& runLoop, Workspace& workspace,
                const CalendarSettings& settings);

  const CalendarSettings& settings() const { return settings_; }
  void setSettings(const CalendarSettings& settings);
  /// What is going on or comes, in order.
  const std::vector<CalendarEvent>& events() const { return events_; }

private:
  void fetch(const CalendarStore::Accounts& accounts) override;
  std::optional<Date> nextChange() const override;
  bool isEmpty() const override { return events_.empty(); }
  void expire() override;

  CalendarSettings settings_;
  std::vector<CalendarEvent> events_;
};

class ReminderModel final : public CalendarStoreModel {
public:
  ReminderModel(CalendarStore& store, Clock& clock, RunLoop& runLoop, Workspace& workspace,
                const ReminderSettings& settings);

  const ReminderSettings& settings() const { return settings_; }
  void setSettings(const ReminderSettings& settings);
  const std::vector<Reminder>& reminders() const { return reminders_; }
  std::size_t openCount() const;
  /// Done, or open again. Shown at once; where the store refuses it is taken back.
  void toggle(const std::string& id);

private:
  void fetch(const CalendarStore::Accounts& accounts) override;
  std::optional<Date> nextChange() const override;
  bool isEmpty() const override { return reminders_.empty(); }

  ReminderSettings settings_;
  std::vector<Reminder> reminders_;
  TokenPtr completion_;
};

} // namespace tavrin
