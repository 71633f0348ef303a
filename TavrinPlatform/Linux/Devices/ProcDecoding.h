#pragma once

#include "TavrinPlatform/HostStatistics.h"

/// The kernel's text files as proc(5) describes them. Nonsense gives no value, never an exception.
namespace tavrin::proc {

/// The line of all processors of /proc/stat. Time given away to a guest counts as in use; waiting
/// for a disk counts as idle.
std::optional<CPULoad> cpuLoad(std::string_view stat);

/// /proc/meminfo: in use is what is not available to programs.
std::optional<MemoryLoad> memoryLoad(std::string_view meminfo);

/// /proc/net/dev; lines that are not understood are left out.
void eachLink(std::string_view dev, const HostStatistics::LinkVisitor& visit);

} // namespace tavrin::proc
