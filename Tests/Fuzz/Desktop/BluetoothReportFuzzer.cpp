#include "TavrinCore/Kinds/System/DeviceBatteries.h"

#include <cstdlib>

/// Any report gives batteries with ids, never an exception.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto devices = DeviceBatteries::devices(text);
  const auto table = DeviceBatteries::table({{50, std::string(text)}});
  if (DeviceBatteries::batteries(devices, table).size() > 3 * devices.size())
    std::abort();
  return 0;
}
