#include "TavrinPlatform/macOS/Applications/Processes.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <libproc.h>
#include <memory>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysctl.h>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::uint32_t zombie = 5;

/// The words behind the path and its padding, each closed with a zero; the system's own strings
/// stand behind an empty one.
std::map<std::string, std::string> environmentIn(std::string_view bytes) {
  int count = 0;
  if (bytes.size() < sizeof count)
    return {};
  std::memcpy(&count, bytes.data(), sizeof count);
  bytes.remove_prefix(sizeof count);
  const auto skip = [&](std::size_t length) { bytes.remove_prefix(std::min(length, bytes.size())); };
  skip(bytes.find('\0'));
  skip(bytes.find_first_not_of('\0'));
  for (; count > 0; --count)
    skip(std::min(bytes.find('\0'), bytes.size()) + 1);
  std::map<std::string, std::string> variables;
  while (!bytes.empty() && bytes.front() != '\0') {
    const auto entry = bytes.substr(0, bytes.find('\0'));
    if (const auto equals = entry.find('='); equals != std::string_view::npos)
      variables.emplace(entry.substr(0, equals), entry.substr(equals + 1));
    skip(entry.size() + 1);
  }
  return variables;
}

struct FileActions {
  FileActions() { ::posix_spawn_file_actions_init(&value); }
  ~FileActions() { ::posix_spawn_file_actions_destroy(&value); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  posix_spawn_file_actions_t value{};
};

struct Attributes {
  Attributes() { ::posix_spawnattr_init(&value); }
  ~Attributes() { ::posix_spawnattr_destroy(&value); }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  posix_spawnattr_t value{};
};

} // namespace

std::vector<int> userProcesses() {
  constexpr std::size_t growth = 64;
  const auto user = static_cast<std::uint32_t>(::getuid());
  const int needed = ::proc_listpids(PROC_RUID_ONLY, user, nullptr, 0);
  if (needed <= 0)
    return {};
  std::vector<int> processes(static_cast<std::size_t>(needed) / sizeof(int) + growth);
  const int written = ::proc_listpids(PROC_RUID_ONLY, user, processes.data(),
                                      static_cast<int>(processes.size() * sizeof(int)));
  processes.resize(written > 0 ? static_cast<std::size_t>(written) / sizeof(int) : 0);
  std::erase(processes, 0);
  std::ranges::sort(processes);
  return processes;
}

std::optional<std::filesystem::path> programOfProcess(int process) {
  std::string path(PROC_PIDPATHINFO_MAXSIZE, '\0');
  const int length = ::proc_pidpath(process, path.data(), static_cast<std::uint32_t>(path.size()));
  if (length <= 0)
    return std::nullopt;
  path.resize(static_cast<std::size_t>(length));
  return path;
}

bool isProcessAlive(int process) {
  if (::kill(process, 0) != 0 && errno != EPERM)
    return false;
  proc_bsdinfo info{};
  const int size = ::proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &info, sizeof info);
  return size != static_cast<int>(sizeof info) || info.pbi_status != zombie;
}

std::optional<std::map<std::string, std::string>> environmentOfProcess(int process) {
  int most = 0;
  std::size_t size = sizeof most;
  int limit[] = {CTL_KERN, KERN_ARGMAX};
  if (::sysctl(limit, 2, &most, &size, nullptr, 0) != 0 || most <= 0)
    return std::nullopt;
  std::string bytes(static_cast<std::size_t>(most), '\0');
  size = bytes.size();
  int question[] = {CTL_KERN, KERN_PROCARGS2, process};
  if (::sysctl(question, 3, bytes.data(), &size, nullptr, 0) != 0)
    return std::nullopt;
  auto variables = environmentIn(std::string_view(bytes).substr(0, size));
  return variables.empty() ? std::nullopt : std::optional(std::move(variables));
}

int startDetached(const std::vector<std::string>& words,
                  const std::map<std::string, std::string>& environment,
                  const std::filesystem::path& log) {
  const Descriptor output(
      ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (output.number() < 0)
    throw FileError(failure("write the log \"" + log.string() + "\"", std::strerror(errno)));
  FileActions actions;
  ::posix_spawn_file_actions_addopen(&actions.value, 0, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions.value, output.number(), 1);
  ::posix_spawn_file_actions_adddup2(&actions.value, output.number(), 2);
  Attributes attributes;
  ::posix_spawnattr_setflags(&attributes.value,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_CLOEXEC_DEFAULT);
  auto arguments = words;
  auto variables = environmentWith(environment);
  pid_t process = 0;
  const int error =
      ::posix_spawn(&process, words.front().c_str(), &actions.value, &attributes.value,
                    pointers(arguments).data(), pointers(variables).data());
  if (error != 0)
    throw FileError(failure("start \"" + words.front() + "\"", std::strerror(error)));
  return process;
}

} // namespace tavrin
