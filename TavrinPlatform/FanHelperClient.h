#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace tavrin {

/// The privileged helper that alone may change the fans.
class FanHelperClient {
public:
  enum class Status { notRegistered, needsApproval, ready };
  /// A whole sentence.
  struct Refusal {
    std::string message;
    bool operator==(const Refusal&) const = default;
  };
  using Reply = std::function<void(const std::optional<Refusal>&)>;

  virtual ~FanHelperClient() = default;
  /// As last known; `observe` tells of another one.
  virtual Status status() = 0;
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
  /// Makes the helper known to the system, and takes it away again. `reply` is always called, on
  /// the main thread.
  virtual void registerHelper(Reply reply) = 0;
  virtual void unregisterHelper(Reply reply) = 0;
  /// Where the user approves the helper.
  virtual void openApprovalSettings() = 0;
  /// This process wants full speed, or does not any more. `reply` is always called, on the main
  /// thread.
  virtual void setFull(bool full, Reply reply) = 0;
};

} // namespace tavrin
