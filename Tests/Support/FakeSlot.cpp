/// Stands for a slot application in tests of what starts and stops them: owns its bundle's
/// identifier and notes the actions it is asked for. FAKE_SLOT_FAULT is "die" or "stubborn".
#include "TavrinPlatform/Linux/Base/ProcessFamily.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace {

int activateAction(sd_bus_message* call, void* slot, sd_bus_error*) {
  const char* action = "";
  sd_bus_message_read_basic(call, 's', &action);
  std::ofstream(std::getenv("FAKE_SLOT_NOTES"), std::ios::app)
      << action << ' ' << *static_cast<std::string*>(slot) << '\n';
  return sd_bus_reply_method_return(call, "");
}

const sd_bus_vtable table[] = {SD_BUS_VTABLE_START(0),
                               SD_BUS_METHOD("ActivateAction", "sava{sv}", "", activateAction, 0),
                               SD_BUS_VTABLE_END};

} // namespace

int main(int count, char** words) {
  if (!tavrin::joinFamily(count, words, [] {}))
    return 0;
  const std::string path = words[0];
  const auto start = path.find("Tavrin Slot ") + 12;
  std::string slot = path.substr(start, path.find(".app") - start);
  const char* fault = std::getenv("FAKE_SLOT_FAULT");
  if (fault != nullptr && std::string(fault) == "die") {
    std::fprintf(stderr, "slot %s: cannot draw\n", slot.c_str());
    return 1;
  }
  if (fault != nullptr)
    std::signal(SIGTERM, SIG_IGN);
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    pause();
    return 0;
  }
  const std::string object = "/dev/quellby/Tavrin/Slot" + slot;
  sd_bus_add_object_vtable(bus, nullptr, object.c_str(), "org.freedesktop.Application", table,
                           &slot);
  sd_bus_request_name(bus, ("dev.quellby.Tavrin.Slot" + slot).c_str(), 0);
  while (sd_bus_process(bus, nullptr) >= 0)
    sd_bus_wait(bus, UINT64_MAX);
}
