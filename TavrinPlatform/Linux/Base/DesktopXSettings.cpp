#include "TavrinPlatform/Linux/Base/DesktopXSettings.h"

#include "TavrinCore/Desktop/XSettings.h"
#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>

namespace tavrin {
namespace {

constexpr const char* managerSelection = "_XSETTINGS_S0";
constexpr const char* settingsProperty = "_XSETTINGS_SETTINGS";
constexpr std::uint32_t mostItems = 16 * 1024;
constexpr std::uint8_t sentMask = 0x80;

} // namespace

DesktopXSettings::DesktopXSettings() {
  if (x11::connection() == nullptr)
    return;
  findManager();
  QCoreApplication::instance()->installNativeEventFilter(this);
}

std::optional<std::string> DesktopXSettings::text(std::string_view name) const {
  return textInXSettings(x11::text(manager_, settingsProperty, mostItems), name);
}

std::optional<std::int32_t> DesktopXSettings::integer(std::string_view name) const {
  return integerInXSettings(x11::text(manager_, settingsProperty, mostItems), name);
}

void DesktopXSettings::findManager() {
  manager_ = x11::selectionOwner(managerSelection);
  // The same that the toolkit asks for, should it follow the manager too.
  if (manager_ != XCB_NONE)
    x11::selectEvents(manager_, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
}

bool DesktopXSettings::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  bool isChanged = false;
  switch (event->response_type & ~sentMask) {
  case XCB_PROPERTY_NOTIFY: {
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    isChanged = change->window == manager_ && change->atom == x11::atom(settingsProperty);
    break;
  }
  case XCB_DESTROY_NOTIFY:
    isChanged = reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == manager_ &&
                manager_ != XCB_NONE;
    break;
  case XCB_CLIENT_MESSAGE: {
    const auto* words = reinterpret_cast<const xcb_client_message_event_t*>(event);
    isChanged =
        words->type == x11::atom("MANAGER") && words->data.data32[1] == x11::atom(managerSelection);
    break;
  }
  default:
    break;
  }
  if (isChanged) {
    findManager();
    if (onChange)
      onChange();
  }
  return false;
}

} // namespace tavrin
