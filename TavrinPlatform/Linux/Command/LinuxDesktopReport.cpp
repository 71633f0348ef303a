#include "TavrinPlatform/Linux/Command/LinuxDesktopReport.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Base/PortalRequest.h"
#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"

#include <algorithm>
#include <unistd.h>

namespace tavrin {

namespace {

using Item = DesktopReport::Item;
using State = DesktopReport::State;
using Kinds = std::vector<std::string>;

/// Seconds that a bus may take to answer.
constexpr double busLimit = 1;

const char* const watcher = "org.kde.StatusNotifierWatcher";

void readNames(Bus& bus, const char* member, std::set<std::string, std::less<>>& names) {
  const auto answer = bus.ask(bus.method(busDaemon, member), busLimit);
  if (!answer || sd_bus_message_enter_container(answer.get(), 'a', "s") < 0)
    return;
  for (const char* name = nullptr; sd_bus_message_read(answer.get(), "s", &name) > 0;)
    names.insert(name);
}

/// A service on a bus, and what goes without it.
struct Service {
  const char* topic;
  bool isOnSystemBus;
  std::vector<const char*> names;
  const char* presence;
  const char* absence;
  const char* remedy;
  Kinds kinds;
};

/// A table, in a function for its texts.
const std::vector<Service>& services() {
  static const std::vector<Service> all{
      {marked("notifications"),
       false,
       {"org.freedesktop.Notifications"},
       marked("Notices are shown by the desktop's notification service."),
       marked(
           "There is no notification service: the end of a run is heard, but no notice shows it."),
       marked("Start a notification service, such as dunst."),
       {"pomodoro", "timer", "water", "reminders"}},
      {marked("keyring"),
       false,
       {"org.freedesktop.secrets"},
       marked("Secrets are kept in the desktop's keyring."),
       marked("There is no keyring: the clipboard's history cannot be kept from one session to the "
              "next."),
       marked("Install and unlock a keyring, such as gnome-keyring or KWallet."),
       {"clipboard"}},
      {marked("calendars"),
       false,
       {"org.gnome.evolution.dataserver.Calendar8", "org.gnome.evolution.dataserver.Sources5"},
       marked("Calendars and task lists come from the desktop's calendar service."),
       marked("There is no calendar service: events and reminders cannot be read."),
       marked("Install evolution-data-server."),
       {"calendar", "reminders"}},
      {marked("portals"),
       false,
       {portalService},
       marked(
           "The desktop has portals, through which programs ask for colours, shortcuts and files."),
       marked("The desktop has no portals: outside X11 no colour can be picked and no shortcut be "
              "had."),
       marked("Install xdg-desktop-portal and your desktop's own part of it."),
       {"colourPicker", "shortcut"}},
      {marked("power"),
       true,
       {"org.freedesktop.UPower"},
       marked("Batteries are told of by UPower."),
       marked("UPower is not there: the batteries of keyboards, mice and headsets cannot be read."),
       marked("Install upower."),
       {"battery"}},
      {marked("bluetooth"),
       true,
       {"org.bluez"},
       marked("Bluetooth devices can be found."),
       marked("There is no Bluetooth service: nothing can be sent to devices near by over it."),
       marked("Install bluez, where this machine has Bluetooth."),
       {"airdrop", "battery"}},
      {marked("idle"),
       true,
       {"org.freedesktop.login1"},
       marked("The session's manager tells of sleep, lock and idleness."),
       marked(
           "There is no session manager (logind): widgets do not hear that the machine sleeps or "
           "locks."),
       marked("Install systemd-logind or elogind."),
       {"pomodoro", "keyboardLock", "clipboard"}},
      {marked("fanHelper"),
       true,
       {"dev.quellby.tavrin.fan-helper"},
       marked("The fan helper is installed."),
       marked("The fan helper is not installed: fans are shown, and cannot be set."),
       marked("Install the package tavrin-fan-helper; see docs/fans.md."),
       {"fans"}},
  };
  return all;
}

Item itemOf(const Service& service, const BusNames& names) {
  const bool isThere =
      std::ranges::all_of(service.names, [&](const char* name) { return names.has(name); });
  if (isThere)
    return {service.topic, State::good, translated(service.presence)};
  return {service.topic, State::missing, translated(service.absence), translated(service.remedy),
          service.kinds};
}

Item busItem(const BusNames& session) {
  if (session.isOpen)
    return {marked("bus"), State::good, translated("The session has a message bus.")};
  return {marked("bus"), State::missing,
          translated(
              "The session has no message bus: widgets follow no change of their settings, and no "
              "service of the desktop can be reached."),
          translated("Start the session under dbus-run-session, or set DBUS_SESSION_BUS_ADDRESS.")};
}

Item displayItem(const DesktopFacts& facts) {
  if (facts.hasX11 && facts.hasWayland)
    return {marked("display"), State::good,
            translated("The display is a Wayland compositor's, with an X server for X programs.")};
  if (facts.hasX11)
    return {marked("display"), State::good, translated("The display is an X server's.")};
  // What else there is of an X server, portals and the seat have too: they are looked at below.
  const bool tellsOfCopies = std::ranges::any_of(facts.waylandGlobals, [](const auto& global) {
    return global.find("data_control_manager_v1") != std::string::npos;
  });
  const std::string wayland =
      facts.hasWayland ? translated("The display is a Wayland compositor's, without an X server.")
                       : "";
  if (facts.hasWayland && tellsOfCopies)
    return {marked("display"), State::good, wayland};
  if (facts.hasWayland)
    return {"display",
            State::limited,
            wayland,
            translated("Let the compositor start XWayland."),
            {"clipboard"}};
  return {marked("display"), State::missing,
          translated("No display answers: tiles can be picture files only."),
          translated("Set DISPLAY or WAYLAND_DISPLAY.")};
}

Item managerItem(const DesktopFacts& facts) {
  if (!facts.windowManager)
    return {"windowManager", State::limited,
            translated("No window manager runs: nothing keeps other windows off the tiles."),
            translated("Start a window manager.")};
  const auto& manager = *facts.windowManager;
  const TextPlaces places = {{"name", manager.name}};
  const bool isNamed = !manager.name.empty();
  if (manager.knowsDocks && manager.tellsWorkArea)
    return {"windowManager", State::good,
            isNamed ? translated("The window manager is \"{name}\", and lets dock windows stand "
                                 "along an edge.",
                                 places)
                    : translated("There is a window manager, and it lets dock windows stand along "
                                 "an edge.")};
  if (manager.knowsDocks)
    return {"windowManager", State::limited,
            isNamed
                ? translated("The window manager is \"{name}\", and makes bars of dock windows.",
                             places)
                : translated("There is a window manager, and it makes bars of dock windows.")};
  return {"windowManager", State::limited,
          isNamed
              ? translated("The window manager is \"{name}\", and knows no dock windows.", places)
              : translated("There is a window manager, and it knows no dock windows.")};
}

Item surfaceItem(const DesktopSurvey& survey) {
  const auto choice = chooseSurface(survey.facts, survey.surfaceWish);
  if (!choice.isMakeshift)
    return {marked("surface"), State::good, choice.reason};
  return {marked("surface"), State::limited, choice.reason,
          translated("Set TAVRIN_SURFACE to strip, tray or picture to have it otherwise.")};
}

Item trayItem(const DesktopFacts& facts) {
  if (facts.hasTrayHost)
    return {marked("tray"), State::good, translated("A tray shows status notifier items.")};
  return {marked("tray"), State::missing, translated("No tray shows status notifier items."),
          translated("Start a panel that has one, if the tiles are to be tray icons.")};
}

Item modulesItem(const DesktopSurvey& survey) {
  struct Part {
    const char* file;
    Kinds kinds;
  };
  const std::vector<Part> parts{
      {"libtavrin-http.so", {"weather", "github", "bookmarks", "claudeUsage"}},
      {"libtavrin-calendar.so", {"calendar", "reminders"}},
      {"tavrin-svg", {"collection", "bookmarks"}}};
  Item item{marked("modules"), State::good, translated("All modules are installed.")};
  std::string missing;
  for (const auto& part : parts) {
    std::error_code error;
    if (std::filesystem::exists(survey.modules / part.file, error))
      continue;
    missing += (missing.empty() ? "" : ", ") + std::string(part.file);
    for (const auto& kind : part.kinds)
      if (std::ranges::count(item.kinds, kind) == 0)
        item.kinds.push_back(kind);
  }
  if (missing.empty())
    return item;
  item.state = State::missing;
  item.sentence = translated("Not found in \"{folder}\": {modules}.",
                             {{"folder", survey.modules.string()}, {"modules", missing}});
  item.remedy = translated("Install the whole package, or set TAVRIN_MODULE_DIR.");
  return item;
}

Item soundItem(const DesktopSurvey& survey) {
  if (survey.hasSoundLibrary)
    return {marked("sounds"), State::good, translated("Sounds can be played.")};
  return {"sounds",
          State::missing,
          translated("The sound library is missing: the end of a run is silent."),
          translated("Install libcanberra0."),
          {"pomodoro", "timer"}};
}

Item keyboardItem(const DesktopSurvey& survey) {
  const bool isX11 = survey.facts.hasX11 && !survey.facts.hasWayland;
  if (isX11)
    return {marked("keyboard"), State::good,
            translated("The keyboard can be locked through the X server.")};
  if (::access(survey.inputDevices.c_str(), R_OK) == 0 &&
      ::access(survey.inputDevices.c_str(), X_OK) == 0) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(survey.inputDevices, error))
      if (entry.path().filename().string().starts_with("event") &&
          ::access(entry.path().c_str(), R_OK) == 0)
        return {marked("keyboard"), State::good,
                translated("The keyboard can be locked: its devices may be opened.")};
  }
  return {"keyboard",
          State::missing,
          translated("The keyboard cannot be locked: its devices may not be opened."),
          translated("Join the group \"input\", or use a session on an X server."),
          {"keyboardLock"}};
}

} // namespace

BusNames readBusNames(Bus* bus) {
  BusNames names;
  if (bus == nullptr || !bus->isOpen())
    return names;
  names.isOpen = true;
  readNames(*bus, "ListNames", names.owned);
  readNames(*bus, "ListActivatableNames", names.startable);
  return names;
}

DesktopReport makeDesktopReport(const DesktopSurvey& given) {
  DesktopSurvey survey = given;
  survey.facts.hasBus = survey.session.isOpen;
  survey.facts.hasTrayHost = survey.session.owned.contains(watcher);
  DesktopReport report{{busItem(survey.session), displayItem(survey.facts)}};
  if (survey.facts.hasX11)
    report.items.push_back(managerItem(survey.facts));
  report.items.push_back(surfaceItem(survey));
  report.items.push_back(trayItem(survey.facts));
  for (const auto& service : services())
    report.items.push_back(itemOf(service, service.isOnSystemBus ? survey.system : survey.session));
  report.items.push_back(soundItem(survey));
  report.items.push_back(keyboardItem(survey));
  report.items.push_back(modulesItem(survey));
  return report;
}

} // namespace tavrin
