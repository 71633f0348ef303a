#include "TavrinStorage/AESGCM.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

/// Nothing opens that was not sealed, and what was sealed opens.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const std::vector<std::uint8_t> key(aesGCM::keyLength, 3);
  if (aesGCM::open(key, aesGCM::seal(key, std::string(text))) != text)
    std::abort();
  try {
    aesGCM::open(key, std::string(text));
    std::abort();
  } catch (const CipherError&) {
  }
  return 0;
}
