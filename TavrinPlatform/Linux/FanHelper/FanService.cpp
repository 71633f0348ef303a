#include "TavrinPlatform/Linux/FanHelper/FanService.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace tavrin {
namespace {

constexpr std::uint64_t authorizationLimit = 170'000'000; // microseconds
constexpr std::uint32_t allowUserInteraction = 1;

std::string refusal(const char* reason) {
  return FanError::smcUnavailable("the connection was refused (" + std::string(reason) + ")")
      .what();
}

/// Whose connection has sent the message, by the bus's own word.
std::optional<uid_t> userOf(sd_bus_message* message) {
  sd_bus_creds* found = nullptr;
  uid_t user = 0;
  const bool isKnown = sd_bus_query_sender_creds(message, SD_BUS_CREDS_EUID, &found) >= 0 &&
                       sd_bus_creds_get_euid(found, &user) >= 0;
  sd_bus_creds_unref(found);
  return isKnown ? std::optional(user) : std::nullopt;
}

} // namespace

const sd_bus_vtable FanService::vtable[] = {
    SD_BUS_VTABLE_START(0), SD_BUS_METHOD("SetFull", "b", "", setFull, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

bool FanService::begin() {
  applyQuietly(FanHold::Change::automatic);
  const bool isReady =
      sd_bus_add_object_vtable(bus_, nullptr, path, interface, vtable, this) >= 0 &&
      sd_bus_match_signal(bus_, nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                          "org.freedesktop.DBus", "NameOwnerChanged", ownerChanged, this) >= 0 &&
      sd_bus_match_signal_async(bus_, nullptr, "org.freedesktop.login1", "/org/freedesktop/login1",
                                "org.freedesktop.login1.Manager", "PrepareForSleep",
                                prepareForSleep, nullptr, this) >= 0 &&
      sd_bus_request_name(bus_, serviceName, 0) >= 0;
  return isReady;
}

void FanService::end() {
  hold_.abandon();
  applyQuietly(FanHold::Change::automatic);
  pending_.clear();
  if (sleepDelay_ >= 0)
    ::close(std::exchange(sleepDelay_, -1));
}

int FanService::setFull(sd_bus_message* message, void* service, sd_bus_error* error) {
  int isFull = 0;
  const char* sender = sd_bus_message_get_sender(message);
  if (sender == nullptr || sd_bus_message_read(message, "b", &isFull) < 0)
    return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "SetFull takes a flag");
  return static_cast<FanService*>(service)->ask(message, sender, isFull != 0, error);
}

int FanService::ask(sd_bus_message* message, const std::string& caller, bool isFull,
                    sd_bus_error* error) {
  Request request{this, caller, 0, isFull, {sd_bus_message_ref(message), [](sd_bus_message* m) {
                                              sd_bus_message_unref(m);
                                            }}};
  // Before anything is counted or asked: who was let in may always hand back, and without a
  // password.
  if (!isFull && callers_.contains(caller)) {
    overtake(caller);
    admit(request);
    return 1;
  }
  const auto user = userOf(message);
  if (!user)
    return sd_bus_error_set(error, errorName, refusal("no answer").c_str());
  request.user = *user;
  if (pending_.contains(caller) || pendingOf(*user) >= mostPending)
    return sd_bus_error_set(error, errorName, refusal("busy").c_str());
  if (!askPolkit(request))
    return sd_bus_error_set(error, errorName, refusal("no answer").c_str());
  pending_[caller] = request;
  return 1;
}

bool FanService::askPolkit(const Request& request) {
  sd_bus_slot* slot = nullptr;
  sd_bus_message* question = nullptr;
  int result = sd_bus_message_new_method_call(
      bus_, &question, "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
      "org.freedesktop.PolicyKit1.Authority", "CheckAuthorization");
  if (result >= 0)
    result = sd_bus_message_append(question, "(sa{sv})sa{ss}us", "system-bus-name", 1, "name", "s",
                                   request.caller.c_str(), action, 0, allowUserInteraction, "");
  if (result >= 0)
    result = sd_bus_call_async(bus_, &slot, question, authorized, nullptr, authorizationLimit);
  sd_bus_message_unref(question);
  if (result < 0)
    return false;
  // A copy for the answer: the caller may be gone by then, and another of its name be waiting.
  sd_bus_slot_set_userdata(slot, new Request(request));
  sd_bus_slot_set_destroy_callback(slot, [](void* data) { delete static_cast<Request*>(data); });
  sd_bus_slot_set_floating(slot, 1);
  sd_bus_slot_unref(slot);
  return true;
}

int FanService::pendingOf(uid_t user) const {
  return static_cast<int>(std::ranges::count_if(
      pending_, [user](const auto& entry) { return entry.second.user == user; }));
}

void FanService::overtake(const std::string& caller) {
  if (const auto found = pending_.find(caller); found != pending_.end()) {
    refuse(found->second, refusal("handed back meanwhile"));
    pending_.erase(found);
  }
}

int FanService::authorized(sd_bus_message* reply, void* data, sd_bus_error*) {
  const Request request = *static_cast<Request*>(data);
  FanService& service = *request.service;
  const auto found = service.pending_.find(request.caller);
  if (found == service.pending_.end() || found->second.message != request.message)
    return 0; // dropped meanwhile
  service.pending_.erase(found);
  int isAuthorized = 0;
  int isChallenge = 0;
  if (sd_bus_message_is_method_error(reply, nullptr) > 0 ||
      sd_bus_message_enter_container(reply, 'r', "bba{ss}") <= 0 ||
      sd_bus_message_read(reply, "bb", &isAuthorized, &isChallenge) <= 0)
    service.refuse(request, refusal("no answer"));
  else if (isAuthorized == 0)
    service.refuse(request, refusal("not authorized"));
  else
    service.admit(request);
  return 0;
}

void FanService::admit(const Request& request) {
  const int id = idOf(request.caller);
  try {
    if (const auto change = hold_.request(request.isFull, id))
      apply(*change);
    sd_bus_reply_method_return(request.message.get(), "");
  } catch (const std::exception& error) {
    if (const auto change = hold_.drop(id))
      applyQuietly(*change);
    refuse(request, error.what());
  }
  delaySleep();
}

void FanService::refuse(const Request& request, const std::string& sentence) {
  sd_bus_error error{};
  sd_bus_error_set(&error, errorName, sentence.c_str());
  sd_bus_reply_method_error(request.message.get(), &error);
  sd_bus_error_free(&error);
}

int FanService::ownerChanged(sd_bus_message* message, void* service, sd_bus_error*) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* after = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &after) > 0 && *after == '\0')
    static_cast<FanService*>(service)->drop(name);
  return 0;
}

void FanService::drop(const std::string& caller) {
  pending_.erase(caller);
  const auto found = callers_.find(caller);
  if (found == callers_.end())
    return;
  const int id = found->second;
  callers_.erase(found);
  if (const auto change = hold_.drop(id))
    applyQuietly(*change);
}

int FanService::prepareForSleep(sd_bus_message* message, void* service, sd_bus_error*) {
  int isGoingToSleep = 0;
  if (sd_bus_message_read(message, "b", &isGoingToSleep) > 0)
    static_cast<FanService*>(service)->sleepChanged(isGoingToSleep != 0);
  return 0;
}

void FanService::sleepChanged(bool isGoingToSleep) {
  if (const auto change = isGoingToSleep ? hold_.willSleep() : hold_.didWake())
    applyQuietly(*change);
  // Sleep goes on once the delay is given up.
  if (isGoingToSleep && sleepDelay_ >= 0)
    ::close(std::exchange(sleepDelay_, -1));
  if (!isGoingToSleep)
    delaySleep();
}

/// While somebody holds, sleep waits until the fans are handed back.
void FanService::delaySleep() {
  if (!hold_.isHolding() || hold_.isAsleep() || sleepDelay_ >= 0)
    return;
  const auto taken = [](sd_bus_message* reply, void* data, sd_bus_error*) {
    auto& service = *static_cast<FanService*>(data);
    int descriptor = -1;
    if (sd_bus_message_is_method_error(reply, nullptr) <= 0 && service.sleepDelay_ < 0 &&
        sd_bus_message_read(reply, "h", &descriptor) > 0)
      service.sleepDelay_ = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
    return 0;
  };
  sd_bus_call_method_async(bus_, nullptr, "org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.login1.Manager", "Inhibit", taken, this, "ssss",
                           "sleep", "Tavrin", "The fans are handed back first", "delay");
}

void FanService::apply(FanHold::Change change) {
  if (change == FanHold::Change::full)
    control_.setFull();
  else
    control_.setAuto();
}

void FanService::applyQuietly(FanHold::Change change) {
  try {
    apply(change);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    // Full speed that cannot be kept up is nobody's any more.
    if (change == FanHold::Change::full)
      hold_.abandon();
  }
}

int FanService::idOf(const std::string& caller) {
  const auto [entry, isNew] = callers_.try_emplace(caller, lastId_ + 1);
  if (isNew)
    ++lastId_;
  return entry->second;
}

} // namespace tavrin
