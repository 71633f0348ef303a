#include "TavrinPlatform/Linux/Input/InputGuard.h"

#include "TavrinPlatform/Linux/Input/InputGrab.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

namespace tavrin {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

/// A grab of another program that is only brief (an open menu, a click that is not over yet).
constexpr double patienceWithOthers = 1;
constexpr auto retryPause = std::chrono::milliseconds(40);

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

double since(SteadyClock::time_point start) {
  return Seconds(SteadyClock::now() - start).count();
}

char answer(InputGrab::Result result) {
  switch (result) {
  case InputGrab::Result::holding:
    return guard::holding;
  case InputGrab::Result::busy:
    return guard::busy;
  case InputGrab::Result::notPermitted:
    return guard::notPermitted;
  case InputGrab::Result::refused:
    break;
  }
  return guard::refused;
}

/// False when nobody reads any more. What does not fit is dropped: nothing may block here.
bool tell(const std::vector<char>& bytes) {
  return bytes.empty() || ::write(STDOUT_FILENO, bytes.data(), bytes.size()) >= 0 ||
         errno == EAGAIN;
}

/// Moves of the pointer come in hundreds; one of a round tells as much.
void thinOut(std::vector<char>& types) {
  constexpr char moved = 5;
  types.erase(std::unique(types.begin(), types.end(),
                          [](char a, char b) { return a == moved && b == moved; }),
              types.end());
}

InputGrab::Result beginPatiently(InputGrab& grab, bool locksPointer) {
  const auto start = SteadyClock::now();
  auto result = grab.begin(locksPointer);
  while (result == InputGrab::Result::busy && since(start) < patienceWithOthers) {
    std::this_thread::sleep_for(retryPause);
    result = grab.begin(locksPointer);
  }
  return result;
}

/// Ends this process with its parent, even while it is stopped. False where the parent that it was
/// meant for has gone already.
bool followParent(pid_t parent) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  return ::getppid() == parent;
}

/// Holds until the slot goes or is silent, the hold is lost, or the time is over.
void holdOn(InputGrab& grab, double limit) {
  const auto start = SteadyClock::now();
  auto heard = start;
  auto renewed = start;
  auto told = start - std::chrono::hours(1);
  while ((limit <= 0 || since(start) < limit) && since(heard) < guard::silence) {
    std::vector<char> out;
    if (since(told) >= guard::beat) {
      told = SteadyClock::now();
      out.push_back(guard::alive);
    }
    if (since(renewed) >= guard::look) {
      renewed = SteadyClock::now();
      if (!grab.renew())
        return;
    }
    if (!grab.read(out))
      return;
    thinOut(out);
    if (!tell(out))
      return;
    std::vector<pollfd> polled{{STDIN_FILENO, POLLIN, 0}};
    for (const int descriptor : grab.descriptors())
      polled.push_back({descriptor, POLLIN, 0});
    ::poll(polled.data(), polled.size(), static_cast<int>(guard::beat * 500));
    if ((polled[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
      char bytes[64];
      const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
      if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        return;
      heard = SteadyClock::now();
    }
  }
}

} // namespace

InputGuardMeans inputGuardMeans() {
  // An X server inside of a Wayland session can keep input from X programs alone.
  if (isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
    return InputGuardMeans::x11;
  return ::access("/dev/input", R_OK) == 0 ? InputGuardMeans::evdev : InputGuardMeans::none;
}

std::optional<int> runInputGuardIfAsked(int argc, char** argv) {
  if (argc < 2 || std::strcmp(argv[1], guard::argument) != 0)
    return std::nullopt;
  if (argc != 5)
    return 2;
  if (!followParent(std::atoi(argv[4])))
    return 1;
  // Ended by the slot's silence or by its end, not with its terminal.
  ::setsid();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGHUP, SIG_IGN);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO})
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
  const bool locksPointer = std::string_view(argv[2]) == "all";
  const double limit = std::atof(argv[3]);
  const auto means = inputGuardMeans();
  if (means == InputGuardMeans::none)
    return tell({guard::notPermitted}) ? 0 : 1;
  const auto grab = means == InputGuardMeans::x11 ? InputGrab::x11() : InputGrab::evdev();
  const auto result = beginPatiently(*grab, locksPointer);
  if (tell({answer(result)}) && result == InputGrab::Result::holding)
    holdOn(*grab, limit);
  return 0;
}

} // namespace tavrin
