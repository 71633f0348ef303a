#include "TavrinPlatform/Linux/Input/PortalShortcuts.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Input/ShortcutKeys.h"

#include <set>

namespace tavrin {
namespace {

constexpr const char* shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* declinedReason = marked("it was declined");

using Outcome = PortalRequest::Outcome;

void appendText(sd_bus_message* message, const char* name, const std::string& text) {
  sd_bus_message_append(message, "{sv}", name, "s", text.c_str());
}

void appendShortcuts(sd_bus_message* message,
                     const std::vector<GlobalShortcuts::Shortcut>& shortcuts) {
  sd_bus_message_open_container(message, 'a', "(sa{sv})");
  for (const auto& shortcut : shortcuts) {
    sd_bus_message_open_container(message, 'r', "sa{sv}");
    sd_bus_message_append(message, "s", shortcut.id.c_str());
    sd_bus_message_open_container(message, 'a', "{sv}");
    appendText(message, "description", shortcut.description);
    if (const auto trigger = portalTrigger(shortcut.hotkey))
      appendText(message, "preferred_trigger", *trigger);
    sd_bus_message_close_container(message);
    sd_bus_message_close_container(message);
  }
  sd_bus_message_close_container(message);
}

/// The next in `message` is a variant of shortcuts.
std::set<std::string> readIdentifiers(sd_bus_message* message) {
  std::set<std::string> identifiers;
  if (sd_bus_message_enter_container(message, 'v', "a(sa{sv})") <= 0)
    return identifiers;
  if (sd_bus_message_enter_container(message, 'a', "(sa{sv})") > 0) {
    while (sd_bus_message_enter_container(message, 'r', "sa{sv}") > 0) {
      identifiers.insert(textArgument(message));
      sd_bus_message_skip(message, "a{sv}");
      sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  return identifiers;
}

} // namespace

PortalShortcuts::PortalShortcuts(Bus& session, const std::string& applicationIdentifier,
                                 Listener listener)
    : bus_(session), listener_(std::move(listener)) {
  // Portals that know no such names say so, which does not matter.
  BusMessage registration =
      bus_.method({portalService, portalPath, "org.freedesktop.host.portal.Registry"}, "Register");
  bus_.call(registration.append("sa{sv}", applicationIdentifier.c_str(), 0),
            [](sd_bus_message*, const std::string&) {});
  activated_ = bus_.match(std::string("type='signal',member='Activated',interface='") +
                              shortcutsInterface + "',sender='" + portalService + "'",
                          [this](sd_bus_message* signal) { pressed(signal); });
  owner_ = bus_.match(std::string("type='signal',sender='org.freedesktop.DBus',"
                                  "member='NameOwnerChanged',arg0='") +
                          portalService + "'",
                      [this](sd_bus_message* signal) {
                        const char* owner = "";
                        sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner);
                        ownerChanged(*owner != '\0');
                      });
}

PortalShortcuts::~PortalShortcuts() {
  closeSession();
}

void PortalShortcuts::bind(std::vector<GlobalShortcuts::Shortcut> shortcuts) {
  closeSession();
  shortcuts_ = std::move(shortcuts);
  if (!shortcuts_.empty())
    openSession();
}

void PortalShortcuts::ask(const char* member, const PortalRequest::Build& build,
                          void (PortalShortcuts::*granted)(sd_bus_message* results)) {
  request_ =
      std::make_unique<PortalRequest>(bus_, shortcutsInterface, member, build,
                                      [this, granted](Outcome outcome, sd_bus_message* results) {
                                        if (outcome == Outcome::granted)
                                          (this->*granted)(results);
                                        else if (outcome == Outcome::declined)
                                          refuseAll(translated(declinedReason));
                                        else
                                          giveUp();
                                      });
}

void PortalShortcuts::openSession() {
  const std::string token = newPortalToken();
  ask(
      "CreateSession",
      [&](BusMessage& call, const char* handle) {
        call.append("a{sv}", 2, "handle_token", "s", handle, "session_handle_token", "s",
                    token.c_str());
      },
      &PortalShortcuts::sessionOpened);
}

void PortalShortcuts::closeSession() {
  request_.reset();
  closed_.reset();
  if (!session_.empty())
    bus_.send(bus_.method({portalService, session_.c_str(), sessionInterface}, "Close"));
  session_.clear();
  isBound_ = false;
}

void PortalShortcuts::sessionOpened(sd_bus_message* results) {
  eachPortalEntry(results, [&](const std::string& name) {
    const char* path = nullptr;
    // A text by its description, an object path by its meaning: both are met.
    if (name != "session_handle" || (sd_bus_message_read(results, "v", "s", &path) <= 0 &&
                                     sd_bus_message_read(results, "v", "o", &path) <= 0))
      return false;
    session_ = path;
    return true;
  });
  if (sd_bus_object_path_is_valid(session_.c_str()) <= 0) {
    session_.clear();
    giveUp();
    return;
  }
  closed_ = bus_.match(std::string("type='signal',member='Closed',interface='") + sessionInterface +
                           "',path='" + session_ + "'",
                       [this](sd_bus_message*) {
                         session_.clear();
                         request_.reset();
                         isBound_ = false;
                         refuseAll(translated("the desktop has taken it back"));
                       });
  bindShortcuts();
}

void PortalShortcuts::bindShortcuts() {
  ask(
      "BindShortcuts",
      [this](BusMessage& call, const char* handle) {
        call.append("o", session_.c_str());
        appendShortcuts(call.get(), shortcuts_);
        call.append("sa{sv}", "", 1, "handle_token", "s", handle);
      },
      &PortalShortcuts::shortcutsBound);
}

void PortalShortcuts::shortcutsBound(sd_bus_message* results) {
  isBound_ = true;
  std::set<std::string> granted;
  eachPortalEntry(results, [&](const std::string& name) {
    if (name != "shortcuts")
      return false;
    granted = readIdentifiers(results);
    return true;
  });
  const auto asked = shortcuts_;
  for (const auto& shortcut : asked)
    if (!granted.contains(shortcut.id))
      listener_.refused({shortcut.id, translated(declinedReason)});
}

void PortalShortcuts::refuseAll(const std::string& reason) {
  const auto asked = shortcuts_;
  for (const auto& shortcut : asked)
    listener_.refused({shortcut.id, reason});
}

void PortalShortcuts::giveUp() {
  // The listener may drop this.
  const auto unavailable = listener_.unavailable;
  unavailable();
}

void PortalShortcuts::ownerChanged(bool isThere) {
  // A portal that ends over the request itself is not asked again; one that comes back is.
  if (!isThere && request_ && !isBound_) {
    session_.clear();
    giveUp();
  } else if (!isThere && isBound_) {
    session_.clear();
    bind(shortcuts_);
  }
}

void PortalShortcuts::pressed(sd_bus_message* signal) {
  const char* session = nullptr;
  const char* id = nullptr;
  if (sd_bus_message_read(signal, "os", &session, &id) <= 0 || session_ != session ||
      session_.empty())
    return;
  for (const auto& shortcut : shortcuts_)
    if (shortcut.id == id) {
      const auto pressed = listener_.pressed;
      pressed(shortcut.id);
      return;
    }
}

} // namespace tavrin
