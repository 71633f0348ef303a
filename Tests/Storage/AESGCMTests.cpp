#include "TavrinStorage/AESGCM.h"

#include "TavrinCore/Base/Wipe.h"

#include <gtest/gtest.h>
#include <vector>

namespace tavrin {
namespace {

std::string bytes(std::string_view hex) {
  std::string out;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    out += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
  return out;
}

std::vector<std::uint8_t> key(std::string_view hex) {
  const auto text = bytes(hex);
  return {text.begin(), text.end()};
}

/// Published vectors of the mode: numbers 13, 14 and 15.
TEST(AESGCM, OpensThePublishedExamples) {
  struct Case {
    const char* key;
    const char* box;
    const char* plaintext;
  };
  const Case cases[] = {
      {"0000000000000000000000000000000000000000000000000000000000000000",
       "000000000000000000000000530f8afbc74536b9a963b4f1c4cb738b", ""},
      {"0000000000000000000000000000000000000000000000000000000000000000",
       "000000000000000000000000cea7403d4d606b6e074ec5d3baf39d18d0d1c8a799996bf0265b98b5d48ab919",
       "00000000000000000000000000000000"},
      {"feffe9928665731c6d6a8f9467308308feffe9928665731c6d6a8f9467308308",
       "cafebabefacedbaddecaf888522dc1f099567d07f47f37a32a84427d643a8cdcbfe5c0c97598a2bd2555d1aa8c"
       "b08e48590dbb3da7b08b1056828838c5f61e6393ba7a0abcc9f662898015adb094dac5d93471bdec1a502270e3"
       "cc6c",
       "d9313225f88406e5a55909c5aff5269a86a7a9531534f7da2e4c303d8a318a721c3c0c95956809532fcf0e2449"
       "a6b525b16aedf5aa0de657ba637b391aafd255"}};
  for (const auto& [secret, box, plaintext] : cases)
    EXPECT_EQ(aesGCM::open(key(secret), bytes(box)), bytes(plaintext));
}

TEST(AESGCM, EveryFlippedBitIsFound) {
  const std::vector<std::uint8_t> secret(aesGCM::keyLength, 7);
  const std::string box = aesGCM::seal(secret, "plaintext");
  EXPECT_EQ(box.size(), 12U + 9 + 16);
  EXPECT_EQ(aesGCM::open(secret, box), "plaintext");
  EXPECT_NE(aesGCM::seal(secret, "plaintext"), box) << "the nonce is new each time";
  for (std::size_t bit = 0; bit < box.size() * 8; ++bit) {
    std::string altered = box;
    altered[bit / 8] = static_cast<char>(altered[bit / 8] ^ (1 << bit % 8));
    EXPECT_THROW(aesGCM::open(secret, altered), CipherError) << bit;
  }
  EXPECT_THROW(aesGCM::open(std::vector<std::uint8_t>(aesGCM::keyLength, 8), box), CipherError);
  for (std::size_t length = 0; length < box.size(); ++length)
    EXPECT_THROW(aesGCM::open(secret, box.substr(0, length)), CipherError) << length;
}

TEST(AESGCM, PiecesMeetWhateverTheLength) {
  const std::vector<std::uint8_t> secret(aesGCM::keyLength, 7);
  for (const std::size_t length :
       {0U, 1U, 11U, 12U, 13U, 65'535U, 65'536U, 65'537U, 65'548U, 131'072U, 200'000U}) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
      text += static_cast<char>(i * 31 + i / 256);
    const std::string box = aesGCM::seal(secret, text);
    EXPECT_EQ(box.size(), length + 28);
    EXPECT_EQ(aesGCM::open(secret, box), text) << length;
  }
}

TEST(AESGCM, SecretsAreOverwritten) {
  std::string text(100, 'x');
  const char* memory = text.data();
  wipe(text);
  EXPECT_EQ(std::string_view(memory, 100), std::string(100, '\0'));
}

} // namespace
} // namespace tavrin
