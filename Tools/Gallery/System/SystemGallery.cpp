#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinWidgetsUI/System/ActivityViews.h"
#include "TavrinWidgetsUI/System/BatteryViews.h"
#include "TavrinWidgetsUI/System/NetworkViews.h"
#include "TavrinWidgetsUI/System/SystemPanelViews.h"
#include "Tools/Gallery/Gallery.h"
#include "Tools/Gallery/System/SystemStand.h"

#include <cmath>

namespace tavrin {
namespace {

struct BatteryCase {
  const char* name;
  BatteryReading reading;
};

const BatteryCase batteryCases[] = {
    {"charging", {0.63, true, true, 80}},      {"full", {1, false, true, {}}},
    {"on battery", {0.82, false, false, 325}}, {"low", {0.18, false, false, 31}},
    {"critical", {0.04, false, false, 5}},     {"none", {}},
};

struct TraceCase {
  const char* name;
  double down;
  double up;
};

constexpr TraceCase traceCases[] = {
    {"idle", 0, 0}, {"light", 1230, 88}, {"busy", 12.4e6, 999e3}, {"most", 1.24e9, 998e6}};

NetworkTrace traceOf(const TraceCase& trace) {
  NetworkTrace made{{trace.down, trace.up}, {}};
  for (int i = 0; i < 30; ++i)
    made.history.push_back({trace.down * (0.6 + 0.4 * std::sin(i * 0.7)),
                            trace.up * (0.5 + 0.5 * std::sin(i * 0.3 + 1))});
  return made;
}

void addTiles(GallerySheet& sheet, int span) {
  for (const auto style :
       {BatteryTileStyle::status, BatteryTileStyle::ring, BatteryTileStyle::icon})
    for (const bool shows : {true, false})
      for (const auto& battery : batteryCases)
        sheet.push_back({battery.name, span, [=](const TileSize& size) {
                           const BatterySettings settings{shows, style};
                           return size.isWide() ? batteryWideTile(battery.reading, settings, size)
                                                : batteryTileIcon(battery.reading, settings, size);
                         }});
  for (const auto style :
       {ActivityTileStyle::bars, ActivityTileStyle::numbers, ActivityTileStyle::rings})
    for (const int shown : {3, 1, 2, 0})
      for (const double level : {0.0, 0.37, 1.0})
        sheet.push_back(
            {"activity", span, [=](const TileSize& size) {
               const ActivitySettings settings{(shown & 1) != 0, (shown & 2) != 0, style};
               const ActivityReading reading{level, std::min(level + 0.24, 1.0)};
               return size.isWide() ? activityWideTile(reading, settings, size)
                                    : activityTileIcon(reading, settings, size);
             }});
  for (const auto style : {NetworkTileStyle::numbers, NetworkTileStyle::chart})
    for (const auto& trace : traceCases)
      sheet.push_back({trace.name, span, [=](const TileSize& size) {
                         const NetworkSettings settings{{}, style};
                         return size.isWide() ? networkWideTile(traceOf(trace), settings, size)
                                              : networkTileIcon(traceOf(trace), settings, size);
                       }});
}

GalleryPanel batteryPanel(const char* name, std::optional<int> level, bool isCharging,
                          std::vector<DeviceBattery> devices) {
  return {name, palette::green, [=](const PanelAppearance& look) {
            auto& at = systemStand("Battery", BatterySettings{});
            if (level)
              at.platform.power.sources = {{*level, 100, isCharging, isCharging, 80, 325}};
            at.platform.devices.batteries = devices;
            at.model.start();
            at.platform.devices.changes.call();
            return new BatteryPanelView(look, at.model, [] {});
          }};
}

GalleryPanel networkPanel(const char* name, std::vector<std::string> links, double scale) {
  return {name, downTint, [=](const PanelAppearance& look) {
            auto& at = systemStand("Network", NetworkSettings{});
            for (const auto& link : links)
              at.platform.host.links.push_back({link, 0, 0});
            at.model.start();
            for (int i = 0; i < 33; ++i) {
              at.platform.host.links[0].received +=
                  static_cast<std::uint64_t>(scale * (1.1 + std::sin(i * 0.7)));
              at.platform.host.links[0].sent +=
                  static_cast<std::uint64_t>(scale * 0.2 * (1.1 + std::sin(i * 0.3)));
              at.platform.loop.advance(2);
            }
            return new NetworkPanelView(
                look, at.model, [](const auto&) {}, [] {});
          }};
}

} // namespace

GallerySheet systemGallery() {
  GallerySheet sheet;
  addTiles(sheet, 1);
  return sheet;
}

GallerySheet systemWideGallery() {
  GallerySheet sheet;
  addTiles(sheet, 2);
  addTiles(sheet, 3);
  return sheet;
}

GalleryPanels systemPanels() {
  using Kind = DeviceBattery::Kind;
  const std::vector<DeviceBattery> devices = {
      {"1/L", "Earbuds (left)", Kind::headphones, 80},
      {"1/R", "Earbuds (right)", Kind::headphones, 100},
      {"1/case", "Earbuds case", Kind::headphonesCase, 7},
      {"2", "Compact Keyboard of an Unreasonably Long Name", Kind::keyboard, 55},
      {"3", "Mouse", Kind::mouse, 3},
      {"4", "Trackpad", Kind::trackpad, 44},
      {"5", "Phone", Kind::other, 61}};
  return {batteryPanel("charging", 63, true, devices),
          batteryPanel("battery", 12, false, {devices[3]}),
          batteryPanel("none", {}, false, {}),
          {"activity", cpuTint,
           [](const PanelAppearance& look) {
             auto& at = systemStand("Activity", ActivitySettings{});
             at.platform.host.memory = MemoryLoad{61, 100};
             at.platform.host.cpu = CPULoad{10, 0, 90, 0};
             at.model.start();
             for (unsigned i = 1; i <= 33; ++i) {
               const auto used = static_cast<unsigned>(30 + 20 * std::sin(i * 0.8));
               at.platform.host.memory = MemoryLoad{50 + i / 3, 100};
               at.platform.host.cpu->user += i == 33 ? 23 : used;
               at.platform.host.cpu->idle += i == 33 ? 77 : 100 - used;
               at.platform.loop.advance(2);
             }
             return new ActivityPanelView(look, at.model, [] {});
           }},
          networkPanel("network", {"enp3s0", "wlp2s0"}, 24e6),
          networkPanel("ten links",
                       {"eth0", "eth1", "wlan0", "br-0123456789ab", "veth1", "veth2", "tun0", "wg0",
                        "docker0", "virbr0"},
                       4000)};
}

const GalleryEntry systemEntries[] = {
    {"system", systemGallery}, {"system-wide", systemWideGallery}, {"system-panels", systemPanels}};

} // namespace tavrin
