#include "TavrinWidgetsUI/Clipboard/ClipboardCrypto.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinStorage/AESGCM.h"

#include <algorithm>

namespace tavrin {

SymmetricKey SymmetricKey::random() {
  SymmetricKey key;
  aesGCM::fillRandom(key.bytes_);
  return key;
}

std::optional<SymmetricKey> SymmetricKey::from(const Data& data) {
  if (data.bytes.size() != length)
    return std::nullopt;
  SymmetricKey key;
  std::ranges::copy(data.bytes, key.bytes_.begin());
  return key;
}

SymmetricKey::~SymmetricKey() {
  wipe(bytes_);
}

std::optional<ClipboardCrypto::SealedBox::Parts> ClipboardCrypto::SealedBox::parts() const {
  if (combined.size() < leastLength)
    return std::nullopt;
  const std::string_view whole = combined;
  const std::size_t tag = whole.size() - aesGCM::tagLength;
  return Parts{whole.substr(0, aesGCM::nonceLength),
               whole.substr(aesGCM::nonceLength, tag - aesGCM::nonceLength), whole.substr(tag)};
}

SymmetricKey ClipboardCrypto::loadKey() {
  if (auto key = readKey())
    return *key;
  const auto key = SymmetricKey::random();
  writeKey(key);
  return key;
}

std::optional<SymmetricKey> ClipboardCrypto::readKey() {
  auto data = keychain_.find(service, account);
  if (!data)
    return std::nullopt;
  auto key = SymmetricKey::from(*data);
  wipe(data->bytes);
  return key;
}

void ClipboardCrypto::writeKey(const SymmetricKey& key) {
  Data data{{key.bytes().begin(), key.bytes().end()}};
  try {
    keychain_.add(service, account, data);
  } catch (...) {
    wipe(data.bytes);
    throw;
  }
  wipe(data.bytes);
}

ClipboardCrypto::SealedBox ClipboardCrypto::seal(std::string plaintext) {
  try {
    const auto key = loadKey();
    return {aesGCM::seal(key.bytes(), std::move(plaintext))};
  } catch (...) {
    wipe(plaintext);
    throw;
  }
}

std::string ClipboardCrypto::open(SealedBox box) {
  if (!box.parts())
    throw ClipboardTruncatedError();
  const auto key = loadKey();
  return aesGCM::open(key.bytes(), std::move(box.combined));
}

} // namespace tavrin
