#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tavrin::test {

/// A settings manager's property that holds these texts behind a number and a colour, and these
/// numbers after them.
inline std::string xsettings(const std::vector<std::pair<std::string, std::string>>& texts,
                             bool isBig = false,
                             const std::vector<std::pair<std::string, std::size_t>>& numbers = {}) {
  const auto number = [&](std::size_t value, std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
      bytes += static_cast<char>(value >> 8 * (isBig ? count - 1 - i : i));
    return bytes;
  };
  const auto padded = [](std::string text) {
    text.resize((text.size() + 3) / 4 * 4);
    return text;
  };
  const auto entry = [&](char type, const std::string& name) {
    return std::string{type, '\0'} + number(name.size(), 2) + padded(name) + number(7, 4);
  };
  std::string bytes = std::string{isBig ? '\1' : '\0'} + std::string(3, '\0') + number(9, 4) +
                      number(texts.size() + numbers.size() + 2, 4);
  bytes += entry(0, "Xft/DPI") + number(98304, 4);
  bytes += entry(2, "Some/Colour") + std::string(8, '\x7F');
  for (const auto& [name, text] : texts)
    bytes += entry(1, name) + number(text.size(), 4) + padded(text);
  for (const auto& [name, value] : numbers)
    bytes += entry(0, name) + number(value, 4);
  return bytes;
}

} // namespace tavrin::test
