#pragma once

#include "TavrinPlatform/NearbyDevices.h"
#include "Tests/Support/HandlerList.h"

#include <memory>

namespace tavrin::test {

/// Shows the devices in `all`; a sending goes on as the test says, through `progress` and `done`.
class FakeNearbyDevices final : public NearbyDevices {
public:
  const std::vector<NearbyDevice>& devices() const override { return all; }
  Advice advice() const override { return {"Switch a service on.", "Bring a device."}; }
  bool isAvailable() const override { return available; }
  void refresh() override { ++refreshes; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }
  TokenPtr send(const NearbyDevice& device, std::vector<std::filesystem::path> files,
                std::function<void(const SendingProgress&)> onProgress,
                std::function<void(const SendingResult&)> onDone) override {
    target = device.name;
    sent = std::move(files);
    progress = std::move(onProgress);
    done = std::move(onDone);
    struct Sending final : Token {
      explicit Sending(bool& flag) : isRunning(flag) { isRunning = true; }
      ~Sending() override { isRunning = false; }
      bool& isRunning;
    };
    return std::make_unique<Sending>(isSending);
  }

  std::vector<NearbyDevice> all;
  bool available = true;
  int refreshes = 0;
  HandlerList changes;
  std::string target;
  std::vector<std::filesystem::path> sent;
  std::function<void(const SendingProgress&)> progress;
  std::function<void(const SendingResult&)> done;
  bool isSending = false;
};

} // namespace tavrin::test
