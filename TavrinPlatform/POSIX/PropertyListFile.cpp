#include "TavrinPlatform/POSIX/PropertyListFile.h"

#include <fstream>

namespace tavrin {

namespace {

constexpr std::streamoff longestFile = 8 * 1024 * 1024;

template <class Value> std::optional<Value> copied(const Value* value) {
  return value == nullptr ? std::nullopt : std::optional(*value);
}

} // namespace

std::optional<PropertyListFile> PropertyListFile::read(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error))
    return std::nullopt;
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
  if (size <= 0 || size > longestFile)
    return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (!file.seekg(0) || !file.read(bytes.data(), size))
    return std::nullopt;
  try {
    auto root = std::make_shared<const PropertyList>(PropertyList::parse(bytes));
    if (root->dictionary() != nullptr)
      return PropertyListFile(std::move(root));
  } catch (const PropertyListError&) {
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
