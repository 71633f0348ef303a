#include "TavrinCore/Kinds/Bookmarks/WebAddress.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>
#include <unicode/idna.h>
#include <variant>

namespace tavrin {
namespace {

constexpr std::string_view notAnAddress = marked("This is not an address of the web.");
constexpr std::string_view otherScheme =
    marked("Only addresses that begin with http or https can be kept.");
constexpr std::string_view hasUser =
    marked("An address with a user's name in it can lead elsewhere than it seems to.");
constexpr std::string_view noHost = marked("There is no site of this name, nor can there be.");
constexpr std::string_view noPort = marked("The port is not a number up to 65535.");
constexpr std::string_view tooLong = marked("The address is longer than 2048 characters.");

/// What of a part of an address is written as "%20", beside controls and all beyond ASCII.
constexpr std::string_view encodedInPath = " \"#<>?`{}^";
constexpr std::string_view encodedInQuery = " \"#<>'";
constexpr std::string_view encodedInFragment = " \"<>`";

std::string encoded(std::string_view text, std::string_view alsoEncoded) {
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte <= 0x1F || byte >= 0x7F || alsoEncoded.find(character) != alsoEncoded.npos)
      result += fmt::format("%{:02X}", byte);
    else
      result += character;
  }
  return result;
}

const icu::IDNA* domainNames() {
  static const std::unique_ptr<const icu::IDNA> names = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<const icu::IDNA>(icu::IDNA::createUTS46Instance(
        UIDNA_CHECK_BIDI | UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_NONTRANSITIONAL_TO_UNICODE,
        status));
  }();
  return names.get();
}

bool isLiteralAddress(std::string_view host) {
  return host.size() > 3 && host.ends_with(']') &&
         host.find_first_not_of("0123456789abcdef:.", 1) == host.size() - 1;
}

/// A host as the domain name system has it; no value for one that there cannot be.
std::optional<std::string> asciiHost(std::string_view host) {
  if (host.starts_with('['))
    return isLiteralAddress(asciiLowered(host)) ? std::optional(asciiLowered(host)) : std::nullopt;
  constexpr std::string_view forbidden = " \"#%/<>?@\\^`{|}[]:";
  const bool isForbidden = std::ranges::any_of(host, [&](char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || forbidden.find(c) != forbidden.npos;
  });
  constexpr std::size_t longestName = 253;
  if (host.empty() || host.size() > longestName || host.front() == '.' || host.front() == '-' ||
      host.find("..") != host.npos || isForbidden || domainNames() == nullptr)
    return std::nullopt;
  std::string ascii;
  icu::StringByteSink<std::string> sink(&ascii);
  icu::IDNAInfo info;
  UErrorCode status = U_ZERO_ERROR;
  domainNames()->nameToASCII_UTF8({host.data(), static_cast<int32_t>(host.size())}, sink, info,
                                  status);
  // As browsers do: hyphens stand where they like.
  constexpr std::uint32_t forgiven =
      UIDNA_ERROR_LEADING_HYPHEN | UIDNA_ERROR_TRAILING_HYPHEN | UIDNA_ERROR_HYPHEN_3_4;
  const bool isRefused = U_FAILURE(status) || (info.getErrors() & ~forgiven) != 0;
  if (isRefused || ascii.empty() || ascii.size() > longestName ||
      std::ranges::any_of(ascii, [&](char c) { return forbidden.find(c) != forbidden.npos; }))
    return std::nullopt;
  return ascii;
}

std::optional<std::string> shownPort(std::string_view digits, bool isSecure) {
  if (digits.find_first_not_of("0123456789") != digits.npos || digits.size() > 5)
    return std::nullopt;
  int number = 0;
  for (const char digit : digits)
    number = number * 10 + (digit - '0');
  if (number > 65535)
    return std::nullopt;
  return digits.empty() || number == (isSecure ? 443 : 80) ? "" : fmt::format(":{}", number);
}

/// What follows the host.
std::string encodedRest(std::string_view rest) {
  const auto hash = std::min(rest.find('#'), rest.size());
  const auto question = std::min(rest.substr(0, hash).find('?'), hash);
  std::string path(rest.substr(0, question));
  // Browsers take either slash, and pass over breaks.
  std::ranges::replace(path, '\\', '/');
  std::string result = encoded(path, encodedInPath);
  if (question < hash)
    result += '?' + encoded(rest.substr(question + 1, hash - question - 1), encodedInQuery);
  if (hash < rest.size())
    result += '#' + encoded(rest.substr(hash + 1), encodedInFragment);
  return result;
}

/// The address, or why there is none.
using Outcome = std::variant<WebAddress, std::string_view>;

Outcome read(std::string_view text) {
  if (text.size() > WebAddress::longest)
    return tooLong;
  text = trimmed(text);
  if (text.empty() || !isUTF8(text) || std::ranges::any_of(text, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte < 0x20 || byte == 0x7F;
      }))
    return notAnAddress;
  WebAddress address;
  const auto colon = text.find("://");
  const bool hasScheme =
      colon != text.npos && text.substr(0, colon).find_first_of("/?# ") == std::string_view::npos;
  if (hasScheme) {
    const std::string scheme = asciiLowered(text.substr(0, colon));
    if (scheme != "http" && scheme != "https")
      return otherScheme;
    address.isSecure = scheme == "https";
    text.remove_prefix(colon + 3);
  }
  const auto end = std::min(text.find_first_of("/?#\\"), text.size());
  std::string_view authority = text.substr(0, end);
  // A name and a password in front make an address say another host than it leads to.
  if (authority.find('@') != authority.npos)
    return hasScheme ? hasUser : notAnAddress;
  const auto bracket = authority.starts_with('[') ? authority.find(']') : 0;
  const auto portAt = authority.find(':', bracket == authority.npos ? 0 : bracket);
  const auto port = portAt == authority.npos
                        ? std::optional<std::string>("")
                        : shownPort(authority.substr(portAt + 1), address.isSecure);
  const auto host = asciiHost(authority.substr(0, portAt));
  const bool isTypedWord = !hasScheme && (!host || host->find('.') == std::string::npos);
  if (isTypedWord)
    return notAnAddress;
  if (!port)
    return noPort;
  if (!host)
    return noHost;
  address.host = *host;
  address.port = *port;
  address.url = address.origin() + encodedRest(text.substr(end));
  return address.url.size() > WebAddress::longest ? Outcome(tooLong) : Outcome(address);
}

} // namespace

std::optional<WebAddress> WebAddress::from(std::string_view text) {
  auto result = read(text);
  auto* address = std::get_if<WebAddress>(&result);
  return address != nullptr ? std::optional(std::move(*address)) : std::nullopt;
}

std::string_view WebAddress::refusal(std::string_view text) {
  const auto result = read(text);
  const auto* reason = std::get_if<std::string_view>(&result);
  return reason != nullptr ? *reason : std::string_view();
}

std::string WebAddress::origin() const {
  return (isSecure ? "https://" : "http://") + host + port;
}

std::string WebAddress::site() const {
  std::string name = host.starts_with("www.") && host.size() > 4 ? host.substr(4) : host;
  if (name.find("xn--") == std::string::npos || domainNames() == nullptr)
    return name;
  std::string own;
  icu::StringByteSink<std::string> sink(&own);
  icu::IDNAInfo info;
  UErrorCode status = U_ZERO_ERROR;
  domainNames()->nameToUnicodeUTF8(name, sink, info, status);
  return U_FAILURE(status) || info.hasErrors() ? name : own;
}

std::string WebAddress::key() const {
  return url == origin() + "/" ? origin() : url;
}

} // namespace tavrin
