#pragma once

#include <string>

namespace tavrin {

/// Whether an Internet address ("93.184.216.34", "2606:2800::1") belongs to a host on the public
/// Internet. False for this computer, private, link-local, shared, multicast, reserved and
/// documentation addresses, for IPv6 addresses that carry such an IPv4 address, and for what is no
/// address. Follows the special-purpose address registries (RFC 6890).
bool isPublicAddress(const std::string& address);

} // namespace tavrin
