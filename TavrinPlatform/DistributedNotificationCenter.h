#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace tavrin {

/// Tells every process of this user that something happened. The name is the whole message but
/// for an optional object text. Posts leave at once, and are told from the event loop, to the
/// poster's own observers too: never before `post` has returned. Where there is no way between
/// processes, posts reach this process alone.
class DistributedNotificationCenter {
public:
  using Handler = std::function<void(const std::optional<std::string>& object)>;

  virtual ~DistributedNotificationCenter() = default;
  virtual void post(const std::string& name, const std::optional<std::string>& object) = 0;
  void post(const std::string& name) { post(name, std::nullopt); }
  /// Calls `handler` on the main thread for every post of `name` while the token lives.
  [[nodiscard]] virtual TokenPtr observe(const std::string& name, Handler handler) = 0;
};

} // namespace tavrin
