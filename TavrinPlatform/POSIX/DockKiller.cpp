#include "TavrinPlatform/POSIX/DockKiller.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>

namespace tavrin {
namespace {

constexpr double killallLimit = 10;
constexpr std::size_t outputLimit = 64 * 1024;
/// As a shell answers for a program that a signal ended.
constexpr int signalledStatus = 128;

double monotonicSeconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

pid_t launch(const std::string& program, const char* name, const Pipe& output, const Pipe& errors) {
  if (!output.reading || !errors.reading)
    throw std::system_error(errno, std::generic_category());
  SpawnRequest request{program, {name}};
  request.output = output.writing.number();
  request.errors = errors.writing.number();
  const pid_t child = spawn(request);
  if (child < 0) {
    const auto reason = std::generic_category().message(-child);
    throw FileError(failure(translated("start {program}", {{"program", program}}), reason), reason);
  }
  return child;
}

/// Reads both pipes to their ends, at most until `deadline`; keeps what came on the second.
std::string drain(const Pipe& output, const Pipe& errors, double deadline) {
  std::string kept;
  std::array<pollfd, 2> waiting = {pollfd{output.reading.number(), POLLIN, 0},
                                   pollfd{errors.reading.number(), POLLIN, 0}};
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    const double left = deadline - monotonicSeconds();
    if (left <= 0)
      break;
    const int count = ::poll(waiting.data(), waiting.size(), static_cast<int>(left * 1000) + 1);
    if (count < 0 && errno != EINTR)
      break;
    for (auto& one : waiting) {
      std::array<char, 4096> buffer{};
      const ssize_t size =
          one.fd >= 0 && count > 0 && one.revents != 0 ? ::read(one.fd, buffer.data(), 4096) : -1;
      if (size > 0 && one.fd == errors.reading.number() && kept.size() < outputLimit)
        kept.append(buffer.data(), static_cast<std::size_t>(size));
      else if (size == 0)
        one.fd = -1;
    }
  }
  return kept;
}

int waitFor(pid_t child, double deadline) {
  int status = 0;
  while (true) {
    const pid_t ended = ::waitpid(child, &status, WNOHANG);
    if (ended == child)
      return WIFEXITED(status) ? WEXITSTATUS(status) : signalledStatus + WTERMSIG(status);
    if (ended < 0 && errno != EINTR)
      return signalledStatus;
    if (monotonicSeconds() >= deadline)
      ::kill(child, SIGKILL);
    ::usleep(2000);
  }
}

} // namespace

DockProcess::KillResult DockKiller::killAll() {
  Pipe output = Pipe::make();
  Pipe errors = Pipe::make();
  const pid_t child = launch(killall_.string(), dockName, output, errors);
  output.writing.close();
  errors.writing.close();
  const double deadline = monotonicSeconds() + killallLimit;
  auto text = drain(output, errors, deadline);
  KillResult result{waitFor(child, deadline), std::nullopt};
  if (isUTF8(text))
    result.standardError = std::move(text);
  return result;
}

double DockKiller::uptime() {
  return monotonicSeconds();
}

void DockKiller::sleep(double duration) {
  const double whole = std::max(duration, 0.0);
  timespec left{static_cast<time_t>(whole),
                static_cast<long>((whole - double(time_t(whole))) * 1e9)};
  while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

} // namespace tavrin
