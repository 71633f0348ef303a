#include "TavrinCore/Base/Wipe.h"

#include <cstring>

namespace tavrin {

void wipe(void* memory, std::size_t length) {
  if (length > 0)
    std::memset(memory, 0, length);
  // Reads the memory as far as the compiler knows.
  asm volatile("" : : "r"(memory) : "memory");
}

void wipe(std::string& text) {
  text.resize(text.capacity());
  wipe(text.data(), text.size());
  text.clear();
}

} // namespace tavrin
