#include "TavrinStorage/AESGCM.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/SharedLibrary.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <vector>

namespace tavrin {
namespace {

/// What of the library is used; nothing of it is linked.
struct Library {
  decltype(&EVP_CIPHER_CTX_new) make = nullptr;
  decltype(&EVP_CIPHER_CTX_free) free = nullptr;
  decltype(&EVP_CIPHER_CTX_ctrl) control = nullptr;
  decltype(&EVP_aes_256_gcm) cipher = nullptr;
  decltype(&EVP_CipherInit_ex) begin = nullptr;
  decltype(&EVP_CipherUpdate) update = nullptr;
  decltype(&EVP_CipherFinal_ex) end = nullptr;
  decltype(&RAND_bytes) random = nullptr;

  bool load() {
    const auto library = SharedLibrary::crypto();
    return library.find(make, "EVP_CIPHER_CTX_new") && library.find(free, "EVP_CIPHER_CTX_free") &&
           library.find(control, "EVP_CIPHER_CTX_ctrl") &&
           library.find(cipher, "EVP_aes_256_gcm") && library.find(begin, "EVP_CipherInit_ex") &&
           library.find(update, "EVP_CipherUpdate") && library.find(end, "EVP_CipherFinal_ex") &&
           library.find(random, "RAND_bytes");
  }
};

const Library& library() {
  static Library loaded;
  static const bool isLoaded = loaded.load();
  if (!isLoaded)
    throw CipherError(translated("the cryptographic library is missing"));
  return loaded;
}

struct FreeContext {
  void operator()(EVP_CIPHER_CTX* context) const { library().free(context); }
};
using ContextPtr = std::unique_ptr<EVP_CIPHER_CTX, FreeContext>;

std::uint8_t* bytesOf(std::string& text) {
  return reinterpret_cast<std::uint8_t*>(text.data());
}

void require(bool isDone) {
  if (!isDone)
    throw CipherError(translated("the cryptographic library refused"));
}

ContextPtr begin(aesGCM::Bytes key, const std::uint8_t* nonce, bool isSealing) {
  require(key.size() == aesGCM::keyLength);
  const Library& lib = library();
  ContextPtr context(lib.make());
  require(context != nullptr && lib.begin(context.get(), lib.cipher(), nullptr, key.data(), nonce,
                                          isSealing ? 1 : 0) == 1);
  return context;
}

/// What stays in the processor's cache while it is moved to its place.
constexpr std::size_t pieceLength = 64 * 1024;

void run(EVP_CIPHER_CTX* context, const std::uint8_t* from, std::size_t length, std::uint8_t* to) {
  const auto piece = static_cast<int>(length);
  int written = 0;
  require(library().update(context, to, &written, from, piece) == 1 && written == piece);
}

/// The text at `start` becomes ciphertext that begins a nonce's length later. Each piece goes to
/// its place once the next one has been read.
void encrypt(EVP_CIPHER_CTX* context, std::uint8_t* start, std::size_t length) {
  std::vector<std::uint8_t> now(pieceLength);
  std::vector<std::uint8_t> before(pieceLength);
  std::uint8_t* const place = start + aesGCM::nonceLength;
  std::size_t waiting = 0;
  for (std::size_t at = 0; at < length;) {
    const std::size_t piece = std::min(pieceLength, length - at);
    run(context, start + at, piece, now.data());
    std::copy_n(before.data(), waiting, place + at - waiting);
    std::swap(now, before);
    waiting = piece;
    at += piece;
  }
  std::copy_n(before.data(), waiting, place + length - waiting);
}

/// And back: the text begins a nonce's length before its ciphertext.
void decrypt(EVP_CIPHER_CTX* context, std::uint8_t* body, std::size_t length) {
  for (std::size_t at = 0; at < length; at += pieceLength) {
    const std::size_t piece = std::min(pieceLength, length - at);
    run(context, body + at, piece, body + at);
    std::memmove(body + at - aesGCM::nonceLength, body + at, piece);
  }
}

/// Like `append`, and leaves no copy behind where the text has to move.
void grow(std::string& text, std::size_t more) {
  if (text.capacity() - text.size() < more) {
    std::string larger;
    larger.reserve(text.size() + more);
    larger = text;
    wipe(text);
    text = std::move(larger);
  }
  text.append(more, '\0');
}

} // namespace

void aesGCM::fillRandom(std::span<std::uint8_t> bytes) {
  require(library().random(bytes.data(), static_cast<int>(bytes.size())) == 1);
}

std::string aesGCM::seal(Bytes key, std::string text) {
  const std::size_t length = text.size();
  try {
    grow(text, nonceLength + tagLength);
    std::uint8_t* const body = bytesOf(text) + nonceLength;
    std::array<std::uint8_t, nonceLength> nonce{};
    fillRandom(nonce);
    const ContextPtr context = begin(key, nonce.data(), true);
    encrypt(context.get(), bytesOf(text), length);
    std::ranges::copy(nonce, bytesOf(text));
    int written = 0;
    require(library().end(context.get(), body + length, &written) == 1 && written == 0 &&
            library().control(context.get(), EVP_CTRL_GCM_GET_TAG, tagLength, body + length) == 1);
  } catch (...) {
    wipe(text);
    throw;
  }
  return text;
}

std::string aesGCM::open(Bytes key, std::string box) {
  require(box.size() >= nonceLength + tagLength);
  const std::size_t length = box.size() - nonceLength - tagLength;
  std::uint8_t* const body = bytesOf(box) + nonceLength;
  try {
    const ContextPtr context = begin(key, bytesOf(box), false);
    decrypt(context.get(), body, length);
    int written = 0;
    std::uint8_t rest[EVP_MAX_BLOCK_LENGTH];
    require(library().control(context.get(), EVP_CTRL_GCM_SET_TAG, tagLength, body + length) == 1);
    if (library().end(context.get(), rest, &written) != 1)
      throw CipherError(translated("the file was altered or sealed with another key"));
  } catch (...) {
    wipe(box);
    throw;
  }
  // The text's last bytes stand where they were decrypted, too.
  wipe(bytesOf(box) + length, nonceLength);
  box.resize(length);
  return box;
}

} // namespace tavrin
