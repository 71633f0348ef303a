#include "TavrinPlatform/Linux/Devices/UPowerSources.h"

#include "TavrinPlatform/Linux/Devices/DeviceProperties.h"

namespace tavrin {
namespace {

constexpr const char* upowerService = "org.freedesktop.UPower";
constexpr const char* daemonPath = "/org/freedesktop/UPower";
constexpr const char* displayPath = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* upowerDevice = "org.freedesktop.UPower.Device";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

std::vector<PowerSource> UPowerSources::list() {
  watch();
  const bool isOnACPower = !daemon_.flag("OnBattery");
  std::vector<PowerSource> sources;
  // UPower sums several batteries up in one device, which stands first then.
  const auto display = devices_.find(displayPath);
  if (display != devices_.end() && upower::isOwnBattery(display->second))
    sources.push_back(upower::powerSource(display->second, isOnACPower));
  for (const auto& [path, device] : devices_)
    if (path != displayPath && upower::isOwnBattery(device) && device.flag("PowerSupply"))
      sources.push_back(upower::powerSource(device, isOnACPower));
  return sources;
}

TokenPtr UPowerSources::observe(std::function<void()> handler) {
  watch();
  return changes_.add(std::move(handler));
}

const std::map<std::string, BusProperties>& UPowerSources::devices() {
  watch();
  return devices_;
}

void UPowerSources::watch() {
  if (round_)
    return;
  round_.emplace();
  bus_ = system_();
  if (bus_ == nullptr)
    return;
  const std::string from = "type='signal',sender='org.freedesktop.UPower',";
  watches_.push_back(bus_->match(from + "interface='org.freedesktop.DBus.Properties',"
                                        "member='PropertiesChanged'",
                                 [this](sd_bus_message* message) { changed(message); }));
  const auto onDevice = [this](const char* member, std::function<void(std::string)> act) {
    watches_.push_back(
        bus_->match(std::string("type='signal',path='/org/freedesktop/UPower',interface='"
                                "org.freedesktop.UPower',member='") +
                        member + "'",
                    [act = std::move(act)](sd_bus_message* message) {
                      const char* path = nullptr;
                      if (sd_bus_message_read_basic(message, 'o', &path) > 0)
                        act(path);
                    }));
  };
  onDevice("DeviceAdded", [this](const std::string& path) { ask(path); });
  onDevice("DeviceRemoved", [this](const std::string& path) {
    if (devices_.erase(path) > 0)
      changes_.call();
  });
  watches_.push_back(
      bus_->match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                  "arg0='org.freedesktop.UPower'",
                  [this](sd_bus_message* message) {
                    textArgument(message);
                    textArgument(message);
                    const bool isThere = !textArgument(message).empty();
                    forgetAll();
                    if (isThere)
                      enumerate();
                  }));
  enumerate();
}

void UPowerSources::forgetAll() {
  round_.emplace();
  daemon_ = {};
  if (!std::exchange(devices_, {}).empty())
    changes_.call();
}

void UPowerSources::enumerate() {
  ask(daemonPath);
  ask(displayPath);
  bus_->call(bus_->method({upowerService, daemonPath, upowerService}, "EnumerateDevices"),
             [this, weak = round_->watch()](sd_bus_message* reply, const std::string&) {
               if (reply == nullptr || weak.expired() ||
                   sd_bus_message_enter_container(reply, 'a', "o") <= 0)
                 return;
               const char* path = nullptr;
               while (sd_bus_message_read_basic(reply, 'o', &path) > 0)
                 ask(path);
             });
}

void UPowerSources::ask(const std::string& path) {
  BusMessage question = bus_->method({upowerService, path.c_str(), propertiesInterface}, "GetAll");
  question.append("s", path == daemonPath ? upowerService : upowerDevice);
  bus_->call(question,
             [this, path, weak = round_->watch()](sd_bus_message* reply, const std::string&) {
               // A device may be gone by the time it is asked.
               if (reply == nullptr || weak.expired())
                 return;
               (path == daemonPath ? daemon_ : devices_[path]).read(reply);
               changes_.call();
             });
}

void UPowerSources::changed(sd_bus_message* message) {
  const std::string path =
      sd_bus_message_get_path(message) == nullptr ? "" : sd_bus_message_get_path(message);
  const std::string interface = textArgument(message);
  if (interface == upowerService && path == daemonPath) {
    daemon_.read(message);
  } else if (const auto device = devices_.find(path);
             device != devices_.end() && interface == upowerDevice) {
    device->second.read(message);
  } else {
    return;
  }
  changes_.call();
}

} // namespace tavrin
