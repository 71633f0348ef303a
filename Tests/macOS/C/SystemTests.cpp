#include "MacRigs.h"
#include "TavrinPlatform/macOS/Base/CFRef.h"
#include "TavrinPlatform/macOS/Base/UserLanguages.h"
#include "TavrinPlatform/macOS/Desktop/MacKeychain.h"
#include "TavrinPlatform/macOS/Desktop/MacLogSink.h"
#include "TavrinPlatform/macOS/Devices/MacConnectedDevices.h"
#include "TavrinPlatform/macOS/Devices/MacHostStatistics.h"
#include "TavrinPlatform/macOS/Devices/MacPowerSources.h"
#include "TavrinPlatform/macOS/Devices/SMCConnection.h"
#include "TavrinPlatform/macOS/Dock/MacDockProcess.h"
#include "TavrinPlatform/macOS/Dock/MacPreferencesService.h"
#include "Tests/Support/ManualRunLoop.h"

#include <cstdlib>
#include <cstring>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

namespace tavrin::test {
namespace {

class MacC : public testing::Test {
protected:
  fake::System& mac() { return fake::system(); }
  FakeMac fakes;
};

using MacStatistics = MacC;
TEST_F(MacStatistics, MemoryInUseIsActiveWiredAndCompressedPages) {
  MacHostStatistics statistics;
  mac().pages[0] = 100'000;
  mac().pages[1] = 20'000;
  mac().pages[2] = 4'000'000;
  mac().physicalMemory = 128ULL << 30;
  EXPECT_EQ(statistics.memoryLoad(), (MemoryLoad{4'120'000ULL * 16384, 128ULL << 30}));
  mac().pageSizeFails = true;
  EXPECT_EQ(statistics.memoryLoad(), std::nullopt);
}
TEST_F(MacStatistics, OnlyLinkLevelEntriesCount) {
  MacHostStatistics statistics;
  mac().links = {{"utun0", 0, 5, 5}, {"en0", AF_INET, 9, 9}, {"en1", AF_LINK, 1, 2, false},
                 {"en0", AF_LINK, 3, 4}};
  std::vector<std::string> told;
  statistics.eachLink([&](std::string_view name, std::uint64_t received, std::uint64_t sent) {
    told.push_back(std::string(name) + ' ' + std::to_string(received) + ' ' + std::to_string(sent));
  });
  EXPECT_EQ(told, std::vector<std::string>{"en0 3 4"});
}

using MacPower = MacC;
TEST_F(MacPower, NothingIsKnownWithoutASnapshotOrAList) {
  MacPowerSources sources;
  mac().powerSources = {{{"Current Capacity", 1}}};
  mac().hasPowerList = false;
  EXPECT_TRUE(sources.list().empty());
  mac().hasPowerInfo = false;
  EXPECT_TRUE(sources.list().empty());
}
TEST_F(MacPower, ValuesOfAnotherSortAreNone) {
  MacPowerSources sources;
  mac().hasUndescribedSource = true;
  mac().powerSources = {{{"Current Capacity", "90"},
                         {"Max Capacity", 99.5},
                         {"Power Source State", true},
                         {"Is Charging", 1},
                         {"Time to Empty", true}}};
  EXPECT_EQ(sources.list(), std::vector<PowerSource>{PowerSource{}});
}
TEST_F(MacPower, ABatteryAloneEstimatesItsEnd) {
  MacPowerSources sources;
  mac().powerSources = {{},
                        {{"Current Capacity", 99},
                         {"Max Capacity", 100},
                         {"Power Source State", "Battery Power"},
                         {"Is Charging", false},
                         {"Time to Full Charge", 0},
                         {"Time to Empty", -1}}};
  EXPECT_EQ(sources.list(),
            (std::vector<PowerSource>{PowerSource{}, {99, 100, false, false, 0, -1}}));
}
TEST_F(MacPower, NoticesComeWithTheMainLoopUntilTheEnd) {
  int told = 0;
  CFRunLoopSourceRef source = nullptr;
  {
    MacPowerSources sources;
    auto one = sources.observe([&] { ++told; });
    source = mac().powerNotices;
    ASSERT_NE(source, nullptr);
    CFRetain(source);
    EXPECT_EQ(fake::sourceOf(source).loop, CFRunLoopGetMain());
    EXPECT_EQ(fake::sourceOf(source).mode, "common modes");
    const auto two = sources.observe([] {});
    EXPECT_EQ(mac().powerNotices, source) << "one source for all";
    mac().powerCallback(mac().powerContext);
    EXPECT_EQ(told, 1);
  }
  EXPECT_TRUE(fake::sourceOf(source).isInvalid);
  CFRelease(source);
}

/// Answers when the test says so.
struct HeldProcesses final : ProcessRunner {
  TokenPtr run(ProcessRequest request, std::function<void(const ProcessResult&)> done) override {
    requests.push_back(std::move(request));
    answer = std::move(done);
    return std::make_unique<Token>();
  }
  std::vector<ProcessRequest> requests;
  std::function<void(const ProcessResult&)> answer;
};
struct Lines final : LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    all.emplace_back(message);
  }
  std::vector<std::string> all;
};

class MacDevices : public MacC {
protected:
  MacDevices() { mac().services["AppleDeviceManagementHIDEventService"] = services; }
  ProcessResult report(const std::string& json) {
    ProcessResult result;
    result.outcome = ProcessResult::Outcome::exited;
    result.status = 0;
    result.standardOutput = json;
    return result;
  }
  const std::vector<std::map<std::string, PropertyList>> services = {
      {{"BatteryPercent", 83}, {"DeviceAddress", "98-46-0A-b4-c3-ef"}},
      {{"Product", "built in"}},
      {{"BatteryPercent", "83"}, {"DeviceAddress", 4}}};
  ManualClock clock{{}};
  ManualRunLoop loop{clock};
  HeldProcesses processes;
  Lines log;
  MacConnectedDevices devices{loop, processes, log};
};
TEST_F(MacDevices, TheRegistryTellsPercentAndAddress) {
  const auto found = registeredInputDevices();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].batteryPercent, 83);
  EXPECT_EQ(found[0].deviceAddress, "98-46-0A-b4-c3-ef");
  EXPECT_EQ(found[1].batteryPercent, std::nullopt);
  EXPECT_EQ(found[2].batteryPercent, std::nullopt);
  EXPECT_EQ(found[2].deviceAddress, std::nullopt);
  mac().matchingStatus = KERN_FAILURE;
  EXPECT_TRUE(registeredInputDevices().empty());
}
TEST_F(MacDevices, TheReportAndTheRegistryMeetByAddress) {
  int told = 0;
  const auto token = devices.observe([&] { ++told; });
  devices.refresh();
  devices.refresh();
  loop.runBackground();
  ASSERT_EQ(processes.requests.size(), 1U) << "one report at a time";
  EXPECT_EQ(processes.requests[0].program, "/usr/sbin/system_profiler");
  EXPECT_EQ(processes.requests[0].arguments,
            (std::vector<std::string>{"-json", "SPBluetoothDataType"}));
  EXPECT_EQ(processes.requests[0].timeLimit, 10);
  const std::string json =
      R"({"SPBluetoothDataType":[{"device_connected":[{"Keys":{"device_address":"98:46:0A:B4:C3:EF","device_minorType":"Keyboard"}}]}]})";
  processes.answer(report(json));
  ASSERT_EQ(devices.connected().size(), 1U);
  EXPECT_EQ(devices.connected()[0].percent, 83);
  EXPECT_EQ(devices.connected()[0].kind, DeviceBattery::Kind::keyboard);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(log.all, std::vector<std::string>{"bluetooth report: " + json});
  devices.refresh();
  loop.runBackground();
  ProcessResult late;
  late.outcome = ProcessResult::Outcome::timedOut;
  processes.answer(late);
  EXPECT_TRUE(devices.connected().empty());
  EXPECT_EQ(told, 2);
}

class MacSMC : public MacC {
protected:
  MacSMC() {
    mac().services["AppleSMC"] = {{}};
    mac().smc["FNum"] = {"ui8 ", {2}};
    mac().smc["F0Ac"] = {"flt ", {0, 0, 0x80, 0x44}};
    mac().smc["F0Mx"] = {"fpe2", {0x17, 0x70}};
  }
  template <class Call> std::string trouble(const Call& call) {
    try {
      call();
    } catch (const FanError& error) {
      return error.what();
    }
    return "none";
  }
};
TEST_F(MacSMC, ReadsAValueWithItsTypeByTwoCommandsOnOneConnection) {
  SMCConnection smc;
  EXPECT_EQ(mac().connections, 0);
  EXPECT_EQ(smc.read("F0Ac"), (SMCValue{"flt ", {0, 0, 0x80, 0x44}}));
  EXPECT_EQ(smc.read("F0Ac").number(), 1024);
  EXPECT_EQ(smc.read("F0Mx").number(), 1500);
  EXPECT_EQ(mac().connections, 1);
  EXPECT_EQ((std::vector<std::string>(mac().smcCalls.begin(), mac().smcCalls.begin() + 2)),
            (std::vector<std::string>{"9F0Ac", "5F0Ac"}));
}
TEST_F(MacSMC, WritesTheBytesInTheValuesLength) {
  SMCConnection smc;
  smc.write("F0Mx", {0x0f, 0xa0});
  EXPECT_EQ(mac().smc["F0Mx"].bytes, (std::vector<std::uint8_t>{0x0f, 0xa0}));
  EXPECT_EQ(mac().smcCalls.back(), "6F0Mx");
}
TEST_F(MacSMC, SaysWhyItFailed) {
  SMCConnection smc;
  const auto read = [&](const char* key) { return trouble([&] { smc.read(key); }); };
  mac().services.clear();
  EXPECT_EQ(read("FNum"),
            "Failed to reach the fan controller because the AppleSMC service is missing");
  mac().services["AppleSMC"] = {{}};
  mac().openStatus = kIOReturnNotPermitted;
  EXPECT_EQ(read("FNum"), "Failed to reach the fan controller because the connection was refused "
                          "(0xe00002e2)");
  mac().openStatus = KERN_SUCCESS;
  EXPECT_EQ(read("F9Ac"), "Failed to read fan value F9Ac because the key does not exist");
  EXPECT_EQ(read("long key"), "Failed to read fan value long key because the key does not exist");
  mac().smc["FNum"].readResult = 0x82;
  EXPECT_EQ(read("FNum"), "Failed to read fan value FNum because the SMC returned 0x82");
  mac().smc["Long"] = {"ch8*", std::vector<std::uint8_t>(33)};
  EXPECT_EQ(read("Long"),
            "Failed to read fan value Long because the value is longer than 32 bytes");
  mac().smc["F0Mx"].writeResult = 0x82;
  EXPECT_EQ(trouble([&] { smc.write("F0Mx", {0, 0}); }),
            "Failed to write fan value F0Mx because the SMC returned 0x82");
  mac().callStatus = kIOReturnNotPrivileged;
  EXPECT_EQ(trouble([&] { smc.write("F0Mx", {0, 0}); }),
            "Failed to write fan value F0Mx because the kernel returned 0xe00002c1");
}
TEST_F(MacSMC, AControllerThatKnowsNoKeyIsWokenOnce) {
  SMCConnection smc;
  mac().smcSleeps = true;
  EXPECT_EQ(smc.read("FNum").number(), 2);
  EXPECT_EQ(mac().smcCalls, (std::vector<std::string>{"9FNum", "8", "9FNum", "5FNum"}));
  EXPECT_NE(trouble([&] { smc.read("F9Ac"); }), "none");
  EXPECT_EQ(mac().smcCalls.back(), "9F9Ac");
}

using MacDock = MacC;
TEST_F(MacDock, ANameThatWasNotRegisteredIsTheCommandsAndAnUnknownStartHasNoAge) {
  proc_bsdinfo info{};
  info.pbi_pid = 12;
  info.pbi_uid = 501;
  info.pbi_ruid = ::getuid();
  std::strcpy(info.pbi_comm, "Dock");
  mac().processes = {info};
  MacDockProcess dock;
  ASSERT_TRUE(dock.running());
  EXPECT_EQ(dock.running()->id, 12);
  EXPECT_EQ(dock.running()->age, std::nullopt);
  // The kernel refuses to tell of the superuser's processes.
  mac().processes[0].pbi_uid = 0;
  EXPECT_FALSE(dock.running());
}

using MacSecrets = MacC;
TEST_F(MacSecrets, AsksForOnePasswordsBytesAndNotTheUser) {
  MacKeychain keychain;
  mac().passwords[{"dev.quellby.tavrin.clipboard", "primary"}] = "key";
  EXPECT_EQ(keychain.find("dev.quellby.tavrin.clipboard", "primary"), Data::fromText("key"));
  using Attributes = std::map<std::string, std::string>;
  EXPECT_EQ(mac().lastAttributes, (Attributes{{"class", "genp"},
                                              {"svce", "dev.quellby.tavrin.clipboard"},
                                              {"acct", "primary"},
                                              {"r_Data", "true"},
                                              {"m_Limit", "m_LimitOne"}}));
  keychain.add("service", "account", Data::fromText("bytes"));
  EXPECT_EQ(mac().lastAttributes, (Attributes{{"class", "genp"},
                                              {"svce", "service"},
                                              {"acct", "account"},
                                              {"pdmn", "ck"}}));
  EXPECT_EQ(mac().interactionAtCalls, (std::vector<bool>{false, false}));
  EXPECT_TRUE(mac().interactionAllowed);
}
TEST_F(MacSecrets, TheUserIsAskedOnceForWhatAnotherProgramKept) {
  mac().passwords[{"service", "account"}] = "key";
  mac().userLetsRead = true;
  EXPECT_EQ(MacKeychain().find("service", "account"), Data::fromText("key"));
  EXPECT_EQ(mac().questions, 1);
  mac().userLetsRead = false;
  MacKeychain keychain;
  const auto statusOf = [&] {
    try {
      keychain.find("service", "account");
    } catch (const KeychainError& error) {
      return error.status();
    }
    return 0;
  };
  EXPECT_EQ(statusOf(), -128) << "the user said no";
  EXPECT_EQ(statusOf(), -25308);
  EXPECT_EQ(mac().questions, 2) << "and is not asked again";
  EXPECT_TRUE(mac().interactionAllowed);
}
TEST_F(MacSecrets, NobodyIsAskedToUnlock) {
  mac().passwords[{"service", "account"}] = "key";
  mac().keychainIsLocked = true;
  EXPECT_THROW(MacKeychain().find("service", "account"), KeychainError);
  EXPECT_EQ(mac().questions, 0);
}
TEST_F(MacSecrets, ASuccessWithoutBytesIsNone) {
  MacKeychain keychain;
  mac().passwords[{"service", "account"}] = "key";
  mac().keychainGivesOtherThanData = true;
  EXPECT_EQ(keychain.find("service", "account"), std::nullopt);
}
TEST_F(MacSecrets, WhatAnotherProcessAddedFirstIsADuplicate) {
  MacKeychain keychain;
  keychain.add("service", "account", Data::fromText("one"));
  try {
    keychain.add("service", "account", Data::fromText("two"));
    FAIL();
  } catch (const KeychainError& error) {
    EXPECT_EQ(error.status(), -25299);
  }
  EXPECT_EQ((mac().passwords[{"service", "account"}]), "one");
  EXPECT_TRUE(mac().interactionAllowed);
}
TEST_F(MacSecrets, AnAttributeThatCannotBeMadeIsARefusal) {
  MacKeychain keychain;
  fake::failNext(CFStringGetTypeID());
  EXPECT_THROW(keychain.find("service", "account"), KeychainError);
}

class MacLanguages : public MacC {
protected:
  MacLanguages() {
    for (const auto* name : names)
      if (const char* value = std::getenv(name)) {
        before.emplace_back(name, value);
        ::unsetenv(name);
      }
  }
  ~MacLanguages() override {
    for (const auto* name : names)
      ::unsetenv(name);
    for (const auto& [name, value] : before)
      ::setenv(name.c_str(), value.c_str(), 1);
  }
  bool named() { return nameLanguages(service, "dev.quellby.Tavrin.Slot3"); }
  static std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "none";
  }
  PropertyList& setting(const char* key) {
    return mac().preferences["dev.quellby.Tavrin.Slot3"][key];
  }
  const char* names[5] = {"TAVRIN_LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"};
  std::vector<std::pair<std::string, std::string>> before;
  MacPreferencesService service;
};
TEST_F(MacLanguages, SettingsNameThemWhereTheEnvironmentDoesNot) {
  EXPECT_FALSE(named());
  setting("AppleLanguages") = PropertyList::Array{"de-AT", "zh-Hans-CN", "en", 1};
  EXPECT_TRUE(named());
  EXPECT_EQ(variable("LANG"), "de_AT.UTF-8") << "nothing says whose formats";
  EXPECT_EQ(variable("LANGUAGE"), "de_AT:zh_CN:en");
  setting("AppleLanguages") = PropertyList::Array{"ar"};
  EXPECT_FALSE(named()) << "named by now";
  EXPECT_EQ(variable("LANGUAGE"), "de_AT:zh_CN:en");
}
TEST_F(MacLanguages, FormatsAreTheRegions) {
  for (const auto& [identifier, locale] : {std::pair("en_DE", "en_DE.UTF-8"),
                                           std::pair("en_US@rg=dezzzz", "en_DE.UTF-8"),
                                           std::pair("ar_EG@calendar=gregorian;rg=aezzzz", "ar_AE.UTF-8"),
                                           std::pair("de_DE@calendar=iso8601", "de_DE.UTF-8"),
                                           std::pair("de_DE@rg=", "de_DE.UTF-8")}) {
    ::unsetenv("LANG");
    setting("AppleLocale") = identifier;
    EXPECT_TRUE(named());
    EXPECT_EQ(variable("LANG"), locale) << identifier;
    EXPECT_EQ(variable("LANGUAGE"), "none");
  }
}

using MacLog = MacC;
TEST_F(MacLog, LevelsAndLongMessages) {
  MacLogSink sink;
  const Log log(sink, "slot");
  log.debug("a");
  log.info("b");
  log.error("%s");
  EXPECT_EQ(mac().log, (std::vector<std::string>{"dev.quellby.tavrin/slot 2 a",
                                                 "dev.quellby.tavrin/slot 1 b",
                                                 "dev.quellby.tavrin/slot 16 %s"}));
  mac().log.clear();
  std::string report;
  for (int i = 0; i < 700; ++i)
    report += "ä" + std::to_string(i % 10);
  log.info(report);
  std::string whole;
  for (const auto& piece : mac().log) {
    EXPECT_LE(piece.size() - 26, MacLogSink::longestPiece);
    whole += piece.substr(26);
  }
  EXPECT_EQ(whole, report);
  EXPECT_EQ(mac().log.size(), 3U);
}

} // namespace
} // namespace tavrin::test
