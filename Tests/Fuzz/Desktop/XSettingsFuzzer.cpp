#include "TavrinCore/Desktop/XSettings.h"

#include <cstdint>
#include <cstdlib>

/// What is found was in the property.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const auto name : {std::string_view("Net/IconThemeName"), bytes.substr(0, size % 40)})
    if (const auto text = tavrin::textInXSettings(bytes, name);
        text && (text->empty() || bytes.find(*text) == bytes.npos))
      std::abort();
  return 0;
}
