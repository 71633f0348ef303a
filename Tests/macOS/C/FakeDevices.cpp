#include "FakeCoreFoundation.h"
#include "FakeSystem.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/ps/IOPowerSources.h>
#include <cstring>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <mach/mach.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/sysctl.h>

using namespace tavrin;

namespace tavrin::fake {
System& system() {
  static System one;
  return one;
}
} // namespace tavrin::fake

namespace {

constexpr mach_port_t host = 77;
constexpr mach_port_t task = 5;
constexpr io_connect_t smcConnection = 900;

/// A right handed out: what it stands for.
struct Right {
  std::vector<const std::map<std::string, PropertyList>*> services;
  std::size_t next = 0;
};
std::map<io_object_t, Right>& rights() {
  static std::map<io_object_t, Right> all;
  return all;
}
io_object_t give(Right right) {
  static io_object_t last = 1000;
  rights()[++last] = std::move(right);
  ++fake::system().kernelObjects;
  return last;
}
std::string keyText(std::uint32_t code) {
  return {char(code >> 24), char(code >> 16 & 255), char(code >> 8 & 255), char(code & 255)};
}
std::uint32_t keyCode(const std::string& text) {
  std::uint32_t code = 0;
  for (const char c : text)
    code = code << 8 | std::uint8_t(c);
  return code;
}

} // namespace

extern "C" {
mach_port_t mach_task_self_ = task;
extern const mach_port_t kIOMainPortDefault = 0;
mach_port_t mach_host_self() {
  ++fake::system().hostRights;
  return host;
}
kern_return_t mach_port_deallocate(task_t owner, mach_port_name_t name) {
  EXPECT_EQ(owner, task);
  EXPECT_EQ(name, host);
  --fake::system().hostRights;
  return KERN_SUCCESS;
}
kern_return_t host_page_size(host_t, vm_size_t* size) {
  *size = 16384;
  return fake::system().pageSizeFails ? KERN_FAILURE : KERN_SUCCESS;
}
kern_return_t host_statistics(host_t asked, host_flavor_t flavour, host_info_t info,
                              mach_msg_type_number_t* count) {
  EXPECT_EQ(asked, host);
  EXPECT_EQ(flavour, HOST_CPU_LOAD_INFO);
  EXPECT_EQ(*count, HOST_CPU_LOAD_INFO_COUNT);
  std::memcpy(info, fake::system().ticks, sizeof(host_cpu_load_info_data_t));
  return fake::system().statisticsFail ? KERN_FAILURE : KERN_SUCCESS;
}
kern_return_t host_statistics64(host_t, host_flavor_t flavour, host_info64_t info,
                                mach_msg_type_number_t* count) {
  EXPECT_EQ(flavour, HOST_VM_INFO64);
  EXPECT_EQ(*count, HOST_VM_INFO64_COUNT);
  std::memcpy(info, fake::system().pages, sizeof(vm_statistics64_data_t));
  return fake::system().statisticsFail ? KERN_FAILURE : KERN_SUCCESS;
}
int sysctlbyname(const char* name, void* old, size_t* size, void*, size_t) {
  EXPECT_STREQ(name, "hw.memsize");
  EXPECT_EQ(*size, 8U);
  std::memcpy(old, &fake::system().physicalMemory, 8);
  return 0;
}
int getifaddrs(ifaddrs** first) noexcept {
  auto& system = fake::system();
  if (system.statisticsFail)
    return -1;
  ++system.interfaceLists;
  *first = nullptr;
  for (auto link = system.links.rbegin(); link != system.links.rend(); ++link) {
    auto* address = link->family != 0 ? new sockaddr{sa_family_t(link->family), {}} : nullptr;
    auto* counters = link->hasData ? new if_data{link->received, link->sent} : nullptr;
    *first = new ifaddrs{*first, link->name.data(), 0, address, nullptr, {nullptr}, counters};
  }
  return 0;
}
void freeifaddrs(ifaddrs* entry) noexcept {
  --fake::system().interfaceLists;
  while (entry != nullptr) {
    delete entry->ifa_addr;
    delete static_cast<if_data*>(entry->ifa_data);
    delete std::exchange(entry, entry->ifa_next);
  }
}

CFTypeRef IOPSCopyPowerSourcesInfo() {
  if (!fake::system().hasPowerInfo)
    return nullptr;
  std::vector<CFTypeRef> sources;
  for (const auto& source : fake::system().powerSources)
    sources.push_back(fake::objectOf(PropertyList::Dictionary(source.begin(), source.end())));
  return fake::array(std::move(sources));
}
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef snapshot) {
  if (!fake::system().hasPowerList)
    return nullptr;
  std::vector<CFTypeRef> handles;
  if (fake::system().hasUndescribedSource)
    handles.push_back(fake::number(-1));
  for (CFIndex i = 0; i < CFArrayGetCount(static_cast<CFArrayRef>(snapshot)); ++i)
    handles.push_back(fake::number(double(i)));
  return fake::array(std::move(handles));
}
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef snapshot, CFTypeRef source) {
  int index = 0;
  CFNumberGetValue(static_cast<CFNumberRef>(source), kCFNumberIntType, &index);
  return index < 0 ? nullptr
                   : static_cast<CFDictionaryRef>(
                         CFArrayGetValueAtIndex(static_cast<CFArrayRef>(snapshot), index));
}
CFRunLoopSourceRef IOPSNotificationCreateRunLoopSource(IOPowerSourceCallbackType callback,
                                                       void* context) {
  auto& system = fake::system();
  system.powerCallback = callback;
  system.powerContext = context;
  return system.powerNotices = fake::makeSource();
}

CFMutableDictionaryRef IOServiceMatching(const char* name) {
  return const_cast<CFMutableDictionaryRef>(
      fake::dictionary({{"IOProviderClass", fake::text(name)}}));
}
kern_return_t IOServiceGetMatchingServices(mach_port_t port, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
  EXPECT_EQ(port, kIOMainPortDefault);
  const auto name = fake::textOf(fake::entryOf(matching, "IOProviderClass"));
  CFRelease(matching);
  if (fake::system().matchingStatus != KERN_SUCCESS)
    return fake::system().matchingStatus;
  Right right;
  for (const auto& service : fake::system().services[name])
    right.services.push_back(&service);
  *existing = right.services.empty() ? 0 : give(std::move(right));
  return KERN_SUCCESS;
}
io_service_t IOServiceGetMatchingService(mach_port_t, CFDictionaryRef matching) {
  const auto name = fake::textOf(fake::entryOf(matching, "IOProviderClass"));
  CFRelease(matching);
  const auto& found = fake::system().services[name];
  return found.empty() ? 0 : give({{&found.front()}});
}
io_object_t IOIteratorNext(io_iterator_t iterator) {
  auto& right = rights().at(iterator);
  if (right.next >= right.services.size())
    return 0;
  const auto* service = right.services[right.next++];
  return give({{service}});
}
kern_return_t IOObjectRelease(io_object_t object) {
  EXPECT_EQ(rights().erase(object), 1U) << "a kernel object let go of that was not held";
  --fake::system().kernelObjects;
  return KERN_SUCCESS;
}
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef,
                                          IOOptionBits) {
  const auto& properties = *rights().at(entry).services.at(0);
  const auto found = properties.find(fake::textOf(key));
  return found == properties.end() ? nullptr : fake::objectOf(found->second);
}
kern_return_t IOServiceOpen(io_service_t service, task_port_t owner, uint32_t type,
                            io_connect_t* connection) {
  EXPECT_TRUE(rights().contains(service));
  EXPECT_EQ(owner, task);
  EXPECT_EQ(type, 0U);
  if (fake::system().openStatus != KERN_SUCCESS)
    return fake::system().openStatus;
  ++fake::system().connections;
  *connection = smcConnection;
  return KERN_SUCCESS;
}
kern_return_t IOServiceClose(io_connect_t connection) {
  EXPECT_EQ(connection, smcConnection);
  --fake::system().connections;
  return KERN_SUCCESS;
}
kern_return_t IOConnectCallStructMethod(mach_port_t connection, uint32_t selector, const void* input,
                                        size_t inputSize, void* output, size_t* outputSize) {
  using smc::Command;
  auto& system = fake::system();
  EXPECT_EQ(connection, smcConnection);
  EXPECT_EQ(selector, 2U);
  EXPECT_EQ(inputSize, 80U);
  EXPECT_EQ(*outputSize, 80U);
  smc::Message asked;
  std::memcpy(&asked, input, sizeof asked);
  const auto name = asked.key != 0 ? keyText(asked.key) : std::string();
  system.smcCalls.push_back(std::to_string(int(asked.command)) + name);
  smc::Message answer = asked;
  const auto found = system.smc.find(name);
  answer.result = smc::success;
  if (asked.command == Command::keyAtIndex)
    system.smcSleeps = false;
  else if (system.smcSleeps || found == system.smc.end())
    answer.result = smc::keyNotFound;
  else if (asked.command == Command::keyInfo)
    answer.info = {std::uint32_t(found->second.bytes.size()), keyCode(found->second.type), 0};
  else if (asked.info.size != found->second.bytes.size())
    answer.result = smc::sizeMismatch;
  else if (asked.command == Command::readValue) {
    answer.result = found->second.readResult;
    std::copy(found->second.bytes.begin(), found->second.bytes.end(), answer.bytes);
  } else if ((answer.result = found->second.writeResult) == smc::success) {
    EXPECT_EQ(asked.command, Command::writeValue);
    found->second.bytes.assign(asked.bytes, asked.bytes + asked.info.size);
  }
  std::memcpy(output, &answer, sizeof answer);
  return system.callStatus;
}
}
