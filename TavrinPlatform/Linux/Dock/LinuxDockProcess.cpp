#include "TavrinPlatform/Linux/Dock/LinuxDockProcess.h"

#include <charconv>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tavrin {
namespace {

double secondsSinceStart() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

/// What a file in /proc holds; empty once the process is gone. One that goes while it is being read
/// (ESRCH) makes an iterator over the stream throw; this ends the text there.
std::string contents(const std::filesystem::path& file) {
  const std::ifstream stream(file);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
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
  return secondsSinceStart() - ticks / double(::sysconf(_SC_CLK_TCK));
}

} // namespace tavrin
