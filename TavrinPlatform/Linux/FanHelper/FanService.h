#pragma once

#include "TavrinCore/Kinds/Fans/FanControl.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <sys/types.h>
#include <systemd/sd-bus.h>

namespace tavrin {

/// The fans on the system bus: one message, "SetFull", for callers whom polkit lets. Each caller
/// has one hold, which ends with the caller's connection.
class FanService {
public:
  static constexpr const char* serviceName = "dev.quellby.tavrin.fan-helper";
  static constexpr const char* path = "/dev/quellby/tavrin/FanHelper";
  static constexpr const char* interface = "dev.quellby.tavrin.FanHelper";
  static constexpr const char* action = "dev.quellby.tavrin.set-fans";
  static constexpr const char* errorName = "dev.quellby.tavrin.Error.Fans";
  /// Questions of one user that wait for polkit.
  static constexpr int mostPending = 16;

  /// Both outlive this.
  FanService(sd_bus* bus, FanControl& control) : bus_(bus), control_(control) {}
  FanService(const FanService&) = delete;
  FanService& operator=(const FanService&) = delete;

  /// Hands back what a former helper left forced, then answers on the bus. False where the name is
  /// taken or the bus refuses.
  bool begin();
  /// Gives all fans back; for the end, whatever brought it about.
  void end();
  /// Nobody holds, nobody waits.
  bool isIdle() const { return !hold_.isHolding() && pending_.empty(); }

private:
  struct Request {
    FanService* service;
    std::string caller;
    uid_t user;
    bool isFull;
    std::shared_ptr<sd_bus_message> message;
  };
  static int setFull(sd_bus_message* message, void* service, sd_bus_error* error);
  static int authorized(sd_bus_message* reply, void* request, sd_bus_error*);
  static int ownerChanged(sd_bus_message* message, void* service, sd_bus_error*);
  static int prepareForSleep(sd_bus_message* message, void* service, sd_bus_error*);
  static const sd_bus_vtable vtable[];

  int ask(sd_bus_message* message, const std::string& caller, bool isFull, sd_bus_error* error);
  /// The question of an unheard caller to polkit. False where it cannot be asked.
  bool askPolkit(const Request& request);
  int pendingOf(uid_t user) const;
  /// A later message of the caller takes the place of the one that waits.
  void overtake(const std::string& caller);
  void admit(const Request& request);
  void refuse(const Request& request, const std::string& sentence);
  void drop(const std::string& caller);
  void sleepChanged(bool isGoingToSleep);
  void delaySleep();
  void apply(FanHold::Change change);
  /// The same where nobody can be told of a failure.
  void applyQuietly(FanHold::Change change);
  int idOf(const std::string& caller);

  sd_bus* bus_;
  FanControl& control_;
  FanHold hold_;
  std::map<std::string, int> callers_;
  int lastId_ = 0;
  /// At most one for each caller.
  std::map<std::string, Request> pending_;
  int sleepDelay_ = -1;
};

} // namespace tavrin
