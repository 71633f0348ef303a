#include "TavrinPlatform/Linux/Desktop/BusNotificationCenter.h"

#include "TavrinPlatform/Linux/Base/BusProperties.h"

#include <vector>

namespace tavrin {

namespace {

constexpr const char* path = "/dev/quellby/tavrin/Notifications";
constexpr const char* interface = "dev.quellby.tavrin.Notifications";
constexpr const char* member = "Posted";

std::optional<std::string> objectOf(sd_bus_message* message) {
  textArgument(message);
  const char* object = nullptr;
  if (sd_bus_message_has_signature(message, "ss") <= 0 ||
      sd_bus_message_read_basic(message, 's', &object) <= 0)
    return std::nullopt;
  return object;
}

/// Apostrophes end a quoted value of a match rule.
std::string quoted(const std::string& value) {
  std::string text = "'";
  for (const char c : value)
    text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

} // namespace

class BusNotificationCenter::Observation final : public Token {
public:
  using Registry = std::shared_ptr<std::multimap<std::string, Observation*>>;

  Observation(Registry registry, const std::string& name, Handler handler)
      : handler_(std::make_shared<Handler>(std::move(handler))), registry_(std::move(registry)),
        place_(registry_->emplace(name, this)) {}
  ~Observation() override { registry_->erase(place_); }

  void subscribe(Bus& bus, const std::string& name) {
    const std::string rule = std::string("type='signal',path='") + path + "',interface='" +
                             interface + "',member='" + member + "',arg0=" + quoted(name);
    match_ = bus.match(
        rule, [handler = handler_](sd_bus_message* message) { (*handler)(objectOf(message)); });
  }
  std::weak_ptr<Handler> handler() const { return handler_; }

private:
  std::shared_ptr<Handler> handler_;
  Registry registry_;
  std::multimap<std::string, Observation*>::iterator place_;
  TokenPtr match_;
};

void BusNotificationCenter::post(const std::string& name,
                                 const std::optional<std::string>& object) {
  if (bus_ != nullptr && bus_->isOpen()) {
    BusMessage message = bus_->signal(path, interface, member);
    message.append("s", name.c_str());
    if (object)
      message.append("s", object->c_str());
    bus_->send(message);
    return;
  }
  const auto [first, last] = observations_->equal_range(name);
  for (auto it = first; it != last; ++it)
    runLoop_.post([handler = it->second->handler(), object] {
      if (const auto alive = handler.lock())
        (*alive)(object);
    });
}

TokenPtr BusNotificationCenter::observe(const std::string& name, Handler handler) {
  auto observation = std::make_unique<Observation>(observations_, name, std::move(handler));
  if (bus_ != nullptr && bus_->isOpen())
    observation->subscribe(*bus_, name);
  return observation;
}

} // namespace tavrin
