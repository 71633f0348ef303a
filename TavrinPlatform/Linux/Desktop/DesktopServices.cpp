#include "TavrinPlatform/Linux/Desktop/DesktopServices.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/POSIX/LoadingCalendarStore.h"
#include "TavrinPlatform/POSIX/UnavailableServices.h"

namespace tavrin {

DistributedNotificationCenter& DesktopServices::notifications() {
  if (!notifications_)
    notifications_ =
        std::make_unique<BusNotificationCenter>(environment_.session, environment_.runLoop);
  return *notifications_;
}

Workspace& DesktopServices::workspace() {
  if (!workspace_)
    workspace_ = std::make_unique<LinuxWorkspace>(environment_.files, environment_.session,
                                                  environment_.system, environment_.foreground);
  return *workspace_;
}

UserNotificationCenter& DesktopServices::userNotifications() {
  if (!userNotifications_) {
    userNotifications_ = std::make_unique<LinuxNotificationCenter>(
        environment_.session, environment_.runLoop, environment_.executable, environment_.log);
    userNotifications_->onClick = environment_.show;
  }
  return *userNotifications_;
}

SoundPlayer& DesktopServices::sounds() {
  if (!sounds_)
    sounds_ = std::make_unique<CanberraPlayer>(environment_.runLoop);
  return *sounds_;
}

CalendarStore& DesktopServices::calendars() {
  if (!calendars_)
    calendars_ = std::make_unique<LoadingCalendarStore>(
        environment_.runLoop,
        [&runLoop = environment_.runLoop, log = Log(environment_.log, "calendar"),
         modules = environment_.modules]() -> LoadingCalendarStore::Factory {
          std::string error;
          const auto make =
              modules.find<CalendarStore*(RunLoop&)>("calendar", "tavrinMakeCalendarStore", error);
          return [&runLoop, log, make, error]() -> std::unique_ptr<CalendarStore> {
            if (make != nullptr)
              return std::unique_ptr<CalendarStore>(make(runLoop));
            log.error(failure("load the module calendar", error));
            return std::make_unique<UnavailableCalendarStore>(runLoop);
          };
        });
  return *calendars_;
}

MediaPlayers& DesktopServices::mediaPlayers() {
  if (!mediaPlayers_)
    mediaPlayers_ = std::make_unique<BusMediaPlayers>(environment_.session, environment_.runLoop,
                                                      environment_.clock);
  return *mediaPlayers_;
}

} // namespace tavrin
