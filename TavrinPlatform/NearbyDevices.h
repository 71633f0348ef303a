#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavrin {

/// A device that files can be sent to.
struct NearbyDevice {
  enum class Kind { phone, tablet, computer, other };

  /// Unlike all others of its way.
  std::string id;
  std::string name;
  Kind kind = Kind::other;
  /// The service that reaches it, by the name that users know: "Bluetooth".
  std::string way;
  bool operator==(const NearbyDevice&) const = default;
};

/// How far a sending is. Bytes are of the file that is under way.
struct SendingProgress {
  /// From 0.
  std::size_t file = 0;
  std::size_t fileCount = 0;
  std::uint64_t sent = 0;
  /// 0 where it is not known.
  std::uint64_t size = 0;
  bool operator==(const SendingProgress&) const = default;
};

struct SendingResult {
  /// The whole sentence of what went wrong; empty for nothing.
  std::string trouble;
  /// The desktop's service has taken the files and sends them by itself from here; it does not say
  /// when it is done.
  bool isHandedOver = false;
};

/// The devices around, and sending files to them. Nothing waits on the main thread.
class NearbyDevices {
public:
  virtual ~NearbyDevices() = default;

  /// Those that can be reached, by name.
  virtual const std::vector<NearbyDevice>& devices() const = 0;
  /// What can be done where there is no service, and where no device is near: whole sentences.
  struct Advice {
    std::string noService;
    std::string noDevice;
  };
  virtual Advice advice() const = 0;
  /// Whether the desktop has a service for this at all; true while that is not known.
  virtual bool isAvailable() const = 0;
  /// Looks anew, and wakes the services that sleep.
  virtual void refresh() = 0;
  /// Devices came or went. The first observer begins the watch.
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
  /// Sends regular files, in order. `done` is called once, not before this returns, unless the
  /// token goes first; then the sending is called off.
  [[nodiscard]] virtual TokenPtr send(const NearbyDevice& device,
                                      std::vector<std::filesystem::path> files,
                                      std::function<void(const SendingProgress&)> progress,
                                      std::function<void(const SendingResult&)> done) = 0;
};

} // namespace tavrin
