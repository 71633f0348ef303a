#include "TavrinPlatform/Linux/Desktop/SecretServiceKeychain.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/KeychainContract.h"

#include <gtest/gtest.h>

/// The keychain on a real keyring: one that is unlocked, then locked; and none at all.
namespace tavrin {
namespace {

constexpr const char* service = "dev.quellby.tavrin.clipboard";

bool hasKeyring() {
  return qgetenv("DESK_KIND") != "bare";
}

int statusOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const KeychainError& error) {
    EXPECT_EQ(std::string(error.what()),
              "Failed to access the Keychain because the system returned " +
                  std::to_string(error.status()));
    return error.status();
  }
  return 0;
}

void lockKeyring() {
  shell("gdbus call --session -d org.freedesktop.secrets -o /org/freedesktop/secrets -m "
        "org.freedesktop.Secret.Service.Lock "
        "\"['/org/freedesktop/secrets/collection/login']\"");
}

TEST(SecretServiceKeychain, KeepsBytesAndSaysWhenItIsLocked) {
  if (!hasKeyring())
    GTEST_SKIP();
  SecretServiceKeychain keychain;
  EXPECT_FALSE(keychain.find(service, "primary"));
  Data secret;
  for (int i = 0; i < 32; ++i)
    secret.bytes.push_back(static_cast<std::uint8_t>(i * 8));
  keychain.add(service, "primary", secret);
  EXPECT_EQ(keychain.find(service, "primary"), secret);
  EXPECT_FALSE(keychain.find(service, "secondary"));
  EXPECT_FALSE(keychain.find("other", "primary"));
  EXPECT_EQ(shell("secret-tool lookup service dev.quellby.tavrin.clipboard account primary | "
                  "wc -c"),
            "32");

  lockKeyring();
  EXPECT_EQ(statusOf([&] { keychain.find(service, "primary"); }), -25308);
  EXPECT_EQ(statusOf([&] { keychain.add(service, "other", secret); }), -25308);
}

/// Another daemon takes the keyring over, as after a crash or for another password.
void replaceDaemon() {
  const auto owner = [] {
    return shell("gdbus call --session -d org.freedesktop.DBus -o / -m "
                 "org.freedesktop.DBus.GetNameOwner org.freedesktop.secrets 2>/dev/null");
  };
  const std::string before = owner();
  shell("printf test | gnome-keyring-daemon --replace --unlock --components=secrets >/dev/null");
  EXPECT_TRUE(eventually([&] { return !owner().empty() && owner() != before; }));
}

TEST(SecretServiceKeychain, FollowsTheDaemonThatIsThere) {
  if (!hasKeyring())
    GTEST_SKIP();
  SecretServiceKeychain keychain;
  const Data secret = Data::fromText("words");
  lockKeyring();
  EXPECT_EQ(statusOf([&] { keychain.add("other", "first", secret); }), -25308);
  replaceDaemon();
  EXPECT_EQ(statusOf([&] { keychain.add("other", "first", secret); }), 0);
  EXPECT_EQ(keychain.find("other", "first"), secret);
  replaceDaemon();
  EXPECT_EQ(statusOf([&] { EXPECT_EQ(keychain.find("other", "first"), secret); }), 0);
  EXPECT_EQ(statusOf([&] { keychain.add("other", "second", secret); }), 0);
}

TEST(SecretServiceKeychain, SaysWhenThereIsNone) {
  if (hasKeyring())
    GTEST_SKIP();
  SecretServiceKeychain keychain;
  EXPECT_NE(statusOf([&] { keychain.find(service, "primary"); }), 0);
  EXPECT_NE(statusOf([&] { keychain.add(service, "primary", {}); }), 0);
}

} // namespace

namespace test {
namespace {

struct SecretServiceRig {
  ~SecretServiceRig() {
    if (isLocked_)
      replaceDaemon();
  }
  Keychain& keychain() { return keychain_; }
  /// A keyring that is locked refuses with this number.
  void refuse(int status) {
    ASSERT_EQ(status, Keychain::interactionNotAllowed);
    lockKeyring();
    isLocked_ = true;
  }
  SecretServiceKeychain keychain_;
  bool isLocked_ = false;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, KeychainContract, SecretServiceRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // What every keychain does, none does.
  if (!tavrin::hasKeyring())
    GTEST_FLAG_SET(filter, "-*Contract*");
  return RUN_ALL_TESTS();
}
