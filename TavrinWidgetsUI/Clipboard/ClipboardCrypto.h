#pragma once

#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Keychain.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// A sealed file that is too short to be one.
class ClipboardTruncatedError : public std::runtime_error {
public:
  ClipboardTruncatedError()
      : std::runtime_error(
            translated("Failed to read the encrypted clipboard because the file is incomplete")) {}
};

/// 256 bits that are overwritten when they go.
class SymmetricKey {
public:
  static constexpr std::size_t length = 32;

  static SymmetricKey random();
  /// No value for bytes of another length.
  static std::optional<SymmetricKey> from(const Data& data);
  SymmetricKey(const SymmetricKey&) = default;
  SymmetricKey& operator=(const SymmetricKey&) = default;
  ~SymmetricKey();

  const std::array<std::uint8_t, length>& bytes() const { return bytes_; }

private:
  SymmetricKey() = default;
  std::array<std::uint8_t, length> bytes_{};
};

/// Seals and opens the clipboard's file under a key in the user's keychain. The key is looked up
/// each time and never kept. Waits for the keychain: not for the main thread.
class ClipboardCrypto {
public:
  static constexpr const char* service = "dev.quellby.tavrin.clipboard";
  static constexpr const char* account = "primary";

  /// The whole file: 12 bytes of nonce, the ciphertext, 16 bytes of tag.
  struct SealedBox {
    static constexpr std::size_t leastLength = 29;
    struct Parts {
      std::string_view nonce;
      std::string_view ciphertext;
      std::string_view tag;
    };

    std::string combined;

    /// Views into `combined`; no value when that is shorter than `leastLength`.
    std::optional<Parts> parts() const;
  };

  explicit ClipboardCrypto(Keychain& keychain) : keychain_(keychain) {}

  /// The key; a new one where there is none. Throws KeychainError.
  SymmetricKey loadKey();
  /// No value when the keychain holds none that can be used.
  std::optional<SymmetricKey> readKey();
  void writeKey(const SymmetricKey& key);

  /// Overwrites the plaintext, also where it throws KeychainError or CipherError.
  SealedBox seal(std::string plaintext);
  /// Throws ClipboardTruncatedError, KeychainError or CipherError. The caller wipes the text.
  std::string open(SealedBox box);

private:
  Keychain& keychain_;
};

} // namespace tavrin
