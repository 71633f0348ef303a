#pragma once

#include <functional>
#include <string>

namespace tavrin {

struct UserNotificationRequest {
  std::string identifier;
  std::string title;
  std::string body;
  /// Seconds from now, at least 1.
  double delay = 1;
  bool operator==(const UserNotificationRequest&) const = default;
};

/// Notices to the user, at a set time, also when this process is gone by then.
class UserNotificationCenter {
public:
  virtual ~UserNotificationCenter() = default;
  /// Asks for alerts with sound; `answer` may come at once, and on any thread.
  virtual void requestAuthorization(std::function<void(bool granted)> answer) = 0;
  /// Replaces a pending request of the same identifier. From any thread.
  virtual void add(const UserNotificationRequest& request) = 0;
  virtual void removePending(const std::string& identifier) = 0;
};

} // namespace tavrin
