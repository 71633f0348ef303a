#include "TavrinPlatform/Linux/Desktop/LinuxFocusStatusProvider.h"

#include "TavrinPlatform/Linux/Base/PortalRequest.h"

#include <array>
#include <cstdint>

namespace tavrin {
namespace {

constexpr std::uint64_t answerLimit = 2'000'000;

/// One method call whose answer holds a truth value, in as many variants as it likes.
struct Question {
  const char* service;
  const char* path;
  const char* interface;
  const char* member;
  /// Two texts.
  const char* first;
  const char* second;
  /// What the answer says is the opposite of a Focus.
  bool isOpposite = false;
};

constexpr std::array questions = {
    Question{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
             "org.freedesktop.DBus.Properties", "Get", "org.freedesktop.Notifications",
             "Inhibited"},
    Question{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
             "org.freedesktop.DBus.Properties", "Get", "org.dunstproject.cmd0", "paused"},
    Question{"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", "GetProperty",
             "xfce4-notifyd", "/do-not-disturb"},
    Question{portalService, portalPath, portalSettings.interface, "Read",
             "org.gnome.desktop.notifications", "show-banners", true},
};

std::optional<bool> truth(sd_bus_message* reply) {
  constexpr int deepest = 4;
  for (int depth = 0; depth < deepest; ++depth) {
    char type = 0;
    const char* inner = nullptr;
    if (sd_bus_message_peek_type(reply, &type, &inner) <= 0)
      return std::nullopt;
    if (type == SD_BUS_TYPE_BOOLEAN) {
      int value = 0;
      return sd_bus_message_read_basic(reply, type, &value) > 0 ? std::optional(value != 0)
                                                                : std::nullopt;
    }
    if (type != SD_BUS_TYPE_VARIANT || sd_bus_message_enter_container(reply, type, inner) <= 0)
      return std::nullopt;
  }
  return std::nullopt;
}

std::optional<bool> answer(sd_bus* bus, const Question& question) {
  sd_bus_message* call = nullptr;
  sd_bus_message* reply = nullptr;
  std::optional<bool> value;
  if (sd_bus_message_new_method_call(bus, &call, question.service, question.path,
                                     question.interface, question.member) >= 0 &&
      sd_bus_message_set_auto_start(call, 0) >= 0 &&
      sd_bus_message_append(call, "ss", question.first, question.second) >= 0 &&
      sd_bus_call(bus, call, answerLimit, nullptr, &reply) >= 0)
    value = truth(reply);
  sd_bus_message_unref(call);
  sd_bus_message_unref(reply);
  if (value && question.isOpposite)
    value = !*value;
  return value;
}

} // namespace

sd_bus* LinuxFocusStatusProvider::connection() {
  if (bus_ && sd_bus_is_open(bus_.get()) > 0)
    return bus_.get();
  sd_bus* bus = nullptr;
  bus_.reset(sd_bus_open_user(&bus) < 0 ? nullptr : bus);
  return bus_.get();
}

std::optional<bool> LinuxFocusStatusProvider::isFocused() {
  const std::lock_guard guard(lock_);
  auto* bus = connection();
  if (bus == nullptr)
    return std::nullopt;
  for (const auto& question : questions)
    if (const auto value = answer(bus, question))
      return value;
  return std::nullopt;
}

bool LinuxFocusStatusProvider::isAuthorized() {
  const std::lock_guard guard(lock_);
  return connection() != nullptr;
}

} // namespace tavrin
