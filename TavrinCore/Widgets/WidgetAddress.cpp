#include "TavrinCore/Widgets/WidgetAddress.h"

#include "TavrinCore/Widgets/DockSlot.h"

namespace tavrin {

WidgetAddress::WidgetAddress(const DockWidget& widget) : value_(widget.id) {
  if (widget.slot)
    value_ = *widget.slot;
}

std::optional<WidgetAddress>
WidgetAddress::fromBundleIdentifier(std::string_view bundleIdentifier) {
  if (const auto id = DockSlot::widgetID(bundleIdentifier))
    return ofID(*id);
  if (const auto slot = DockSlot::slot(bundleIdentifier))
    return ofSlot(*slot);
  return std::nullopt;
}

std::string WidgetAddress::bundleIdentifier() const {
  return id() ? DockSlot::widgetBundleIdentifier(*id()) : DockSlot::bundleIdentifier(*slot());
}

std::string WidgetAddress::key() const {
  return id() ? id()->text() : "slot" + std::to_string(*slot());
}

bool WidgetAddress::matches(const DockWidget& widget) const {
  return id() ? widget.id == *id() : widget.slot == *slot();
}

} // namespace tavrin
