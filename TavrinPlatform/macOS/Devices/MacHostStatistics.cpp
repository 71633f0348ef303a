#include "TavrinPlatform/macOS/Devices/MacHostStatistics.h"

#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <sys/socket.h>
#include <sys/sysctl.h>

namespace tavrin {

namespace {

std::optional<std::uint64_t> physicalMemory() {
  std::uint64_t bytes = 0;
  std::size_t size = sizeof bytes;
  if (::sysctlbyname("hw.memsize", &bytes, &size, nullptr, 0) != 0 || size != sizeof bytes)
    return std::nullopt;
  return bytes;
}

} // namespace

MacHostStatistics::MacHostStatistics() : host_(::mach_host_self()) {}

MacHostStatistics::~MacHostStatistics() {
  ::mach_port_deallocate(mach_task_self(), host_);
}

std::optional<CPULoad> MacHostStatistics::cpuLoad() {
  host_cpu_load_info_data_t load{};
  mach_msg_type_number_t count = HOST_CPU_LOAD_INFO_COUNT;
  if (::host_statistics(host_, HOST_CPU_LOAD_INFO, reinterpret_cast<host_info_t>(&load), &count) !=
      KERN_SUCCESS)
    return std::nullopt;
  return CPULoad{load.cpu_ticks[CPU_STATE_USER], load.cpu_ticks[CPU_STATE_SYSTEM],
                 load.cpu_ticks[CPU_STATE_IDLE], load.cpu_ticks[CPU_STATE_NICE]};
}

std::optional<MemoryLoad> MacHostStatistics::memoryLoad() {
  vm_statistics64_data_t memory{};
  mach_msg_type_number_t count = HOST_VM_INFO64_COUNT;
  vm_size_t page = 0;
  const auto physical = physicalMemory();
  if (!physical || ::host_page_size(host_, &page) != KERN_SUCCESS ||
      ::host_statistics64(host_, HOST_VM_INFO64, reinterpret_cast<host_info64_t>(&memory),
                          &count) != KERN_SUCCESS)
    return std::nullopt;
  const auto pages =
      std::uint64_t{memory.active_count} + memory.wire_count + memory.compressor_page_count;
  return MemoryLoad{pages * page, *physical};
}

void MacHostStatistics::eachLink(const LinkVisitor& visit) {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) != 0)
    return;
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> list(first, ::freeifaddrs);
  for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_LINK ||
        entry->ifa_data == nullptr)
      continue;
    const auto* data = static_cast<const if_data*>(entry->ifa_data);
    visit(entry->ifa_name, data->ifi_ibytes, data->ifi_obytes);
  }
}

} // namespace tavrin
