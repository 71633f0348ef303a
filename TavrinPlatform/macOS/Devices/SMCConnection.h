#pragma once

#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/macOS/Devices/AppleSMC.h"

#include <IOKit/IOKitLib.h>

#include <mutex>

namespace tavrin {

/// The controller through the kernel's service "AppleSMC". Connected when first used; one call at a
/// time, from any thread. Reading needs no rights, writing needs the superuser's.
class SMCConnection final : public SMCAccess {
public:
  SMCConnection() = default;
  ~SMCConnection() override;
  SMCConnection(const SMCConnection&) = delete;
  SMCConnection& operator=(const SMCConnection&) = delete;

  SMCValue read(const std::string& key) override;
  void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override;

private:
  using Failure = FanError (*)(std::string_view key, std::string_view reason);

  void open();
  /// Sends `message` and gives the answer; throws what `failure` makes of the reason.
  smc::Message call(const std::string& key, const smc::Message& message, Failure failure);
  smc::Message send(const std::string& key, const smc::Message& message, Failure failure);
  smc::Message info(const std::string& key, Failure failure);

  std::mutex mutex_;
  io_connect_t connection_ = IO_OBJECT_NULL;
  bool isWoken_ = false;
};

} // namespace tavrin
