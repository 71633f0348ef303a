#pragma once

#include "TavrinCore/Dock/PropertyList.h"
#include "TavrinPlatform/macOS/Devices/AppleSMC.h"

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>

#include <map>
#include <optional>
#include <string>
#include <sys/proc_info.h>
#include <vector>

/// The system's side of the calls that the adapters make, with what was asked and what is given.
namespace tavrin::fake {

struct SMCKey {
  std::string type;
  std::vector<std::uint8_t> bytes;
  std::uint8_t readResult = 0;
  std::uint8_t writeResult = 0;
};

struct Link {
  std::string name;
  int family;
  std::uint32_t received;
  std::uint32_t sent;
  bool hasData = true;
};

struct System {
  // Mach
  int hostRights = 0;
  int interfaceLists = 0;
  bool statisticsFail = false;
  bool pageSizeFails = false;
  std::uint64_t physicalMemory = 8ULL << 30;
  std::uint32_t ticks[4] = {};
  std::uint32_t pages[3] = {};
  std::vector<Link> links;
  // Power
  bool hasPowerInfo = true;
  bool hasPowerList = true;
  std::vector<std::map<std::string, PropertyList>> powerSources;
  bool hasUndescribedSource = false;
  void (*powerCallback)(void*) = nullptr;
  void* powerContext = nullptr;
  CFRunLoopSourceRef powerNotices = nullptr;
  // Registry
  std::map<std::string, std::vector<std::map<std::string, PropertyList>>> services;
  kern_return_t matchingStatus = KERN_SUCCESS;
  int kernelObjects = 0;
  int connections = 0;
  // SMC
  kern_return_t openStatus = KERN_SUCCESS;
  kern_return_t callStatus = KERN_SUCCESS;
  std::map<std::string, SMCKey> smc;
  bool smcSleeps = false;
  std::vector<std::string> smcCalls;
  // Processes
  std::vector<proc_bsdinfo> processes;
  // Preferences
  std::map<std::string, std::map<std::string, PropertyList>> preferences;
  std::map<std::string, std::map<std::string, PropertyList>> unwritten;
  bool preferencesRefuse = false;
  // Keychain
  std::map<std::pair<std::string, std::string>, std::string> passwords;
  std::int32_t keychainStatus = 0;
  bool keychainGivesOtherThanData = false;
  bool keychainIsLocked = false;
  /// What the user answers where an item was made by another program; none for own items.
  std::optional<bool> userLetsRead;
  int questions = 0;
  bool interactionAllowed = true;
  std::vector<bool> interactionAtCalls;
  std::map<std::string, std::string> lastAttributes;
  // Log
  std::vector<std::string> log;
};

/// The one that the calls serve; a test begins with a new one.
System& system();

} // namespace tavrin::fake
