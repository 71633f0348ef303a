#include "TavrinPlatform/macOS/Devices/MacConnectedDevices.h"

#include "TavrinPlatform/macOS/Base/CFRef.h"
#include "TavrinPlatform/macOS/Devices/IOObject.h"

namespace tavrin {
namespace {

constexpr const char* inputDeviceClass = "AppleDeviceManagementHIDEventService";

CFRef<CFTypeRef> property(io_registry_entry_t service, const char* key) {
  const auto name = toCFText(key);
  return CFRef<CFTypeRef>(
      name ? IORegistryEntryCreateCFProperty(service, name.get(), kCFAllocatorDefault, kNilOptions)
           : nullptr);
}

} // namespace

std::vector<DeviceBatteries::HIDService> registeredInputDevices() {
  std::vector<DeviceBatteries::HIDService> services;
  io_iterator_t found = IO_OBJECT_NULL;
  // The dictionary is used up by the call, however it ends.
  if (IOServiceGetMatchingServices(kIOMainPortDefault, IOServiceMatching(inputDeviceClass),
                                   &found) != KERN_SUCCESS)
    return services;
  const IOObject iterator(found);
  if (!iterator)
    return services;
  while (const IOObject service{IOIteratorNext(iterator.get())})
    services.push_back({integerFrom(property(service.get(), "BatteryPercent").get()),
                        textFrom(property(service.get(), "DeviceAddress").get())});
  return services;
}

void MacConnectedDevices::refresh() {
  if (std::exchange(isAsking_, true))
    return;
  const auto table = std::make_shared<DeviceBatteries::HIDTable>();
  runLoop_.background(
      [table] { *table = DeviceBatteries::table(registeredInputDevices()); }, alive_,
      [this, table] {
        report_ =
            processes_.run({.program = "/usr/sbin/system_profiler",
                            .arguments = {"-json", "SPBluetoothDataType"},
                            .standardInput = {},
                            .environment = {},
                            .timeLimit = reportLimit},
                           [this, table](const ProcessResult& result) { finish(result, *table); });
      });
}

void MacConnectedDevices::finish(const ProcessResult& result,
                                 const DeviceBatteries::HIDTable& table) {
  isAsking_ = false;
  devices_.clear();
  if (result.outcome == ProcessResult::Outcome::exited) {
    log_.info("bluetooth report: " + result.standardOutput);
    devices_ = DeviceBatteries::batteries(DeviceBatteries::devices(result.standardOutput), table);
  }
  changes_.call();
}

} // namespace tavrin
