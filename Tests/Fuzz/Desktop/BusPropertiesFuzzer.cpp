#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Devices/DeviceProperties.h"
#include "Tests/Fuzz/BusMessages.h"

#include <cmath>

namespace {

using namespace tavrin;

constexpr const char* names[] = {"Percentage", "Type",  "State", "TimeToFull", "TimeToEmpty",
                                 "IsPresent",  "Model", "Alias", "Serial",     "NativePath",
                                 "Connected",  "Icon",  "Name",  "Address",    "LockedHint"};

void appendVariant(sd_bus_message* message, FuzzedDataProvider& data) {
  const char type =
      fuzz::basicTypes[data.ConsumeIntegralInRange<std::size_t>(0, fuzz::basicTypes.size() - 1)];
  switch (data.ConsumeIntegralInRange<int>(0, 7)) {
  case 0:
    sd_bus_message_append(message, "v", "as", 2, "a", "b");
    return;
  case 1:
    sd_bus_message_append(message, "v", "v", "s", "within");
    return;
  case 2:
    sd_bus_message_append(message, "v", "a{sv}", 1, "Percentage", "d", 1.0);
    return;
  default:
    sd_bus_message_open_container(message, 'v', std::string(1, type).c_str());
    fuzz::appendBasic(message, type, data);
    sd_bus_message_close_container(message);
  }
}

void appendProperties(sd_bus_message* message, FuzzedDataProvider& data) {
  sd_bus_message_open_container(message, 'a', "{sv}");
  for (int left = data.ConsumeIntegralInRange<int>(0, 8); left > 0; --left) {
    sd_bus_message_open_container(message, 'e', "sv");
    const std::string name = data.ConsumeBool() ? data.PickValueInArray(names) : fuzz::text(data);
    sd_bus_message_append_basic(message, 's', name.c_str());
    appendVariant(message, data);
    sd_bus_message_close_container(message);
  }
  sd_bus_message_close_container(message);
}

void check(const std::optional<DeviceBattery>& battery) {
  if (battery && (battery->percent < 0 || battery->percent > 100))
    std::abort();
}

void check(const PowerSource& source) {
  const auto isWithin = [](std::optional<int> value, int most) {
    return !value || (*value >= 0 && *value <= most);
  };
  if (!isWithin(source.currentCapacity, 1000) || !isWithin(source.timeToFullCharge, 16'666'667) ||
      !isWithin(source.timeToEmpty, 16'666'667) ||
      source.currentCapacity.has_value() != source.maximumCapacity.has_value())
    std::abort();
}

void check(const BusProperties& properties, const BusProperties& others) {
  check(upower::powerSource(properties, upower::isOwnBattery(properties)));
  check(upower::deviceBattery("/path", properties));
  check(bluez::deviceBattery(properties, others));
}

} // namespace

/// Messages of any shape are read as properties and as interfaces; what is said of them stays
/// within its bounds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const fuzz::Connection connection;
  FuzzedDataProvider data(bytes, size);
  sd_bus_message* message = nullptr;
  sd_bus_message_new_signal(connection.first, &message, "/", "a.b", "C");
  const int shape = data.ConsumeIntegralInRange<int>(0, 3);
  if (shape == 0) {
    appendProperties(message, data);
  } else if (shape == 1) {
    sd_bus_message_open_container(message, 'a', "{sa{sv}}");
    for (int left = data.ConsumeIntegralInRange<int>(0, 3); left > 0; --left) {
      sd_bus_message_open_container(message, 'e', "sa{sv}");
      sd_bus_message_append_basic(message, 's', fuzz::text(data).c_str());
      appendProperties(message, data);
      sd_bus_message_close_container(message);
    }
    sd_bus_message_close_container(message);
  } else {
    for (int left = data.ConsumeIntegralInRange<int>(0, 4); left > 0; --left)
      fuzz::appendAny(message, data);
  }
  sd_bus_message_seal(message, 1, 0);
  sd_bus_message_rewind(message, 1);
  BusProperties properties;
  properties.read(message);
  check(properties, properties);
  sd_bus_message_rewind(message, 1);
  BusProperties last;
  readInterfaces(message, [&](const std::string&) {
    last = {};
    last.read(message);
    check(last, properties);
  });
  // As settings and properties that are asked for one by one.
  for (int left = 4; left > 0; --left)
    if (sd_bus_message_rewind(message, 0); !readTexts(message, 3))
      readVariant(message);
  sd_bus_message_rewind(message, 1);
  while (!textArgument(message).empty()) {
  }
  sd_bus_message_unref(message);
  return 0;
}
