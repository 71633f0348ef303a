#include "MacRigs.h"
#include "TavrinPlatform/macOS/Desktop/MacKeychain.h"
#include "TavrinPlatform/macOS/Devices/MacHostStatistics.h"
#include "TavrinPlatform/macOS/Devices/MacPowerSources.h"
#include "TavrinPlatform/macOS/Dock/MacDockProcess.h"
#include "TavrinPlatform/macOS/Dock/MacPreferencesService.h"
#include "Tests/Platform/DockProcessContract.h"
#include "Tests/Platform/HostStatisticsContract.h"
#include "Tests/Platform/KeychainContract.h"
#include "Tests/Platform/PowerSourcesContract.h"
#include "Tests/Platform/PreferencesServiceContract.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <cstring>
#include <ctime>
#include <fstream>
#include <sys/socket.h>

/// The macOS adapters on the fake system, by the same suites as the others.
namespace tavrin::test {
namespace {

struct MacPreferencesRig : FakeMac {
  PreferencesService& service() { return service_; }
  void store(const std::string& domain, const std::string& key, PropertyList value) {
    fake::system().preferences[domain].insert_or_assign(key, std::move(value));
  }
  std::optional<PropertyList> stored(const std::string& domain, const std::string& key) {
    const auto& entries = fake::system().preferences[domain];
    const auto found = entries.find(key);
    return found == entries.end() ? std::nullopt : std::optional(found->second);
  }
  void refuse() { fake::system().preferencesRefuse = true; }
  MacPreferencesService service_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PreferencesServiceContract, MacPreferencesRig);

struct MacKeychainRig : FakeMac {
  Keychain& keychain() { return keychain_; }
  void refuse(int status) { fake::system().keychainStatus = status; }
  MacKeychain keychain_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, KeychainContract, MacKeychainRig);

struct MacStatisticsRig : FakeMac {
  HostStatistics& statistics() { return statistics_; }
  void set(const CPULoad& load) {
    const std::uint64_t values[] = {load.user, load.system, load.idle, load.nice};
    std::copy(std::begin(values), std::end(values), fake::system().ticks);
  }
  void set(const MemoryLoad& load) {
    fake::system().physicalMemory = load.physical;
    const auto pages = static_cast<std::uint32_t>(load.used / 16384);
    fake::system().pages[0] = pages - 2;
    fake::system().pages[1] = fake::system().pages[2] = 1;
  }
  void setLinks(const std::vector<LinkCounters>& links) {
    for (const auto& link : links) {
      // Each link is listed once more for each of its addresses.
      fake::system().links.push_back({link.name, AF_LINK, link.received, link.sent});
      fake::system().links.push_back({link.name, AF_INET, link.received, link.sent});
      fake::system().links.push_back({link.name, AF_INET6, link.received, link.sent});
    }
  }
  void fail() { fake::system().statisticsFail = true; }
  MacHostStatistics statistics_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, HostStatisticsContract, MacStatisticsRig);

struct MacDockRig : FakeMac {
  DockProcess& process() { return process_; }
  void add(int number, const std::string& name, uid_t user, double age, bool hasEnded) {
    proc_bsdinfo info{};
    info.pbi_pid = static_cast<std::uint32_t>(number);
    info.pbi_uid = user == ::getuid() ? 501 : 502;
    info.pbi_ruid = user;
    info.pbi_status = hasEnded ? 5 : 2;
    std::strncpy(info.pbi_comm, name.c_str(), sizeof info.pbi_comm - 1);
    std::strncpy(info.pbi_name, name.c_str(), sizeof info.pbi_name - 1);
    info.pbi_start_tvsec = static_cast<std::uint64_t>(std::time(nullptr)) - std::uint64_t(age);
    fake::system().processes.push_back(info);
  }
  void script(const std::string& text) {
    std::filesystem::remove(killall);
    std::ofstream(killall) << text;
    std::filesystem::permissions(killall, std::filesystem::perms::owner_all);
  }
  TemporaryFolder folder;
  std::filesystem::path killall = folder.path() / "killall";
  MacDockProcess process_{killall};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, DockProcessContract, MacDockRig);

struct MacPowerRig : FakeMac {
  PowerSources& sources() { return sources_; }
  void set(const std::vector<PowerSource>& list) {
    fake::system().powerSources.clear();
    for (const auto& source : list) {
      std::map<std::string, PropertyList> entries = {
          {"Power Source State", source.isOnACPower ? "AC Power" : "Battery Power"},
          {"Is Charging", source.isCharging},
          {"Type", "InternalBattery"}};
      const auto put = [&](const char* key, const std::optional<int>& value) {
        if (value)
          entries.insert_or_assign(key, *value);
      };
      put("Current Capacity", source.currentCapacity);
      put("Max Capacity", source.maximumCapacity);
      put("Time to Full Charge", source.timeToFullCharge);
      put("Time to Empty", source.timeToEmpty);
      fake::system().powerSources.push_back(entries);
    }
  }
  void tell() { fake::system().powerCallback(fake::system().powerContext); }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  MacPowerSources sources_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PowerSourcesContract, MacPowerRig);

} // namespace
} // namespace tavrin::test
