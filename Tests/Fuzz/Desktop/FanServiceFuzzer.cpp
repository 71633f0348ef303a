#include "TavrinPlatform/Linux/FanHelper/FanService.h"
#include "Tests/Fuzz/BusMessages.h"

#include <deque>
#include <memory>

/// The other end of the helper's connection is a bus gone mad: messages of any member, sender and
/// contents, and any answers of polkit and of logind. Fans are at full speed only after polkit has
/// said yes, and never once everybody is gone.
namespace {

using namespace tavrin;
using Message = std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)>;

struct TwoFans final : SMCAccess {
  SMCValue read(const std::string& key) override {
    if (key == "FNum")
      return {"ui8 ", {2}};
    if (key.ends_with("Md"))
      return {"ui8 ", {isForced[key[1] - '0']}};
    return key == "Ftst" ? SMCValue{"ui8 ", {0}}
                         : SMCValue{"flt ", *SMCValue::encoding(6000, "flt ")};
  }
  void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override {
    if (key.ends_with("Md"))
      isForced[key[1] - '0'] = bytes[0];
    if (refuses)
      throw FanError::writeFailed(key, "the kernel returned 5");
  }
  std::uint8_t isForced[2] = {0, 0};
  bool refuses = false;
};

struct World {
  explicit World(FuzzedDataProvider& from) : data(from) { service.begin(); }

  void send(sd_bus_message* message, const char* sender) {
    sd_bus_message_set_sender(message, sender);
    sd_bus_send(connection.second, message, nullptr);
    serve();
  }
  void serve() {
    connection.serve([this](sd_bus_message* arrived) {
      if (sd_bus_message_is_method_call(arrived, nullptr, "CheckAuthorization") > 0)
        questions.emplace_back(sd_bus_message_ref(arrived), sd_bus_message_unref);
    });
  }
  void call() {
    const char* const members[] = {"SetFull", "SetFull", "SetFull", "Introspect", "Nothing"};
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(connection.second, &message, nullptr, FanService::path,
                                   data.ConsumeBool() ? FanService::interface : nullptr,
                                   data.PickValueInArray(members));
    if (data.ConsumeIntegralInRange<int>(0, 3) > 0)
      sd_bus_message_append(message, "b", data.ConsumeBool() ? 1 : 0);
    else
      fuzz::appendAny(message, data);
    send(message, caller());
    sd_bus_message_unref(message);
  }
  void signal(const char* path, const char* interface, const char* member, const char* sender) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_signal(connection.second, &message, path, interface, member);
    const bool isSleep = std::string_view(member) == "PrepareForSleep";
    if (data.ConsumeIntegralInRange<int>(0, 3) == 0) {
      for (int left = data.ConsumeIntegralInRange<int>(0, 3); left > 0; --left)
        fuzz::appendAny(message, data);
    } else if (isSleep) {
      sd_bus_message_append(message, "b", data.ConsumeBool() ? 1 : 0);
    } else {
      const char* name = caller();
      sd_bus_message_append(message, "sss", name, name, data.ConsumeBool() ? "" : name);
    }
    send(message, sender);
    sd_bus_message_unref(message);
  }
  void answer() {
    if (questions.empty())
      return;
    const auto question = std::move(questions.front());
    questions.pop_front();
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(question.get(), &reply);
    if (data.ConsumeIntegralInRange<int>(0, 3) == 0) {
      fuzz::appendAny(reply, data);
    } else {
      const int isAuthorized = data.ConsumeBool() ? 1 : 0;
      wasAuthorized = wasAuthorized || isAuthorized != 0;
      sd_bus_message_append(reply, "(bba{ss})", isAuthorized, 0, 0);
    }
    send(reply, "org.freedesktop.PolicyKit1");
    sd_bus_message_unref(reply);
  }
  void step() {
    switch (data.ConsumeIntegralInRange<int>(0, 6)) {
    case 0:
    case 1:
      return call();
    case 2:
      return signal("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                    "org.freedesktop.DBus");
    case 3:
      return signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep",
                    "org.freedesktop.login1");
    case 4:
      smc.refuses = data.ConsumeBool();
      return;
    default:
      return answer();
    }
  }
  const char* caller() {
    const char* const callers[] = {":1.1", ":1.2", ":1.3"};
    return data.PickValueInArray(callers);
  }
  bool isFull() const { return smc.isForced[0] != 0 || smc.isForced[1] != 0; }

  FuzzedDataProvider& data;
  fuzz::Connection connection;
  TwoFans smc;
  FanControl control{smc, [](double) {}};
  FanService service{connection.first, control};
  std::deque<Message> questions;
  bool wasAuthorized = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  World world(data);
  for (int left = 40; left > 0 && data.remaining_bytes() > 0; --left) {
    world.step();
    if (world.isFull() && !world.wasAuthorized)
      std::abort();
  }
  world.smc.refuses = false;
  world.service.end();
  world.connection.hangUp();
  if (world.isFull() || !world.service.isIdle())
    std::abort();
  return 0;
}
