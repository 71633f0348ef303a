#include "TavrinPlatform/Linux/Dock/LinuxDockProcess.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/POSIX/Descriptor.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tavrin {
namespace {

constexpr std::string_view dockName = "Dock";
constexpr double killallLimit = 10;
constexpr std::size_t outputLimit = 64 * 1024;
/// As a shell answers for a program that a signal ended.
constexpr int signalledStatus = 128;

double seconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

/// The whole of a file in /proc; empty once the process is gone.
std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The fields of a process's "stat" from the third on: its name, in brackets, may hold anything.
std::vector<std::string> statFields(const std::string& stat) {
  const auto end = stat.rfind(')');
  std::istringstream rest(end == std::string::npos ? "" : stat.substr(end + 1));
  return {std::istream_iterator<std::string>(rest), {}};
}

bool belongsTo(const std::string& status, uid_t user) {
  const auto line = status.find("\nUid:");
  std::istringstream rest(line == std::string::npos ? "" : status.substr(line + 5));
  uid_t real = 0;
  return rest >> real && real == user;
}

pid_t launch(const std::string& program, const Pipe& output, const Pipe& errors) {
  if (!output.reading || !errors.reading)
    throw std::system_error(errno, std::generic_category());
  SpawnRequest request{program, {std::string(dockName)}};
  request.output = output.writing.number();
  request.errors = errors.writing.number();
  const pid_t child = spawn(request);
  if (child < 0) {
    const auto reason = std::generic_category().message(-child);
    throw FileError(failure("start " + program, reason), reason);
  }
  return child;
}

/// Reads both pipes to their ends, at most until `deadline`; keeps what came on the second.
std::string drain(const Pipe& output, const Pipe& errors, double deadline) {
  std::string kept;
  std::array<pollfd, 2> waiting = {pollfd{output.reading.number(), POLLIN, 0},
                                   pollfd{errors.reading.number(), POLLIN, 0}};
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    const double left = deadline - seconds(CLOCK_MONOTONIC);
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
    if (seconds(CLOCK_MONOTONIC) >= deadline)
      ::kill(child, SIGKILL);
    ::usleep(2000);
  }
}

} // namespace

std::optional<DockProcess::Running> LinuxDockProcess::running() {
  std::optional<int> lowest;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(processes_, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto name = entry->path().filename().string();
    int number = 0;
    if (std::from_chars(name.data(), name.data() + name.size(), number).ptr !=
            name.data() + name.size() ||
        (lowest && number > *lowest))
      continue;
    if (contents(entry->path() / "comm") != std::string(dockName) + "\n" ||
        !belongsTo(contents(entry->path() / "status"), ::getuid()))
      continue;
    const auto fields = statFields(contents(entry->path() / "stat"));
    // One that has ended and waits for its parent to notice runs no more.
    if (!fields.empty() && fields[0] != "Z" && fields[0] != "X")
      lowest = number;
  }
  return lowest ? std::optional(Running{*lowest, age(*lowest)}) : std::nullopt;
}

std::optional<double> LinuxDockProcess::age(int process) const {
  // Field 22: clock ticks from the system's start to the process's.
  constexpr std::size_t startField = 22 - 3;
  const auto fields = statFields(contents(processes_ / std::to_string(process) / "stat"));
  if (fields.size() <= startField)
    return std::nullopt;
  double ticks = 0;
  const auto& text = fields[startField];
  if (std::from_chars(text.data(), text.data() + text.size(), ticks).ec != std::errc())
    return std::nullopt;
  return seconds(CLOCK_BOOTTIME) - ticks / double(::sysconf(_SC_CLK_TCK));
}

DockProcess::KillResult LinuxDockProcess::killAll() {
  Pipe output = Pipe::make();
  Pipe errors = Pipe::make();
  const pid_t child = launch(killall_.string(), output, errors);
  output.writing.close();
  errors.writing.close();
  const double deadline = seconds(CLOCK_MONOTONIC) + killallLimit;
  auto text = drain(output, errors, deadline);
  KillResult result{waitFor(child, deadline), std::nullopt};
  if (isUTF8(text))
    result.standardError = std::move(text);
  return result;
}

double LinuxDockProcess::uptime() {
  return seconds(CLOCK_MONOTONIC);
}

void LinuxDockProcess::sleep(double duration) {
  const double whole = std::max(duration, 0.0);
  timespec left{static_cast<time_t>(whole),
                static_cast<long>((whole - double(time_t(whole))) * 1e9)};
  while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

} // namespace tavrin
