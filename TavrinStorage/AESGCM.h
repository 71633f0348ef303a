#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavrin {

/// What the cryptographic library would not do. `what()` is a clause that can follow "because".
class CipherError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// AES-256 in Galois/Counter Mode, through a library that the first call loads. Any thread.
namespace aesGCM {

inline constexpr std::size_t keyLength = 32;
inline constexpr std::size_t nonceLength = 12;
inline constexpr std::size_t tagLength = 16;

using Bytes = std::span<const std::uint8_t>;

/// From the library's generator. Throws CipherError.
void fillRandom(std::span<std::uint8_t> bytes);
/// A fresh nonce, the ciphertext, the tag. Works in place: the plaintext is overwritten, also where
/// it throws CipherError. Room for 28 more bytes saves a copy.
std::string seal(Bytes key, std::string plaintext);
/// Back from what `seal` made, of at least nonce and tag; in place too. Throws CipherError when
/// that was altered or sealed under another key.
std::string open(Bytes key, std::string box);

} // namespace aesGCM

} // namespace tavrin
