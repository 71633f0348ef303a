#include "TavrinPlatform/Linux/PropertyListFile.h"

#include <cstdint>
#include <fstream>
#include <limits>

namespace tavrin {

namespace {
constexpr std::streamoff longestFile = 8 * 1024 * 1024;
}

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
  plist_t root = nullptr;
  plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
  if (root == nullptr)
    return std::nullopt;
  PropertyListFile list(root);
  if (plist_get_node_type(root) != PLIST_DICT)
    return std::nullopt;
  return list;
}

plist_t PropertyListFile::entry(const std::string& key) const {
  return plist_dict_get_item(root_.get(), key.c_str());
}

std::optional<std::string> PropertyListFile::string(const std::string& key) const {
  const plist_t node = entry(key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_STRING)
    return std::nullopt;
  std::uint64_t length = 0;
  const char* text = plist_get_string_ptr(node, &length);
  return text == nullptr ? std::string() : std::string(text, length);
}

std::optional<long> PropertyListFile::integer(const std::string& key) const {
  const plist_t node = entry(key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_UINT)
    return std::nullopt;
  // The library keeps negative numbers as the unsigned ones of the same bits.
  std::uint64_t value = 0;
  plist_get_uint_val(node, &value);
  return static_cast<long>(value);
}

std::optional<double> PropertyListFile::number(const std::string& key) const {
  if (const auto whole = integer(key))
    return static_cast<double>(*whole);
  const plist_t node = entry(key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_REAL)
    return std::nullopt;
  double value = 0;
  plist_get_real_val(node, &value);
  return value;
}

std::optional<bool> PropertyListFile::boolean(const std::string& key) const {
  const plist_t node = entry(key);
  if (node == nullptr || plist_get_node_type(node) != PLIST_BOOLEAN)
    return std::nullopt;
  std::uint8_t value = 0;
  plist_get_bool_val(node, &value);
  return value != 0;
}

} // namespace tavrin
