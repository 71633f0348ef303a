#pragma once

#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Platform.h"
#include "Tests/Support/HandlerList.h"

#include <map>
#include <string>
#include <vector>

namespace tavrin::test {

class FakeHostStatistics final : public HostStatistics {
public:
  struct Link {
    std::string name;
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
  };
  std::optional<CPULoad> cpuLoad() override {
    ++reads;
    return cpu;
  }
  std::optional<MemoryLoad> memoryLoad() override { return memory; }
  void eachLink(const LinkVisitor& visit) override {
    ++reads;
    for (const auto& link : links)
      visit(link.name, link.received, link.sent);
  }

  std::optional<CPULoad> cpu;
  std::optional<MemoryLoad> memory;
  std::vector<Link> links;
  int reads = 0;
};

class FakePowerSources final : public PowerSources {
public:
  std::vector<PowerSource> list() override { return sources; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  std::vector<PowerSource> sources;
  HandlerList changes;
};

/// A refresh is answered by `changes.call()`.
class FakeConnectedDevices final : public ConnectedDevices {
public:
  std::vector<DeviceBattery> connected() const override { return batteries; }
  void refresh() override { ++refreshes; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  std::vector<DeviceBattery> batteries;
  int refreshes = 0;
  HandlerList changes;
};

/// Begins and ends as the test says.
class FakeInputBlocker final : public InputBlocker {
public:
  bool isPermitted() override { return permitted; }
  void requestPermission() override { ++permissionRequests; }
  bool isSecureInputEnabled() override { return secureInput; }
  bool isScreenLocked() override { return screenLocked; }
  TokenPtr observeEndOfNeed(std::function<void()> handler) override {
    return endOfNeed.add(std::move(handler));
  }
  TokenPtr hold(bool pointer, double limit, Callbacks newCallbacks) override {
    ++holds;
    locksPointer = pointer;
    longest = limit;
    callbacks = std::move(newCallbacks);
    struct Hold final : Token {
      explicit Hold(int& count) : releases(count) {}
      ~Hold() override { ++releases; }
      int& releases;
    };
    return std::make_unique<Hold>(releases);
  }
  bool isHeld() const { return holds > releases; }

  bool permitted = true;
  bool secureInput = false;
  bool screenLocked = false;
  int permissionRequests = 0;
  int holds = 0;
  int releases = 0;
  bool locksPointer = false;
  double longest = 0;
  Callbacks callbacks;
  HandlerList endOfNeed;
};

/// A store of keys; those in `refusing` refuse to be written.
class FakeSMC final : public SMCAccess {
public:
  SMCValue read(const std::string& key) override {
    const auto found = values.find(key);
    if (found == values.end())
      throw FanError::readFailed(key, "the key does not exist");
    return found->second;
  }
  void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override {
    ++attempts;
    if (auto left = refusing.find(key); left != refusing.end() && left->second-- > 0)
      throw FanError::writeFailed(key, "the SMC returned 130");
    values.at(key).bytes = bytes;
    writes.push_back(key + "=" + std::to_string(*values.at(key).number()));
  }
  void set(const std::string& key, double number, const std::string& type) {
    values[key] = {type,
                   SMCValue::encoding(number, type).value_or(std::vector<std::uint8_t>{0, 0})};
  }
  /// `count` fans from 1200 to 6000 rpm that turn at 2000.
  void addFans(int count) {
    set("FNum", count, "ui8 ");
    set("Ftst", 0, "ui8 ");
    for (int fan = 0; fan < count; ++fan) {
      std::string at = "F";
      at += std::to_string(fan);
      set(at + "Ac", 2000, "fpe2");
      set(at + "Mn", 1200, "fpe2");
      set(at + "Mx", 6000, "flt ");
      set(at + "Md", 0, "ui8 ");
      set(at + "Tg", 0, "flt ");
    }
  }
  double number(const std::string& key) { return *values.at(key).number(); }

  std::map<std::string, SMCValue> values;
  /// How often each key refuses.
  std::map<std::string, int> refusing;
  std::vector<std::string> writes;
  int attempts = 0;
};

/// Answers when the test says so.
class FakeFanHelper final : public FanHelperClient {
public:
  Status status() override { return current; }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }
  void registerHelper(Reply reply) override {
    ++registrations;
    replies.push_back(std::move(reply));
  }
  void unregisterHelper(Reply reply) override { replies.push_back(std::move(reply)); }
  void openApprovalSettings() override { ++settingsOpened; }
  void setFull(bool full, Reply reply) override {
    asked.push_back(full);
    replies.push_back(std::move(reply));
  }
  void answer(std::optional<Refusal> refusal = {}) {
    const auto pending = std::exchange(replies, {});
    for (const auto& reply : pending)
      reply(refusal);
  }

  Status current = Status::ready;
  HandlerList changes;
  std::vector<Reply> replies;
  std::vector<bool> asked;
  int registrations = 0;
  int settingsOpened = 0;
};

} // namespace tavrin::test
