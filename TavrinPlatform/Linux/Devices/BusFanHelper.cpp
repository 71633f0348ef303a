#include "TavrinPlatform/Linux/Devices/BusFanHelper.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"

namespace tavrin {
namespace {

constexpr const char* unreachable = marked("Failed to reach the fan helper");

} // namespace

FanHelperClient::Status BusFanHelper::status() {
  if (!std::exchange(hasLooked_, true))
    look();
  return status_;
}

TokenPtr BusFanHelper::observe(std::function<void()> handler) {
  return changes_.add(std::move(handler));
}

/// Installed is what the bus can start, or what is there already.
void BusFanHelper::look() {
  Bus* bus = system_();
  if (bus == nullptr)
    return;
  for (const char* member : {"ListActivatableNames", "ListNames"})
    bus->call(bus->method(busDaemon, member),
              [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
                if (reply == nullptr || weak.expired() ||
                    sd_bus_message_enter_container(reply, 'a', "s") <= 0)
                  return;
                for (auto name = textArgument(reply); !name.empty(); name = textArgument(reply))
                  if (name == serviceName && std::exchange(status_, Status::ready) != Status::ready)
                    changes_.call();
              });
}

void BusFanHelper::refuse(const Reply& reply) {
  runLoop_.post([reply] { reply(Refusal{translated(unreachable)}); });
}

void BusFanHelper::registerHelper(Reply reply) {
  if (status() != Status::ready)
    return look(), refuse(reply);
  runLoop_.post([reply = std::move(reply)] { reply(std::nullopt); });
}

void BusFanHelper::unregisterHelper(Reply reply) {
  setFull(false, std::move(reply));
}

void BusFanHelper::setFull(bool full, Reply reply) {
  Bus* bus = system_();
  if (bus == nullptr || !bus->isOpen())
    return refuse(reply);
  BusMessage message = bus->method({serviceName, path, interface}, "SetFull");
  bus->call(
      message.append("b", full ? 1 : 0),
      [reply = std::move(reply)](sd_bus_message* answer, const std::string& error) {
        if (answer != nullptr)
          return reply(std::nullopt);
        // The helper's own errors carry a sentence; the bus's carry a name with dots alone.
        reply(Refusal{error.find(' ') == std::string::npos ? translated(unreachable) : error});
      },
      patience);
}

} // namespace tavrin
