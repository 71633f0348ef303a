#include "TavrinPlatform/Linux/Desktop/LinuxNotificationCenter.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/ForeignText.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <string_view>
#include <vector>

namespace tavrin {

namespace {

const BusAddress server{"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                        "org.freedesktop.Notifications"};
constexpr const char* noticeArgument = "--notify";
constexpr double noticeLimit = 10;
/// Code points that a notice shows.
constexpr std::size_t longestNoticeTitle = 200;
constexpr std::size_t longestBody = 1000;
/// For how long a click on a notice that nobody closed is still waited for.
constexpr double clickLimit = 3600;
/// What a notice says is no news after that.
constexpr std::chrono::hours newsLimit{1};
constexpr std::chrono::seconds slowAnswer{20};
/// Tells every process of this application that a notice is about to be shown, by its identifier.
constexpr const char* ownPath = "/dev/quellby/tavrin/Notices";
constexpr const char* ownInterface = "dev.quellby.tavrin.Notices";
constexpr const char* replacingSignal = "Replacing";
/// What a click on the notice itself invokes.
constexpr const char* clickAction = "default";

BusMessage notice(const Bus& bus, const std::string& title, const std::string& body) {
  BusMessage message = bus.method(server, "Notify");
  message.append("susssas", "Tavrin", 0U, "", title.c_str(), body.c_str(), 2, clickAction, "Open");
  message.append("a{sv}i", 2, "sound-name", "s", "message-new-instant", "urgency", "y", 1, -1);
  return message;
}

/// Whether an answer of GetCapabilities says that bodies are read as markup.
bool readsMarkup(sd_bus_message* reply) {
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "s") <= 0)
    return false;
  const char* capability = nullptr;
  while (sd_bus_message_read_basic(reply, 's', &capability) > 0)
    if (std::string_view(capability) == "body-markup")
      return true;
  return false;
}

/// Shows a notice that says its body letter by letter, whatever the server takes bodies for. The
/// title is no markup to any of them.
void sendNotice(Bus& bus, const std::string& title, const std::string& body, Bus::Reply answer) {
  if (body.find_first_of("&<>") == std::string::npos) {
    bus.call(notice(bus, title, body), std::move(answer));
    return;
  }
  bus.call(bus.method(server, "GetCapabilities"), [&bus, title, body, answer = std::move(answer)](
                                                      sd_bus_message* reply, const std::string&) {
    bus.call(notice(bus, title, readsMarkup(reply) ? markupEscaped(body) : body), answer);
  });
}

/// The signals' first argument, when it is a notice's number.
std::uint32_t noticeNumber(sd_bus_message* message) {
  std::uint32_t number = 0;
  sd_bus_message_read_basic(message, 'u', &number);
  return number;
}

/// The beginning of the names of all units for `identifier`.
std::string unitPrefix(const std::string& identifier) {
  std::string name = "tavrin-notice-";
  for (const char c : identifier) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || c == '.')
      name += c;
    else
      name += fmt::format("_{:02x}", byte);
  }
  return name + "-";
}

/// The wall clock's time in `delay` seconds, in whole seconds, never early.
std::string calendarTime(double delay) {
  using namespace std::chrono;
  const auto due = system_clock::now() + duration_cast<system_clock::duration>(
                                             duration<double>(std::clamp(delay, 0.0, 1e9)));
  return fmt::format("{:%Y-%m-%d %H:%M:%S} UTC",
                     fmt::gmtime(system_clock::to_time_t(ceil<seconds>(due))));
}

/// The names in an answer of ListUnitsByPatterns.
std::vector<std::string> units(sd_bus_message* reply) {
  std::vector<std::string> names;
  if (sd_bus_message_enter_container(reply, 'a', "(ssssssouso)") <= 0)
    return names;
  while (sd_bus_message_enter_container(reply, 'r', "ssssssouso") > 0) {
    names.push_back(textArgument(reply));
    sd_bus_message_skip(reply, "sssssouso");
    sd_bus_message_exit_container(reply);
  }
  return names;
}

/// The StartTransientUnit call for a timer and the service it starts.
BusMessage transientTimer(const Bus& bus, const std::string& unit,
                          const std::filesystem::path& program,
                          const UserNotificationRequest& request) {
  BusMessage call = bus.method(serviceManager, "StartTransientUnit");
  sd_bus_message_set_auto_start(call.get(), 0);
  const std::string due = calendarTime(request.delay);
  // The manager writes it into a file that has one setting a line.
  const std::string description = "Tavrin: " + printable(request.title);
  call.append("ss", (unit + ".timer").c_str(), "fail");
  constexpr std::uint64_t oneSecond = 1'000'000;
  call.append("a(sv)", 4, "Description", "s", description.c_str(), "TimersCalendar", "a(ss)", 1,
              "OnCalendar", due.c_str(), "AccuracyUSec", "t", oneSecond, "RemainAfterElapse", "b",
              0);
  // The user's manager may have been started for another session bus.
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  const std::string busVariable =
      std::string("DBUS_SESSION_BUS_ADDRESS=") + (address == nullptr ? "" : address);
  const std::string path = program.string();
  call.append("a(sa(sv))", 1, (unit + ".service").c_str(), 4, "Description", "s",
              description.c_str(), "CollectMode", "s", "inactive-or-failed", "Environment", "as", 1,
              busVariable.c_str(), "ExecStartEx", "a(sasas)", 1, path.c_str(), 5, path.c_str(),
              noticeArgument, request.identifier.c_str(), request.title.c_str(),
              request.body.c_str(), 1, "no-env-expand");
  return call;
}

} // namespace

NoticeWatch::NoticeWatch(Bus& bus) : bus_(bus) {
  const std::string rule = "type='signal',path='/org/freedesktop/Notifications',"
                           "interface='org.freedesktop.Notifications',member=";
  clicked_ = bus.match(rule + "'ActionInvoked'", [this](sd_bus_message* signal) {
    const auto number = noticeNumber(signal);
    if (textArgument(signal) != clickAction)
      return;
    if (const auto notice = shown_.extract(number)) {
      wasClicked_ = true;
      notice.mapped().click();
    }
  });
  closed_ = bus.match(rule + "'NotificationClosed'",
                      [this](sd_bus_message* signal) { shown_.erase(noticeNumber(signal)); });
  replaced_ = bus.match(std::string("type='signal',path='") + ownPath + "',interface='" +
                            ownInterface + "',member='" + replacingSignal + "'",
                        [this](sd_bus_message* signal) {
                          const std::string identifier = textArgument(signal);
                          waiting_.erase(identifier);
                          close(identifier);
                        });
  // What the old server showed went with it, and a new one counts from the beginning: a number
  // kept would be that of another program's notice.
  serverChanged_ =
      bus.match(std::string("type='signal',sender='") + busDaemon.service + "',path='" +
                    busDaemon.path + "',interface='" + busDaemon.interface +
                    "',member='NameOwnerChanged',arg0='" + server.service + "'",
                [this](sd_bus_message* signal) {
                  shown_.clear();
                  textArgument(signal); // the name
                  textArgument(signal); // its former owner
                  if (!textArgument(signal).empty())
                    sendWaiting();
                });
}

void NoticeWatch::show(const Notice& notice) {
  // This process hears it too, and before it is told what became of the new notice.
  BusMessage replacing = bus_.signal(ownPath, ownInterface, replacingSignal);
  bus_.send(replacing.append("s", notice.identifier.c_str()));
  send(notice, true);
}

void NoticeWatch::send(const Notice& notice, bool mayWait) {
  const auto sent = std::chrono::steady_clock::now();
  sendNotice(bus_, notice.title, notice.body,
             [this, notice, mayWait, sent](sd_bus_message* reply, const std::string& error) {
               // A server that took as long as that may have it yet, and show it later.
               const bool isSlow = std::chrono::steady_clock::now() - sent > slowAnswer;
               if (reply == nullptr && mayWait && !isSlow) {
                 wait(notice, error);
                 return;
               }
               waiting_.erase(notice.identifier);
               if (reply != nullptr)
                 shown_[noticeNumber(reply)] = {notice.identifier, notice.click};
               notice.answer(error);
             });
}

/// The bus is asked whether the server has refused the notice or is not there: its word and the
/// signal that one has come are in order.
void NoticeWatch::wait(const Notice& notice, const std::string& error) {
  waiting_.try_emplace(notice.identifier, Waiting{notice, std::chrono::steady_clock::now()});
  BusMessage question = bus_.method(busDaemon, "NameHasOwner");
  bus_.call(question.append("s", server.service), [this, identifier = notice.identifier, error](
                                                      sd_bus_message* reply, const std::string&) {
    const auto place = waiting_.find(identifier);
    if (place == waiting_.end())
      return;
    int isThere = 0;
    if (reply != nullptr)
      sd_bus_message_read_basic(reply, 'b', &isThere);
    if (isThere != 0)
      send(Notice(place->second.notice), false);
    else
      place->second.notice.answer(error);
  });
}

void NoticeWatch::sendWaiting() {
  std::erase_if(waiting_, [](const auto& one) {
    return std::chrono::steady_clock::now() - one.second.since > newsLimit;
  });
  for (const auto& [identifier, one] : std::map(waiting_))
    send(one.notice, true);
}

void NoticeWatch::close(const std::string& identifier) {
  std::erase_if(shown_, [&](const auto& notice) {
    if (notice.second.identifier != identifier)
      return false;
    BusMessage call = bus_.method(server, "CloseNotification");
    bus_.send(call.append("u", notice.first));
    return true;
  });
}

LinuxNotificationCenter::LinuxNotificationCenter(Bus* bus, RunLoop& runLoop,
                                                 std::filesystem::path executable, LogSink& log)
    : bus_(bus), runLoop_(runLoop), executable_(std::move(executable)), log_(log, "notifications"),
      self_(std::make_shared<LinuxNotificationCenter*>(this)) {}

void LinuxNotificationCenter::requestAuthorization(std::function<void(bool granted)> answer) {
  // This desktop asks nobody: who wants quiet tells the notification server.
  answer(true);
}

void LinuxNotificationCenter::add(const UserNotificationRequest& wanted) {
  UserNotificationRequest request = wanted;
  request.title = plainText(request.title, longestNoticeTitle);
  request.body = plainText(request.body, longestBody);
  runLoop_.post([self = std::weak_ptr(self_), request] {
    if (const auto alive = self.lock()) {
      (*alive)->unschedule(request.identifier);
      (*alive)->schedule(request);
    }
  });
}

void LinuxNotificationCenter::removePending(const std::string& identifier) {
  runLoop_.post([self = std::weak_ptr(self_), identifier] {
    if (const auto alive = self.lock())
      (*alive)->unschedule(identifier);
  });
}

void LinuxNotificationCenter::schedule(const UserNotificationRequest& request) {
  if (bus_ == nullptr || !bus_->isOpen()) {
    keep(request, request.delay);
    return;
  }
  const std::uint64_t serial = ++serial_;
  serials_[request.identifier] = serial;
  // A name of its own each time: the old unit may still be on its way out.
  const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
  const std::string unit = unitPrefix(request.identifier) + fmt::format("{}-{}", ticks, serial);
  BusMessage call = transientTimer(*bus_, unit, executable_, request);
  const auto asked = std::chrono::steady_clock::now();
  bus_->call(call, [this, request, serial, asked](sd_bus_message* reply, const std::string& error) {
    if (reply != nullptr || serials_[request.identifier] != serial)
      return;
    log_.debug("A notice is kept in this process: " + error);
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - asked;
    keep(request, request.delay - waited.count());
  });
}

void LinuxNotificationCenter::unschedule(const std::string& identifier) {
  kept_.erase(identifier);
  serials_.erase(identifier);
  if (bus_ == nullptr || !bus_->isOpen())
    return;
  // Those of former processes of this application as well.
  BusMessage question = bus_->method(serviceManager, "ListUnitsByPatterns");
  sd_bus_message_set_auto_start(question.get(), 0);
  const std::string pattern = unitPrefix(identifier) + "*.timer";
  question.append("asas", 0, 1, pattern.c_str());
  bus_->call(question, [this](sd_bus_message* reply, const std::string&) {
    for (const std::string& unit : reply == nullptr ? std::vector<std::string>() : units(reply)) {
      BusMessage stop = bus_->method(serviceManager, "StopUnit");
      bus_->send(stop.append("ss", unit.c_str(), "replace"));
    }
  });
}

void LinuxNotificationCenter::keep(const UserNotificationRequest& request, double delay) {
  kept_[request.identifier] = runLoop_.after(std::max(delay, 0.0), [this, request] {
    if (bus_ != nullptr && bus_->isOpen())
      show(request);
    else
      log_.info("There is no way to show the notice \"" + request.title + "\"");
    kept_.erase(request.identifier);
  });
}

void LinuxNotificationCenter::show(const UserNotificationRequest& request) {
  if (!watch_)
    watch_ = std::make_unique<NoticeWatch>(*bus_);
  watch_->show({request.identifier, request.title, request.body,
                [this] {
                  if (onClick)
                    onClick();
                },
                [this, title = request.title](const std::string& error) {
                  if (!error.empty())
                    log_.info("The notice \"" + title + "\" is not shown: " + error);
                }});
}

std::optional<int> showNoticeIfAsked(int& argc, char** argv) {
  if (argc < 2 || std::string_view(argv[1]) != noticeArgument)
    return std::nullopt;
  if (argc != 5)
    return 2;
  const auto bus = Bus::session();
  if (!bus)
    return 1;
  NoticeWatch watch(*bus);
  bool isShown = false;
  bool isAnswered = false;
  watch.show({argv[2], argv[3], argv[4], [] {},
              [&](const std::string& error) {
                isAnswered = true;
                isShown = error.empty();
              }});
  bus->waitUntil([&] { return isAnswered; }, noticeLimit);
  bus->waitUntil([&] { return !watch.isWaiting(); },
                 std::chrono::duration<double>(newsLimit).count());
  if (!isShown)
    return 1;
  bus->waitUntil([&] { return watch.isEmpty(); }, clickLimit);
  if (!watch.wasClicked())
    return 0;
  // On as if started by the user: the running slot is asked to activate, or this becomes it.
  argc = 1;
  argv[1] = nullptr;
  return std::nullopt;
}

} // namespace tavrin
