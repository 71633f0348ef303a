#include "TavrinPlatform/Linux/BusConnectedDevices.h"

#include "TavrinCore/Kinds/DeviceBatteries.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace tavrin {
namespace {

using Kind = DeviceBattery::Kind;
constexpr const char* bluez = "org.bluez";
constexpr const char* deviceInterface = "org.bluez.Device1";
constexpr const char* batteryInterface = "org.bluez.Battery1";
constexpr const char* objectManager = "org.freedesktop.DBus.ObjectManager";

/// UPower's device types that are no device of their own: unknown, mains, battery, UPS.
constexpr int firstDeviceType = 4;

Kind kindOfType(int type) {
  switch (type) {
  case 5:
    return Kind::mouse;
  case 6:
    return Kind::keyboard;
  case 14:
    return Kind::trackpad;
  case 17:
  case 19:
    return Kind::headphones;
  default:
    return Kind::other;
  }
}

/// BlueZ names icons of the freedesktop naming scheme.
Kind kindOfIcon(const std::string& icon) {
  if (icon == "audio-headset" || icon == "audio-headphones")
    return Kind::headphones;
  if (icon == "input-keyboard")
    return Kind::keyboard;
  if (icon == "input-mouse")
    return Kind::mouse;
  if (icon == "input-tablet" || icon == "input-touchpad")
    return Kind::trackpad;
  return Kind::other;
}

std::optional<int> percent(const BusProperties& properties) {
  const auto value = properties.number("Percentage");
  if (!value || !std::isfinite(*value))
    return std::nullopt;
  return static_cast<int>(std::lround(std::clamp(*value, 0.0, 100.0)));
}

} // namespace

BusConnectedDevices::BusConnectedDevices(std::function<Bus*()> system, UPowerSources& upower)
    : system_(std::move(system)), upower_(upower) {}

std::vector<DeviceBattery> BusConnectedDevices::connected() const {
  std::vector<DeviceBattery> batteries;
  if (!isWatching_)
    return batteries;
  std::set<std::string> keys;
  for (const auto& [path, device] : upower_.devices()) {
    const int type = static_cast<int>(std::clamp(device.number("Type").value_or(0), 0.0, 1000.0));
    const auto level = percent(device);
    if (type < firstDeviceType || !level || !device.flag("IsPresent"))
      continue;
    const std::string address = device.text("Serial");
    const std::string name = device.text("Model");
    keys.insert(DeviceBatteries::key(address));
    batteries.push_back({address.empty() ? path : address,
                         name.empty() ? device.text("NativePath") : name, kindOfType(type),
                         *level});
  }
  for (const auto& [path, peer] : peers_) {
    const auto level = percent(peer.battery);
    const std::string address = peer.device.text("Address");
    if (!level || !peer.device.flag("Connected") ||
        !keys.insert(DeviceBatteries::key(address)).second)
      continue;
    const std::string alias = peer.device.text("Alias");
    batteries.push_back({address, alias.empty() ? peer.device.text("Name") : alias,
                         kindOfIcon(peer.device.text("Icon")), *level});
  }
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
  BusMessage question = bus_->method({bluez, "/", objectManager}, "GetManagedObjects");
  // A computer without Bluetooth need not start its daemon for this.
  if (question)
    sd_bus_message_set_auto_start(question.get(), 0);
  bus_->call(question, [this, weak = std::weak_ptr(alive_)](sd_bus_message* reply, auto&) {
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
