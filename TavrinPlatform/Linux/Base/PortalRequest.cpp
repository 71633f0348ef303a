#include "TavrinPlatform/Linux/Base/PortalRequest.h"

#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include <algorithm>
#include <utility>

namespace tavrin {

std::string portalSender(const Bus& bus) {
  const char* name = nullptr;
  sd_bus_get_unique_name(bus.handle(), &name);
  std::string sender = name != nullptr && *name == ':' ? name + 1 : "";
  std::ranges::replace(sender, '.', '_');
  return sender;
}

std::string newPortalToken() {
  static unsigned number = 0;
  return "tavrin" + std::to_string(++number);
}

void eachPortalEntry(sd_bus_message* message,
                     const std::function<bool(const std::string& name)>& take) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
    return;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    if (!take(textArgument(message)))
      sd_bus_message_skip(message, "v");
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
}

PortalRequest::PortalRequest(Bus& bus, const char* interface, const char* member,
                             const Build& build, Done done)
    : bus_(bus), done_(std::move(done)) {
  const std::string token = newPortalToken();
  // Listened to before the call: the answer may overtake the call's own reply.
  expectAnswerAt(std::string(portalPath) + "/request/" + portalSender(bus) + "/" + token);
  BusMessage call = bus.method({portalService, portalPath, interface}, member);
  build(call, token.c_str());
  bus.call(call, [weak = std::weak_ptr(self_)](sd_bus_message* reply, const std::string&) {
    const auto self = weak.lock();
    if (!self)
      return;
    const char* path = nullptr;
    if (reply == nullptr)
      (*self)->finish(Outcome::unavailable, nullptr);
    else if (sd_bus_message_read(reply, "o", &path) > 0 && (*self)->handle_ != path &&
             !(*self)->handle_.empty())
      // Portals of old choose the path themselves.
      (*self)->expectAnswerAt(path);
  });
}

PortalRequest::~PortalRequest() {
  if (!handle_.empty())
    bus_.send(
        bus_.method({portalService, handle_.c_str(), "org.freedesktop.portal.Request"}, "Close"));
}

void PortalRequest::expectAnswerAt(const std::string& path) {
  handle_ = path;
  response_ = bus_.match("type='signal',interface='org.freedesktop.portal.Request',"
                         "member='Response',path='" +
                             path + "'",
                         [this](sd_bus_message* message) {
                           std::uint32_t code = 2;
                           sd_bus_message_read(message, "u", &code);
                           finish(code == 0   ? Outcome::granted
                                  : code == 1 ? Outcome::declined
                                              : Outcome::failed,
                                  code == 0 ? message : nullptr);
                         });
}

void PortalRequest::finish(Outcome outcome, sd_bus_message* results) {
  handle_.clear();
  if (const auto done = std::exchange(done_, nullptr))
    done(outcome, results);
}

} // namespace tavrin
