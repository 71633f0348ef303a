#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "TavrinPlatform/Linux/FanHelper/FanService.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/signalfd.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace tavrin;
using SteadyClock = std::chrono::steady_clock;

/// Started by the bus, and gone again when nobody needs it.
constexpr auto idleLimit = std::chrono::seconds(60);
constexpr auto claimLimit = std::chrono::seconds(1);

int watchSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP})
    sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// Serves until a signal, the end of the connection, or a minute without anything to do.
void serve(sd_bus* bus, const FanService& service, int signals) {
  auto busy = SteadyClock::now();
  for (;;) {
    int worked = 0;
    while ((worked = sd_bus_process(bus, nullptr)) > 0) {
    }
    if (worked < 0 || sd_bus_is_open(bus) <= 0)
      return;
    if (!service.isIdle())
      busy = SteadyClock::now();
    if (SteadyClock::now() - busy > idleLimit)
      return;
    pollfd polled[] = {{sd_bus_get_fd(bus), static_cast<short>(sd_bus_get_events(bus)), 0},
                       {signals, POLLIN, 0}};
    poll(polled, 2, 1000);
    if (polled[1].revents != 0)
      return;
  }
}

std::filesystem::path fromEnvironment(const char* name, const char* otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : value;
}

/// Makes this process the one that switches the fans, until it ends in whatever way; false while
/// another one is. One that is about to end is waited for.
bool claimFans(const std::filesystem::path& state) {
  const int lock = open((state.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const auto start = SteadyClock::now();
  for (;;) {
    // Where nothing can be locked, no state can be written either, and no fan be forced.
    if (lock < 0 || flock(lock, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
      return true;
    if (SteadyClock::now() - start > claimLimit)
      return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

} // namespace

/// tavrin-fan-helper [--hand-back]: the latter gives back what a killed helper left forced.
int main(int argc, char** argv) {
  const auto state = fromEnvironment("TAVRIN_FAN_STATE", "/run/tavrin/fans");
  std::error_code ignored;
  std::filesystem::create_directories(state.parent_path(), ignored);
  if (!claimFans(state)) {
    std::fprintf(stderr, "Another helper switches the fans\n");
    return 1;
  }
  SysfsFans fans(fromEnvironment("TAVRIN_SYSFS_ROOT", "/"), state);
  FanControl control(fans, [](double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  });
  if (argc == 2 && std::strcmp(argv[1], "--hand-back") == 0) {
    try {
      control.setAuto();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      return 1;
    }
    return 0;
  }
  const int signals = watchSignals();
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) {
    std::fprintf(stderr, "Failed to reach the system bus\n");
    return 1;
  }
  FanService service(bus, control);
  const bool isReady = service.begin();
  if (isReady)
    serve(bus, service, signals);
  service.end();
  sd_bus_flush_close_unref(bus);
  return isReady ? 0 : 1;
}
