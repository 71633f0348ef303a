#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tavrin {

/// Overwrites memory so that no compiler takes it for useless.
void wipe(void* memory, std::size_t length);
inline void wipe(std::span<std::uint8_t> bytes) {
  wipe(bytes.data(), bytes.size());
}
/// All that the text has room for, not only what it holds now. It is empty afterwards.
void wipe(std::string& text);

/// A text that is overwritten before its memory goes back.
class SecretText {
public:
  explicit SecretText(std::string text) : text_(std::move(text)) {}
  ~SecretText() { wipe(text_); }
  SecretText(const SecretText&) = delete;
  SecretText& operator=(const SecretText&) = delete;
  const std::string& text() const { return text_; }

private:
  std::string text_;
};

} // namespace tavrin
