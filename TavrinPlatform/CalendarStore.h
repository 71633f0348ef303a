#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"
#include "TavrinCore/Kinds/Calendar/Reminder.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

enum class CalendarAccess { notAsked, denied, granted };

/// The user's calendars and reminders. All calls return at once; the answers come on the main
/// thread, not before the call has returned, and none once the token is gone.
class CalendarStore {
public:
  enum class Entity { events, reminders };

  struct Accounts {
    std::vector<CalendarAccount> accounts;
    /// The one that new things go to; none where the desktop names none.
    std::optional<std::string> defaultID;
  };

  virtual ~CalendarStore() = default;

  /// What is known by now; `denied` where the desktop has no calendar service or it refuses.
  virtual CalendarAccess access(Entity entity) const = 0;
  /// Asks for full access, or connects to the service.
  [[nodiscard]] virtual TokenPtr requestAccess(Entity entity,
                                               std::function<void(CalendarAccess)> answer) = 0;

  /// Calendars, or reminder lists, by account, in the desktop's order.
  [[nodiscard]] virtual TokenPtr accounts(Entity entity, std::function<void(Accounts)> answer) = 0;

  /// All events that overlap `range`, recurring ones expanded, sorted by start. `calendarIDs`
  /// none reads every calendar. All-day events start and end at midnights of the user's zone.
  [[nodiscard]] virtual TokenPtr events(DateInterval range,
                                        const std::optional<std::vector<std::string>>& calendarIDs,
                                        std::function<void(std::vector<CalendarEvent>)> answer) = 0;

  /// The reminders of one list, completed ones too, in no order.
  [[nodiscard]] virtual TokenPtr reminders(const std::string& listID,
                                           std::function<void(std::vector<Reminder>)> answer) = 0;
  /// The answer is whether it was done.
  [[nodiscard]] virtual TokenPtr setCompleted(const Reminder& reminder, bool isCompleted,
                                              std::function<void(bool)> answer) = 0;

  /// Opens the user's application for events, or for reminders.
  virtual void openApplication(Entity entity) = 0;

  /// Something in the store changed, or the service came or went.
  [[nodiscard]] virtual TokenPtr observeChanges(std::function<void()> handler) = 0;
};

} // namespace tavrin
