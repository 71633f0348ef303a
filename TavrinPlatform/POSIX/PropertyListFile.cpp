#include "TavrinPlatform/POSIX/PropertyListFile.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinPlatform/Files/PlistRoot.h"

namespace tavrin {

namespace {

template <class Value> std::optional<Value> copied(const Value* value) {
  return value == nullptr ? std::nullopt : std::optional(*value);
}

} // namespace

std::optional<PropertyListFile> PropertyListFile::read(const std::filesystem::path& path) {
  try {
    if (auto root = readPlistRoot(path))
      return PropertyListFile(std::make_shared<const PropertyList>(std::move(*root)));
  } catch (const DockError&) {
  }
  return std::nullopt;
}

std::optional<std::string> PropertyListFile::string(const std::string& key) const {
  const auto* entry = root_->entry(key);
  return entry == nullptr ? std::nullopt : copied(entry->string());
}

std::optional<long> PropertyListFile::integer(const std::string& key) const {
  const auto* entry = root_->entry(key);
  const auto* value = entry == nullptr ? nullptr : entry->integer();
  return value == nullptr ? std::nullopt : std::optional(static_cast<long>(*value));
}

std::optional<double> PropertyListFile::number(const std::string& key) const {
  if (const auto whole = integer(key))
    return static_cast<double>(*whole);
  const auto* entry = root_->entry(key);
  return entry == nullptr ? std::nullopt : copied(entry->real());
}

std::optional<bool> PropertyListFile::boolean(const std::string& key) const {
  const auto* entry = root_->entry(key);
  return entry == nullptr ? std::nullopt : copied(entry->boolean());
}

} // namespace tavrin
