#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// An address of the web, taken apart the way browsers do (WHATWG's URL Standard).
struct WebAddress {
  static constexpr std::size_t longest = 2048;

  /// The whole, with its scheme: what a browser is to open. The host is in the letters of the
  /// domain name system ("xn--mnchen-3ya.example"), and what an address cannot hold is encoded as
  /// a browser does it: "https://example.com/two%20words".
  std::string url;
  bool isSecure = true;
  /// In lower case, without port and user.
  std::string host;
  /// With what follows the host's name up to the path: ":8080"; empty for the usual one.
  std::string port;

  /// From what somebody typed or kept: "example.com/a" is taken for https. No value for other
  /// schemes, for hosts that there cannot be, and beyond 2048 bytes.
  static std::optional<WebAddress> from(std::string_view text);
  /// Why there is no value, as a sentence for the user; empty where there is one.
  static std::string_view refusal(std::string_view text);

  /// Where the host's files begin: "https://example.com:8080".
  std::string origin() const;
  /// The host without "www.", in its own letters: "münchen.example".
  std::string site() const;
  /// Equal for addresses that lead to the same place: a "/" alone behind the host does not count.
  std::string key() const;
};

} // namespace tavrin
