#include "TavrinPlatform/Linux/Applications/LinuxRunningApplications.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

/// Seconds until a bus call counts as unanswered. An activation may start a program.
constexpr double queryLimit = 2;
constexpr double activationLimit = 10;

/// /proc appends this to a program whose file was replaced since, as an installation does.
constexpr std::string_view replacedMark = " (deleted)";

[[noreturn]] void throwLaunchFailure(const std::filesystem::path& program, int error) {
  throw FileError(failure(fmt::format("start \"{}\"", program.string()), std::strerror(error)));
}

/// Runs in the grandchild: only calls that are safe after a fork of a threaded process.
[[noreturn]] void becomeProgram(char* const* arguments, char* const* environment, int log,
                                int report) {
  setsid();
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(log, STDOUT_FILENO);
  dup2(log, STDERR_FILENO);
  execve(arguments[0], arguments, environment);
  const int error = -errno;
  [[maybe_unused]] const auto written = write(report, &error, sizeof error);
  _exit(127);
}

bool isOwn(const std::filesystem::path& folder) {
  struct stat status {};
  return stat(folder.c_str(), &status) == 0 && status.st_uid == geteuid();
}

/// A process that ended and waits for its parent to notice still has a folder in /proc.
bool isZombie(int process) {
  std::array<char, 512> text{};
  const Descriptor file(open(fmt::format("/proc/{}/stat", process).c_str(), O_RDONLY | O_CLOEXEC));
  const auto length = read(file.number(), text.data(), text.size());
  if (length <= 0)
    return true;
  const std::string_view line(text.data(), static_cast<std::size_t>(length));
  const auto end = line.rfind(") ");
  return end == std::string_view::npos || line.substr(end + 2, 1) == "Z";
}

std::string firstArgument(const std::filesystem::path& processFolder) {
  std::array<char, 4096> text{};
  const Descriptor file(open((processFolder / "cmdline").c_str(), O_RDONLY | O_CLOEXEC));
  return read(file.number(), text.data(), text.size() - 1) > 0 ? text.data() : "";
}

} // namespace

bool LinuxRunningApplications::knowsIdentifiers() {
  return bus_ != nullptr && bus_->isOpen();
}

std::optional<int> LinuxRunningApplications::processOwning(const std::string& bundleIdentifier) {
  if (!knowsIdentifiers())
    return std::nullopt;
  auto call = bus_->method(busDaemon, "GetConnectionUnixProcessID");
  call.append("s", bundleIdentifier.c_str());
  const auto answer = bus_->ask(call, queryLimit);
  std::uint32_t process = 0;
  if (!answer || sd_bus_message_read(answer.get(), "u", &process) < 0)
    return std::nullopt;
  return static_cast<int>(process);
}

bool LinuxRunningApplications::claimIdentifier(const std::string& bundleIdentifier) {
  return knowsIdentifiers() &&
         sd_bus_request_name(bus_->handle(), bundleIdentifier.c_str(), 0) >= 0;
}

bool LinuxRunningApplications::canStart(const std::string& bundleIdentifier) {
  if (!knowsIdentifiers())
    return false;
  const auto answer = bus_->ask(bus_->method(busDaemon, "ListActivatableNames"), queryLimit);
  if (!answer || sd_bus_message_enter_container(answer.get(), 'a', "s") <= 0)
    return false;
  const char* name = nullptr;
  while (sd_bus_message_read_basic(answer.get(), 's', &name) > 0)
    if (name == bundleIdentifier)
      return true;
  return false;
}

std::vector<int> LinuxRunningApplications::processesRunning(const std::filesystem::path& program) {
  std::vector<int> processes;
  std::error_code error;
  const auto resolved = std::filesystem::weakly_canonical(program, error);
  for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
    const std::string name = entry.path().filename();
    int process = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), process);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size())
      continue;
    if (isOwn(entry.path()) && programOf(process) == resolved && !isZombie(process))
      processes.push_back(process);
  }
  return processes;
}

std::unique_ptr<FileManager> LinuxRunningApplications::fileManagerOf(ProcessID process) {
  std::ifstream file(fmt::format("/proc/{}/environ", process), std::ios::binary);
  LinuxFileManager::Environment variables;
  for (std::string entry; std::getline(file, entry, '\0');)
    if (const auto equals = entry.find('='); equals != std::string::npos)
      variables.emplace(entry.substr(0, equals), entry.substr(equals + 1));
  if (variables.empty())
    return nullptr;
  return std::make_unique<LinuxFileManager>(std::move(variables));
}

std::optional<std::filesystem::path> LinuxRunningApplications::programOf(ProcessID process) {
  std::error_code error;
  const auto folder = std::filesystem::path("/proc") / std::to_string(process);
  auto text = std::filesystem::read_symlink(folder / "exe", error).string();
  if (error)
    return std::nullopt;
  const bool isReplaced = text.ends_with(replacedMark);
  if (isReplaced)
    text.resize(text.size() - replacedMark.size());
  // Slots started together run from one of their links: the first argument names the own one. Of a
  // program that was replaced it is all there is: the links of its successor may be others, and
  // linkers put the old file aside under another name first.
  const auto named = firstArgument(folder);
  if (isReplaced
          ? named.starts_with('/') && std::filesystem::exists(named, error)
          : !named.empty() && std::filesystem::equivalent(named, folder / "exe", error) && !error)
    return std::filesystem::canonical(named, error);
  return text;
}

int LinuxRunningApplications::launch(const Launch& launch) {
  const Descriptor log(
      open(launch.log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (log.number() < 0)
    throw FileError(
        failure(fmt::format("write the log \"{}\"", launch.log.string()), std::strerror(errno)));
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throwLaunchFailure(launch.program, errno);
  Descriptor readEnd(ends[0]);
  Descriptor writeEnd(ends[1]);

  std::vector<std::string> words{launch.program.string()};
  words.insert(words.end(), launch.arguments.begin(), launch.arguments.end());
  auto arguments = pointers(words);
  auto variables = environmentWith(launch.environment);
  auto environment = pointers(variables);

  // The child in between ends at once, so that the program belongs to init and never to us.
  const pid_t between = fork();
  if (between < 0)
    throwLaunchFailure(launch.program, errno);
  if (between == 0) {
    const pid_t process = fork();
    if (process == 0)
      becomeProgram(arguments.data(), environment.data(), log.number(), writeEnd.number());
    const int started = process < 0 ? -errno : process;
    [[maybe_unused]] const auto written = write(writeEnd.number(), &started, sizeof started);
    _exit(0);
  }
  writeEnd.close();
  int status = 0;
  while (waitpid(between, &status, 0) < 0 && errno == EINTR) {
  }
  // The process number comes, and a negative error where there is no such program, in any order.
  int process = 0;
  for (int value = 0; read(readEnd.number(), &value, sizeof value) == sizeof value;) {
    if (value < 0)
      throwLaunchFailure(launch.program, -value);
    process = value;
  }
  return process;
}

std::vector<int> LinuxRunningApplications::launchTogether(const std::vector<Launch>& launches) {
  if (launches.empty())
    return {};
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throwLaunchFailure(launches.front().program, errno);
  const Descriptor readEnd(ends[0]);
  Descriptor writeEnd(ends[1]);
  fcntl(writeEnd.number(), F_SETFD, 0); // the family tells its processes through it
  Launch family{launches.front().program,
                {"--family", std::to_string(writeEnd.number())},
                launches.front().environment,
                launches.front().log};
  for (const auto& launch : launches) {
    family.arguments.push_back(launch.program.string());
    family.arguments.push_back(launch.log.string());
  }
  launch(family);
  writeEnd.close();
  std::vector<int> processes;
  for (int process = 0; read(readEnd.number(), &process, sizeof process) == sizeof process;)
    processes.push_back(process);
  processes.resize(launches.size());
  return processes;
}

bool LinuxRunningApplications::isAlive(ProcessID process) {
  return (kill(process, 0) == 0 || errno == EPERM) && !isZombie(process);
}

void LinuxRunningApplications::terminate(ProcessID process, bool force) {
  kill(process, force ? SIGKILL : SIGTERM);
}

bool LinuxRunningApplications::perform(const std::string& bundleIdentifier,
                                       const std::string& action,
                                       const std::optional<std::string>& object) {
  if (!knowsIdentifiers())
    return false;
  const auto path = objectPath(bundleIdentifier);
  auto call = bus_->method({bundleIdentifier.c_str(), path.c_str(), "org.freedesktop.Application"},
                           "ActivateAction");
  if (object)
    call.append("sava{sv}", action.c_str(), 1, "s", object->c_str(), 0);
  else
    call.append("sava{sv}", action.c_str(), 0, 0);
  return static_cast<bool>(bus_->ask(call, activationLimit));
}

} // namespace tavrin
