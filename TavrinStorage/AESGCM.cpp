#include "TavrinStorage/AESGCM.h"

#include "TavrinPlatform/SharedLibrary.h"

#include <algorithm>
#include <memory>
#include <openssl/evp.h>
#include <openssl/rand.h>

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
    const SharedLibrary library{"libcrypto.so.3", "libcrypto.3.dylib"};
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
    throw CipherError("the cryptographic library is missing");
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
    throw CipherError("the cryptographic library refused");
}

ContextPtr begin(aesGCM::Bytes key, const std::uint8_t* nonce, bool isSealing) {
  require(key.size() == aesGCM::keyLength);
  const Library& lib = library();
  ContextPtr context(lib.make());
  require(context != nullptr && lib.begin(context.get(), lib.cipher(), nullptr, key.data(), nonce,
                                          isSealing ? 1 : 0) == 1);
  return context;
}

/// The library counts in ints.
void run(EVP_CIPHER_CTX* context, const std::uint8_t* from, std::size_t length, std::uint8_t* to) {
  constexpr std::size_t longest = std::size_t{1} << 30;
  while (length > 0) {
    const auto piece = static_cast<int>(std::min(length, longest));
    int written = 0;
    require(library().update(context, to, &written, from, piece) == 1 && written == piece);
    from += piece;
    to += piece;
    length -= static_cast<std::size_t>(piece);
  }
}

} // namespace

void aesGCM::fillRandom(std::span<std::uint8_t> bytes) {
  require(library().random(bytes.data(), static_cast<int>(bytes.size())) == 1);
}

std::string aesGCM::seal(Bytes key, std::string text) {
  const std::size_t length = text.size();
  text.append(tagLength, '\0');
  text.insert(0, nonceLength, '\0');
  std::uint8_t* const body = bytesOf(text) + nonceLength;
  try {
    fillRandom({bytesOf(text), nonceLength});
    const ContextPtr context = begin(key, bytesOf(text), true);
    run(context.get(), body, length, body);
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
  const ContextPtr context = begin(key, bytesOf(box), false);
  run(context.get(), body, length, body);
  int written = 0;
  std::uint8_t rest[EVP_MAX_BLOCK_LENGTH];
  require(library().control(context.get(), EVP_CTRL_GCM_SET_TAG, tagLength, body + length) == 1);
  if (library().end(context.get(), rest, &written) != 1) {
    wipe(box);
    throw CipherError("the file was altered or sealed with another key");
  }
  box.erase(0, nonceLength);
  box.resize(length);
  return box;
}

void wipe(std::span<std::uint8_t> bytes) {
  std::ranges::fill(bytes, std::uint8_t{0});
  // Reads the memory as far as the compiler knows.
  asm volatile("" : : "r"(bytes.data()) : "memory");
}

void wipe(std::string& text) {
  wipe({bytesOf(text), text.size()});
  text.clear();
}

} // namespace tavrin
