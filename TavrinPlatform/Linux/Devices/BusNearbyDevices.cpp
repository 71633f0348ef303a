#include "TavrinPlatform/Linux/Devices/BusNearbyDevices.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinCore/Text/NameOrder.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Devices/ObexSending.h"
#include "TavrinPlatform/POSIX/LivingToken.h"

#include <QUrl>
#include <algorithm>

namespace tavrin {
namespace {

using Kind = NearbyDevice::Kind;
constexpr const char* connectWay = "KDE Connect";
constexpr const char* bluetoothWay = "Bluetooth";

constexpr const char* connectService = "org.kde.kdeconnect";
constexpr const char* connectDevice = "org.kde.kdeconnect.device";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
const BusAddress connectDaemon{connectService, "/modules/kdeconnect", "org.kde.kdeconnect.daemon"};
const BusAddress bluetoothObjects{"org.bluez", "/", "org.freedesktop.DBus.ObjectManager"};
/// The service class of Bluetooth's object push.
constexpr const char* pushProfile = "00001105-0000-1000-8000-00805f9b34fb";
constexpr double answerLimit = 5;
constexpr double handOverLimit = 20;
constexpr double gatheringTime = 0.1;
constexpr std::size_t mostDevices = 64;
constexpr std::size_t longestName = 100;

Kind kindOfType(const std::string& type) {
  return type == "phone" || type == "smartphone" ? Kind::phone
         : type == "tablet"                      ? Kind::tablet
         : type == "desktop" || type == "laptop" ? Kind::computer
                                                 : Kind::other;
}

/// BlueZ names icons of the freedesktop naming scheme.
Kind kindOfIcon(const std::string& icon) {
  return icon == "phone" ? Kind::phone : icon == "computer" ? Kind::computer : Kind::other;
}

std::string devicePath(const std::string& id) {
  return "/modules/kdeconnect/devices/" + id;
}

} // namespace

BusNearbyDevices::BusNearbyDevices(Bus* session, std::function<Bus*()> system, RunLoop& runLoop)
    : session_(session), system_(std::move(system)), runLoop_(runLoop) {}

TokenPtr BusNearbyDevices::observe(std::function<void()> handler) {
  watch();
  return changes_.add(std::move(handler));
}

void BusNearbyDevices::refresh() {
  watch();
  askConnect(true);
  askBluetooth();
}

void BusNearbyDevices::watch() {
  if (!watches_.empty())
    return;
  // Many signals come together: the devices are asked for once.
  const auto later = [this](sd_bus_message*) {
    asking_ = runLoop_.after(gatheringTime, [this] {
      askConnect(false);
      askBluetooth();
    });
  };
  if (session_ != nullptr && session_->isOpen())
    for (const char* rule :
         {"type='signal',interface='org.kde.kdeconnect.daemon'",
          "type='signal',interface='org.kde.kdeconnect.device'",
          "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
          "arg0='org.kde.kdeconnect'"})
      watches_.push_back(session_->match(rule, later));
  if (Bus* system = system_(); system != nullptr)
    for (const char* rule :
         {"type='signal',sender='org.bluez',interface='org.freedesktop.DBus.ObjectManager'",
          "type='signal',sender='org.bluez',member='PropertiesChanged',arg0='org.bluez.Adapter1'",
          "type='signal',sender='org.bluez',member='PropertiesChanged',arg0='org.bluez.Device1'",
          "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
          "arg0='org.bluez'"})
      watches_.push_back(system->match(rule, later));
  watches_.push_back(std::make_unique<Token>());
  askConnect(false);
  askBluetooth();
}

void BusNearbyDevices::askConnect(bool wakes) {
  if (session_ == nullptr || !session_->isOpen()) {
    settle();
    return;
  }
  BusMessage question = session_->method(connectDaemon, "devices");
  question.append("bb", 1, 1);
  if (question && !wakes)
    sd_bus_message_set_auto_start(question.get(), 0);
  session_->call(
      question,
      [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
        if (weak.expired())
          return;
        std::map<std::string, NearbyDevice> before = std::exchange(connect_, {});
        hasConnect_ = reply != nullptr;
        if (reply != nullptr && sd_bus_message_enter_container(reply, 'a', "s") > 0)
          for (std::string id = textArgument(reply); !id.empty(); id = textArgument(reply)) {
            if (connect_.size() >= mostDevices ||
                sd_bus_object_path_is_valid(devicePath(id).c_str()) <= 0)
              continue;
            // What is known already stays in sight while it is asked anew.
            const auto known = before.find(id);
            connect_[id] = known != before.end() ? known->second
                                                 : NearbyDevice{id, {}, Kind::other, connectWay};
            askConnectDevice(id);
          }
        settle();
      },
      answerLimit);
}

void BusNearbyDevices::askConnectDevice(const std::string& id) {
  const std::string path = devicePath(id);
  BusMessage question = session_->method({connectService, path.c_str(), properties}, "GetAll");
  session_->call(
      question.append("s", connectDevice),
      [this, id, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
        if (weak.expired())
          return;
        const auto found = connect_.find(id);
        if (found == connect_.end() || reply == nullptr)
          return;
        BusProperties values;
        bool takesFiles = true;
        values.read(reply, [&](const std::string& name, sd_bus_message* list) {
          const auto texts = readTexts(list);
          // The plugins it has; older daemons do not say.
          if (texts && name == "supportedPlugins")
            takesFiles = std::ranges::find(*texts, "kdeconnect_share") != texts->end();
          return texts.has_value();
        });
        if (values.has("isReachable") && !values.flag("isReachable"))
          takesFiles = false;
        if (!takesFiles) {
          connect_.erase(found);
        } else {
          found->second.name = cleanText(values.text("name"), longestName);
          found->second.kind = kindOfType(values.text("type"));
        }
        settle();
      },
      answerLimit);
}

void BusNearbyDevices::askBluetooth() {
  Bus* system = system_();
  if (system == nullptr || !system->isOpen()) {
    settle();
    return;
  }
  BusMessage question = system->method(bluetoothObjects, "GetManagedObjects");
  // A computer without Bluetooth need not start its daemon for this.
  if (question)
    sd_bus_message_set_auto_start(question.get(), 0);
  system->call(
      question,
      [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
        if (weak.expired())
          return;
        bluetooth_.clear();
        hasBluetooth_ = false;
        if (reply != nullptr)
          readBluetooth(reply);
        settle();
      },
      answerLimit);
}

void BusNearbyDevices::readBluetooth(sd_bus_message* reply) {
  if (sd_bus_message_enter_container(reply, 'a', "{oa{sa{sv}}}") <= 0)
    return;
  while (sd_bus_message_enter_container(reply, 'e', "oa{sa{sv}}") > 0) {
    const char* path = nullptr;
    sd_bus_message_read_basic(reply, 'o', &path);
    readInterfaces(reply, [&](const std::string& interface) {
      BusProperties values;
      bool takesFiles = false;
      values.read(reply, [&](const std::string& name, sd_bus_message* list) {
        const auto texts = readTexts(list);
        if (texts && name == "UUIDs")
          takesFiles = std::ranges::find(*texts, pushProfile) != texts->end();
        return texts.has_value();
      });
      if (interface == "org.bluez.Adapter1" && values.flag("Powered"))
        hasBluetooth_ = true;
      if (interface != "org.bluez.Device1" || !values.flag("Paired") || !takesFiles ||
          bluetooth_.size() >= mostDevices)
        return;
      const std::string address = values.text("Address");
      const std::string alias = values.text("Alias");
      bluetooth_[address] = {address,
                             cleanText(alias.empty() ? values.text("Name") : alias, longestName),
                             kindOfIcon(values.text("Icon")), bluetoothWay};
    });
    sd_bus_message_exit_container(reply);
  }
  if (!hasBluetooth_)
    bluetooth_.clear();
}

NearbyDevices::Advice BusNearbyDevices::advice() const {
  return {
      translated("Install KDE Connect here and on the other device, or switch Bluetooth on."),
      translated(
          "Open KDE Connect on the other device, on the same network, or pair it by Bluetooth.")};
}

void BusNearbyDevices::settle() {
  if (asked_ > 0)
    --asked_;
  std::vector<NearbyDevice> devices;
  for (const auto* group : {&connect_, &bluetooth_})
    for (const auto& [id, device] : *group)
      if (!device.name.empty())
        devices.push_back(device);
  const NameOrder order;
  std::ranges::stable_sort(
      devices, [&](const NearbyDevice& a, const NearbyDevice& b) { return order(a.name, b.name); });
  const bool isChanged = devices != devices_ || isAvailable() != wasAvailable_;
  devices_ = std::move(devices);
  wasAvailable_ = isAvailable();
  if (isChanged)
    changes_.call();
}

TokenPtr BusNearbyDevices::send(const NearbyDevice& device,
                                std::vector<std::filesystem::path> files,
                                std::function<void(const SendingProgress&)> progress,
                                std::function<void(const SendingResult&)> done) {
  if (session_ == nullptr || !session_->isOpen())
    return runLoop_.after(0, [done = std::move(done), name = device.name] {
      done({failure(translated("send to {name}", {{"name", name}}),
                    translated("there is no session bus")),
            false});
    });
  if (device.way == bluetoothWay)
    return std::make_unique<ObexSending>(*session_, runLoop_, device, std::move(files),
                                         std::move(progress), std::move(done));
  return sendByConnect(device, files, std::move(done));
}

TokenPtr BusNearbyDevices::sendByConnect(const NearbyDevice& device,
                                         const std::vector<std::filesystem::path>& files,
                                         std::function<void(const SendingResult&)> done) {
  auto token = std::make_unique<LivingToken>();
  const std::string path = devicePath(device.id) + "/share";
  BusMessage message = session_->method(
      {connectService, path.c_str(), "org.kde.kdeconnect.device.share"}, "shareUrls");
  if (message) {
    sd_bus_message_open_container(message.get(), 'a', "s");
    for (const auto& file : files)
      message.append(
          "s", QUrl::fromLocalFile(QString::fromStdString(file.string())).toEncoded().constData());
    sd_bus_message_close_container(message.get());
  }
  session_->call(
      message,
      [done = std::move(done), name = device.name, asker = token->life()](sd_bus_message* reply,
                                                                          const std::string&) {
        if (asker.expired())
          return;
        done(reply != nullptr
                 ? SendingResult{{}, true}
                 : SendingResult{failure(translated("send to {name}", {{"name", name}}),
                                         translated("KDE Connect did not take the files")),
                                 false});
      },
      handOverLimit);
  return token;
}

} // namespace tavrin
