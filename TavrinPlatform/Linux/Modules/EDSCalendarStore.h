#pragma once

#include "TavrinPlatform/CalendarStore.h"
#include "TavrinPlatform/Linux/Modules/CalendarObjects.h"
#include "TavrinPlatform/Linux/Modules/CalendarThread.h"

#include <atomic>
#include <map>
#include <mutex>

namespace tavrin {

/// Evolution Data Server, through libecal. All its calls and signals are on one thread of its own;
/// `access` alone is answered from what that thread found last.
class EDSCalendarStore final : public CalendarStore {
public:
  explicit EDSCalendarStore(RunLoop& runLoop) : runLoop_(runLoop) {}
  ~EDSCalendarStore() override;

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
  /// A calendar that is open, and the view that tells of its changes.
  struct Client {
    GOwned<ECalClient> client;
    GOwned<ECalClientView> view;
  };
  using Handlers = std::map<int, std::shared_ptr<std::function<void()>>>;

  /// `work` on the calendar thread, its result to `answer` on the main thread.
  template <class Result>
  TokenPtr ask(std::function<Result()> work, std::function<void(Result)> answer);

  // On the calendar thread.
  bool connect();
  void watchServer();
  Accounts readAccounts(Entity entity) const;
  ECalClient* open(const std::string& uid, Entity entity);
  void watch(Client& client);
  void readEvents(const std::string& uid, DateInterval range, std::vector<CalendarEvent>& events);
  std::vector<CalendarEvent> readEvents(DateInterval range,
                                        const std::optional<std::vector<std::string>>& chosen);
  std::vector<Reminder> readReminders(const std::string& listID);
  bool writeCompleted(const Reminder& reminder, bool isCompleted);
  void tellChanged();
  static void changed(gpointer, gpointer, gpointer store);
  static void nameChanged(GDBusConnection*, const char* sender, const char* path,
                          const char* interface, const char* signal, GVariant* words,
                          gpointer store);
  static void died(ECalClient* client, gpointer store);

  RunLoop& runLoop_;
  std::atomic<CalendarAccess> access_ = CalendarAccess::notAsked;
  GOwned<GDBusConnection> bus_;
  guint serverWatch_ = 0;
  GOwned<ESourceRegistry> registry_;
  std::map<std::string, Client> clients_;
  /// For the main thread.
  std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
  int nextHandler_ = 0;
  std::unique_ptr<CalendarThread> thread_;
};

} // namespace tavrin
