#include "TavrinPlatform/Linux/Devices/BusConnectedDevices.h"

#include "TavrinCore/Kinds/System/DeviceBatteries.h"
#include "TavrinPlatform/Linux/Devices/DeviceProperties.h"

#include <algorithm>
#include <set>

namespace tavrin {
namespace {

constexpr const char* service = "org.bluez";
constexpr const char* deviceInterface = "org.bluez.Device1";
constexpr const char* batteryInterface = "org.bluez.Battery1";
constexpr const char* objectManager = "org.freedesktop.DBus.ObjectManager";

} // namespace

BusConnectedDevices::BusConnectedDevices(std::function<Bus*()> system, UPowerSources& upower)
    : system_(std::move(system)), upower_(upower) {}

std::vector<DeviceBattery> BusConnectedDevices::connected() const {
  std::vector<DeviceBattery> batteries;
  if (!isWatching_)
    return batteries;
  std::set<std::string> keys;
  for (const auto& [path, device] : upower_.devices())
    if (auto battery = upower::deviceBattery(path, device)) {
      keys.insert(DeviceBatteries::key(device.text("Serial")));
      batteries.push_back(std::move(*battery));
    }
  for (const auto& [path, peer] : peers_)
    if (auto battery = bluez::deviceBattery(peer.device, peer.battery);
        battery && keys.insert(DeviceBatteries::key(battery->id)).second)
      batteries.push_back(std::move(*battery));
  std::stable_sort(batteries.begin(), batteries.end(),
                   [](const auto& a, const auto& b) { return a.name < b.name; });
  return batteries;
}

TokenPtr BusConnectedDevices::observe(std::function<void()> handler) {
  return changes_.add(std::move(handler));
}

void BusConnectedDevices::refresh() {
  watch();
  if (bus_ == nullptr)
    return;
  BusMessage question = bus_->method({service, "/", objectManager}, "GetManagedObjects");
  // A computer without Bluetooth need not start its daemon for this.
  if (question)
    sd_bus_message_set_auto_start(question.get(), 0);
  bus_->call(question, [this, weak = alive_.watch()](sd_bus_message* reply, auto&) {
    if (weak.expired())
      return;
    peers_.clear();
    if (reply != nullptr && sd_bus_message_enter_container(reply, 'a', "{oa{sa{sv}}}") > 0)
      while (sd_bus_message_enter_container(reply, 'e', "oa{sa{sv}}") > 0) {
        const char* path = nullptr;
        sd_bus_message_read_basic(reply, 'o', &path);
        readObject(reply, path == nullptr ? "" : path);
        sd_bus_message_exit_container(reply);
      }
    changes_.call();
  });
}

void BusConnectedDevices::watch() {
  if (std::exchange(isWatching_, true))
    return;
  watches_.push_back(upower_.observe([this] { changes_.call(); }));
  bus_ = system_();
  if (bus_ == nullptr)
    return;
  const std::string from = "type='signal',sender='org.bluez',";
  watches_.push_back(
      bus_->match(from + "member='InterfacesAdded'", [this](sd_bus_message* message) {
        const char* path = nullptr;
        if (sd_bus_message_read_basic(message, 'o', &path) <= 0)
          return;
        readObject(message, path);
        changes_.call();
      }));
  watches_.push_back(
      bus_->match(from + "member='InterfacesRemoved'", [this](sd_bus_message* message) {
        const char* path = nullptr;
        if (sd_bus_message_read_basic(message, 'o', &path) <= 0 ||
            sd_bus_message_enter_container(message, 'a', "s") <= 0)
          return;
        const auto peer = peers_.find(path);
        if (peer == peers_.end())
          return;
        for (std::string name = textArgument(message); !name.empty(); name = textArgument(message))
          if (name == batteryInterface)
            peer->second.battery = {};
          else if (name == deviceInterface)
            peer->second.device = {};
        if (peer->second.battery.isEmpty() && peer->second.device.isEmpty())
          peers_.erase(peer);
        changes_.call();
      }));
  watches_.push_back(bus_->match(from + "interface='org.freedesktop.DBus.Properties',"
                                        "member='PropertiesChanged'",
                                 [this](sd_bus_message* message) { changed(message); }));
  watches_.push_back(
      bus_->match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                  "arg0='org.bluez'",
                  [this](sd_bus_message*) { refresh(); }));
}

void BusConnectedDevices::readObject(sd_bus_message* message, const std::string& path) {
  readInterfaces(message, [&](const std::string& interface) {
    BusProperties ignored;
    (interface == deviceInterface    ? peers_[path].device
     : interface == batteryInterface ? peers_[path].battery
                                     : ignored)
        .read(message);
  });
}

void BusConnectedDevices::changed(sd_bus_message* message) {
  const char* path = sd_bus_message_get_path(message);
  const std::string interface = textArgument(message);
  if (path == nullptr || (interface != deviceInterface && interface != batteryInterface))
    return;
  auto& peer = peers_[path];
  (interface == deviceInterface ? peer.device : peer.battery).read(message);
  changes_.call();
}

} // namespace tavrin
