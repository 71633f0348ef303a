#include "TavrinPlatform/macOS/Dock/MacDockProcess.h"

#include <algorithm>
#include <ctime>
#include <libproc.h>
#include <string_view>
#include <sys/proc_info.h>
#include <unistd.h>
#include <vector>

namespace tavrin {
namespace {

constexpr std::uint32_t zombie = 5;

/// All processes by number; the system promises no order.
std::vector<pid_t> processes() {
  const int room = ::proc_listpids(PROC_ALL_PIDS, 0, nullptr, 0);
  if (room <= 0)
    return {};
  // More may have come by the second call.
  std::vector<pid_t> numbers(static_cast<std::size_t>(room) / sizeof(pid_t) + 64);
  const int written = ::proc_listpids(PROC_ALL_PIDS, 0, numbers.data(),
                                      static_cast<int>(numbers.size() * sizeof(pid_t)));
  numbers.resize(written > 0 ? static_cast<std::size_t>(written) / sizeof(pid_t) : 0);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

template <std::size_t size> std::string_view text(const char (&field)[size]) {
  return {field, std::find(field, field + size, '\0')};
}

std::string_view nameOf(const proc_bsdinfo& info) {
  const auto registered = text(info.pbi_name);
  return registered.empty() ? text(info.pbi_comm) : registered;
}

double age(const proc_bsdinfo& info) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return double(now.tv_sec) - double(info.pbi_start_tvsec) + double(now.tv_nsec) / 1e9 -
         double(info.pbi_start_tvusec) / 1e6;
}

} // namespace

std::optional<DockProcess::Running> MacDockProcess::running() {
  for (const pid_t process : processes()) {
    proc_bsdinfo info{};
    // Other users' processes are refused, those that ended meanwhile are gone.
    if (process <= 0 || ::proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &info, sizeof info) !=
                            static_cast<int>(sizeof info))
      continue;
    if (info.pbi_ruid == ::getuid() && info.pbi_status != zombie && nameOf(info) == dockName)
      return Running{process, info.pbi_start_tvsec > 0 ? std::optional(age(info)) : std::nullopt};
  }
  return std::nullopt;
}

} // namespace tavrin
