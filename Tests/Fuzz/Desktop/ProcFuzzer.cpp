#include "TavrinPlatform/Linux/Devices/ProcDecoding.h"

#include <cstdlib>

/// Any text is read as each of the kernel's files; what is found keeps its own rules.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  proc::cpuLoad(text);
  if (const auto memory = proc::memoryLoad(text); memory && memory->used > memory->physical)
    std::abort();
  proc::eachLink(text, [](std::string_view name, std::uint64_t, std::uint64_t) {
    if (name.empty() || name.find(':') != std::string_view::npos)
      std::abort();
  });
  return 0;
}
