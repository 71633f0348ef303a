#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/UserNotificationCenter.h"

#include <memory>
#include <optional>
#include <string>

namespace tavrin {

/// The notice that a run will have ended, for the case that this process is gone by then. It stays
/// with the desktop when this object goes.
class EndNotification {
public:
  EndNotification(UserNotificationCenter& center, Clock& clock, std::string identifier);
  ~EndNotification();
  EndNotification(const EndNotification&) = delete;
  EndNotification& operator=(const EndNotification&) = delete;

  /// Replaces the notice by one at `end`; by none where `end` is missing or past, or where the
  /// user does not allow it.
  void schedule(std::optional<Date> end, const std::string& title, const std::string& body);
  void withdraw();

private:
  UserNotificationCenter& center_;
  Clock& clock_;
  std::string identifier_;
  /// Guards against a permission that comes when the notice is no longer wanted. Its lock is held
  /// while a notice is added, on whatever thread.
  struct Wish;
  std::shared_ptr<Wish> wish_;
};

} // namespace tavrin
