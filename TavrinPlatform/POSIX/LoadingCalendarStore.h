#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/CalendarStore.h"

namespace tavrin {

/// A store whose adapter is loaded in the background: its libraries take longer to load than a
/// tile may stand still. What is asked meanwhile is passed on once the adapter is there.
class LoadingCalendarStore final : public CalendarStore {
public:
  using Factory = std::function<std::unique_ptr<CalendarStore>()>;

  /// Begins at once: `load` runs on a background thread, and what it returns then on the main
  /// thread makes the adapter.
  LoadingCalendarStore(RunLoop& runLoop, std::function<Factory()> load);

  CalendarAccess access(Entity entity) const override;
  [[nodiscard]] TokenPtr requestAccess(Entity entity,
                                       std::function<void(CalendarAccess)> answer) override;
  [[nodiscard]] TokenPtr accounts(Entity entity, std::function<void(Accounts)> answer) override;
  [[nodiscard]] TokenPtr events(DateInterval range,
                                const std::optional<std::vector<std::string>>& calendarIDs,
                                std::function<void(std::vector<CalendarEvent>)> answer) override;
  [[nodiscard]] TokenPtr reminders(const std::string& listID,
                                   std::function<void(std::vector<Reminder>)> answer) override;
  [[nodiscard]] TokenPtr setCompleted(const Reminder& reminder, bool isCompleted,
                                      std::function<void(bool)> answer) override;
  void openApplication(Entity entity) override;
  [[nodiscard]] TokenPtr observeChanges(std::function<void()> handler) override;

private:
  [[nodiscard]] TokenPtr forward(std::function<TokenPtr(CalendarStore&)> call);

  std::unique_ptr<CalendarStore> adapter_;
  /// In the order of their asking.
  std::vector<std::function<void(CalendarStore&)>> waiting_;
  Lifetime alive_;
};

} // namespace tavrin
