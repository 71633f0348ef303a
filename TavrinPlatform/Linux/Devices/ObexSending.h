#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/NearbyDevices.h"

#include <memory>

namespace tavrin {

/// Files on their way to one device by Bluetooth's object push, over org.bluez.obex. Ends with its
/// token; what is under way is then called off.
class ObexSending final : public Token {
public:
  using Progress = std::function<void(const SendingProgress&)>;
  using Done = std::function<void(const SendingResult&)>;

  ObexSending(Bus& session, RunLoop& runLoop, const NearbyDevice& device,
              std::vector<std::filesystem::path> files, Progress progress, Done done);
  ~ObexSending() override;
  ObexSending(const ObexSending&) = delete;
  ObexSending& operator=(const ObexSending&) = delete;

private:
  void open();
  void sendNext();
  void changed(sd_bus_message* signal);
  /// The device has to say something now and then.
  void watchForSilence();
  void finish(const std::string& reason);
  void closeSession();

  Bus& session_;
  RunLoop& runLoop_;
  NearbyDevice device_;
  std::vector<std::filesystem::path> files_;
  Progress progress_;
  Done done_;
  SendingProgress state_;
  std::string path_;
  std::string transfer_;
  std::vector<TokenPtr> watches_;
  TokenPtr silence_;
  Lifetime alive_;
};

} // namespace tavrin
