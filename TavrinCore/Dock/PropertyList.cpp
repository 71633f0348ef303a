#include "TavrinCore/Dock/PropertyList.h"

#include "TavrinCore/Text/Texts.h"

#include <utility>

namespace tavrin {

PropertyList::PropertyList(std::uint64_t value) {
  if (std::in_range<std::int64_t>(value))
    value_ = static_cast<std::int64_t>(value);
  else
    value_ = value;
}

PropertyList PropertyList::parse(std::string_view bytes) {
  if (bytes.size() > maximumSize)
    throw PropertyListError(
        translated("it holds more than {number} bytes", {{"number", maximumSize}}));
  return bytes.starts_with("bplist") ? detail::parseBinaryPropertyList(bytes)
                                     : detail::parseXMLPropertyList(bytes);
}

const PropertyList* PropertyList::entry(std::string_view key) const {
  const auto* entries = dictionary();
  if (entries == nullptr)
    return nullptr;
  const auto found = entries->find(key);
  return found == entries->end() ? nullptr : &found->second;
}

bool PropertyList::operator==(const PropertyList&) const = default;

} // namespace tavrin
