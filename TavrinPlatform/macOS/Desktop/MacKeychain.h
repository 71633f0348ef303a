#pragma once

#include "TavrinPlatform/Keychain.h"

namespace tavrin {

/// Generic passwords of the login keychain. While a call runs, no keychain may ask the user anything,
/// but once whether this program may read what another one kept.
class MacKeychain final : public Keychain {
public:
  std::optional<Data> find(const std::string& service, const std::string& account) override;
  void add(const std::string& service, const std::string& account, const Data& secret) override;

private:
  bool hasAsked_ = false;
};

} // namespace tavrin
