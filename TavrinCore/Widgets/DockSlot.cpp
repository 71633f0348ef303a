#include "TavrinCore/Widgets/DockSlot.h"

#include <charconv>

namespace tavrin {
namespace {

constexpr std::string_view product = "dev.quellby.Tavrin";
constexpr std::string_view slotPrefix = "dev.quellby.Tavrin.Slot";
constexpr std::string_view widgetPrefix = "dev.quellby.Tavrin.Widget.";

} // namespace

std::string DockSlot::bundleIdentifier(int slot) {
  return std::string(slotPrefix) + std::to_string(slot);
}

std::string DockSlot::widgetBundleIdentifier(const UUID& id) {
  return std::string(widgetPrefix) + id.text();
}

std::string DockSlot::bundleName(int slot) {
  return "Tavrin Slot " + std::to_string(slot) + ".app";
}

std::optional<UUID> DockSlot::widgetID(std::string_view bundleIdentifier) {
  if (!bundleIdentifier.starts_with(widgetPrefix))
    return std::nullopt;
  return UUID::parse(bundleIdentifier.substr(widgetPrefix.size()));
}

std::optional<int> DockSlot::slot(std::string_view bundleIdentifier) {
  if (!bundleIdentifier.starts_with(slotPrefix))
    return std::nullopt;
  const auto digits = bundleIdentifier.substr(slotPrefix.size());
  int number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size())
    return std::nullopt;
  return number >= 1 && number <= count ? std::optional(number) : std::nullopt;
}

bool DockSlot::isTavrin(std::string_view bundleIdentifier) {
  return bundleIdentifier == product ||
         (bundleIdentifier.starts_with(product) && bundleIdentifier[product.size()] == '.');
}

std::optional<int> DockSlot::lowestFree(const std::set<int>& taken) {
  for (int slot = 1; slot <= count; ++slot)
    if (!taken.contains(slot))
      return slot;
  return std::nullopt;
}

std::optional<int> DockSlot::freeSlot(std::span<const DockWidget> widgets) {
  std::set<int> taken;
  for (const auto& widget : widgets)
    if (widget.slot)
      taken.insert(*widget.slot);
  return lowestFree(taken);
}

} // namespace tavrin
