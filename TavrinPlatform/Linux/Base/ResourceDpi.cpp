#include "TavrinPlatform/Linux/Base/ResourceDpi.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Linux/Base/DesktopXSettings.h"
#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>

namespace tavrin {

namespace {

constexpr std::uint32_t mostWords = 64 * 1024;
constexpr const char* resourcesProperty = "RESOURCE_MANAGER";

std::string currentDpi() {
  return dpiInResources(x11::text(x11::root(), resourcesProperty, mostWords));
}

} // namespace

std::string dpiInResources(std::string_view resources) {
  constexpr std::string_view name = "Xft.dpi:";
  while (!resources.empty()) {
    const auto end = std::min(resources.find('\n'), resources.size());
    std::string_view line = resources.substr(0, end);
    resources.remove_prefix(std::min(end + 1, resources.size()));
    if (!line.starts_with(name))
      continue;
    line.remove_prefix(name.size());
    return std::string(withoutLeadingBlanks(line));
  }
  return {};
}

ResourceDpi::ResourceDpi(std::function<void()> changed) : changed_(std::move(changed)) {
  if (x11::connection() == nullptr)
    return;
  dpi_ = currentDpi();
  QCoreApplication::instance()->installNativeEventFilter(this);
}

ResourceDpi::~ResourceDpi() {
  if (auto* application = QCoreApplication::instance())
    application->removeNativeEventFilter(this);
}

bool ResourceDpi::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
    return false;
  const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
  if (change->window != x11::root() || change->atom != x11::atom(resourcesProperty))
    return false;
  std::string now = currentDpi();
  // A settings manager's word goes before the database's, and the toolkit follows it by itself.
  if (std::exchange(dpi_, std::move(now)) != dpi_ && !DesktopXSettings().integer("Xft/DPI"))
    changed_();
  return false;
}

} // namespace tavrin
