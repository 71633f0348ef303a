#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"

#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinStorage/AESGCM.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"

#include <QProcess>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

TEST(ClipboardCrypto, MakesAKeyOnceAndANonceEachTime) {
  FakeKeychain keychain;
  ClipboardCrypto crypto(keychain);
  EXPECT_FALSE(crypto.readKey());
  const auto first = crypto.seal("words");
  const auto second = crypto.seal("words");
  ASSERT_EQ(keychain.secrets.size(), 1U);
  const Data& key = keychain.secrets.at("dev.quellby.tavrin.clipboard primary");
  EXPECT_EQ(key.bytes.size(), 32U);
  EXPECT_NE(first.combined, second.combined);
  EXPECT_EQ(crypto.open(first), "words");
  EXPECT_EQ(crypto.open(second), "words");
  const auto parts = first.parts();
  ASSERT_TRUE(parts);
  EXPECT_EQ(parts->nonce.size(), 12U);
  EXPECT_EQ(parts->ciphertext.size(), 5U);
  EXPECT_EQ(parts->tag.size(), 16U);
  EXPECT_FALSE((ClipboardCrypto::SealedBox{std::string(28, 'x')}.parts()));
  EXPECT_TRUE((ClipboardCrypto::SealedBox{std::string(29, 'x')}.parts()));
  EXPECT_THROW(crypto.open({std::string(28, 'x')}), ClipboardTruncatedError);
  EXPECT_THROW(crypto.open({std::string(29, 'x')}), CipherError);

  keychain.secrets.clear();
  EXPECT_EQ(crypto.open(crypto.seal("after")), "after");
  EXPECT_THROW(crypto.open(first), CipherError) << "another key by now";
  keychain.secrets.begin()->second.bytes.pop_back();
  EXPECT_FALSE(crypto.readKey()) << "31 bytes are no key";
}

/// A reader and writer that knows the layout alone.
class OtherProgram : public testing::Test {
protected:
  QByteArray run(const QStringList& arguments) {
    QProcess python;
    python.start("/usr/bin/python3",
                 QStringList{TAVRIN_SOURCE_DIR "/Tests/Support/clipboard_file.py"} + arguments);
    EXPECT_TRUE(python.waitForFinished(30'000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return python.readAllStandardOutput();
  }
  QString keyText() {
    const auto& key = keychain_.secrets.begin()->second;
    return QString::fromLatin1(QByteArray(key.view().data(), 32).toHex());
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "clipboard.json.enc";
  FakeKeychain keychain_;
  ClipboardVault vault_{file_, keychain_};
};

TEST_F(OtherProgram, ReadsWhatIsWrittenHere) {
  ClipboardItem item = ClipboardItem::ofText("Grüße \"x\"\n");
  item.id = UUID::random();
  item.capturedAt = {Date::fromUnixSeconds(1'788'984'522)};
  ASSERT_FALSE(vault_.save({std::make_shared<const ClipboardEntry>(item)}, {}, item.capturedAt.date)
                   .trouble);
  const auto json = run({"open", QString::fromStdString(file_.string()), keyText()});
  EXPECT_EQ(JSONValue::parse(json.toStdString()), JSONValue(JSONValue::Array{encode(item)}));
}

TEST_F(OtherProgram, WritesWhatIsReadHere) {
  ClipboardCrypto(keychain_).loadKey();
  const QString json =
      R"([{"id":"6BA7B810-9DAD-41D1-80B4-00C04FD430C8","kind":"image","capturedAt":)"
      R"("2026-09-09T20:08:42Z","isPinned":true,"imageData":"AP8=","byteSize":2,)"
      R"("isSensitive":false}])";
  run({"seal", QString::fromStdString(file_.string()), keyText(), json});
  const auto outcome = vault_.read();
  ASSERT_FALSE(outcome.trouble) << outcome.trouble->text;
  ASSERT_EQ(outcome.stored->size(), 1U);
  EXPECT_EQ(outcome.stored->at(0)->item.imageData, (Data{{0, 255}}));
  EXPECT_TRUE(outcome.stored->at(0)->item.isPinned);
}

} // namespace
} // namespace tavrin::test
