#pragma once

#include "TavrinPlatform/Keychain.h"

namespace tavrin {

/// The user's keyring behind the Secret Service. The library for it is loaded by the first call.
class SecretServiceKeychain final : public Keychain {
public:
  std::optional<Data> find(const std::string& service, const std::string& account) override;
  void add(const std::string& service, const std::string& account, const Data& secret) override;
};

} // namespace tavrin
