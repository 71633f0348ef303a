#pragma once

#include "TavrinPlatform/Keychain.h"

#include <gtest/gtest.h>

/// What every Keychain does. A rig has `keychain()` and `refuse(status)`.
namespace tavrin::test {

template <class Rig> class KeychainContract : public testing::Test {
protected:
  Keychain& keychain() { return rig.keychain(); }
  Rig rig;
};
TYPED_TEST_SUITE_P(KeychainContract);

TYPED_TEST_P(KeychainContract, FindsTheBytesOfExactlyThatServiceAndAccount) {
  const Data secret = Data::fromText(std::string_view("\0\xff key \0", 8));
  EXPECT_EQ(this->keychain().find("service", "account"), std::nullopt);
  this->keychain().add("service", "account", secret);
  EXPECT_EQ(this->keychain().find("service", "account"), secret);
  EXPECT_EQ(this->keychain().find("service", "other"), std::nullopt);
  EXPECT_EQ(this->keychain().find("other", "account"), std::nullopt);
}

TYPED_TEST_P(KeychainContract, ARefusalCarriesTheSystemsNumber) {
  this->rig.refuse(Keychain::interactionNotAllowed);
  const auto status = [](const auto& call) {
    try {
      call();
    } catch (const KeychainError& error) {
      EXPECT_STREQ(error.what(),
                   "Failed to access the Keychain because the system returned -25308");
      return error.status();
    }
    return 0;
  };
  EXPECT_EQ(status([&] { this->keychain().find("service", "account"); }), -25308);
  EXPECT_EQ(status([&] { this->keychain().add("service", "account", {}); }), -25308);
}

REGISTER_TYPED_TEST_SUITE_P(KeychainContract, FindsTheBytesOfExactlyThatServiceAndAccount,
                            ARefusalCarriesTheSystemsNumber);

} // namespace tavrin::test
