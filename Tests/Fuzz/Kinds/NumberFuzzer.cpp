#include "TavrinCore/Kinds/Converter/NumberNotation.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever is typed, a value that comes of it is finite, and can be written and read back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const NumberNotation notations[] = {
      NumberNotation(std::string("en_US")), NumberNotation(std::string("de_DE")),
      NumberNotation(std::string("fr_FR")), NumberNotation(std::string("hi_IN")),
      NumberNotation(std::string("ar_EG"))};
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  for (const auto& notation : notations) {
    const auto value = notation.evaluate(text);
    if (!value)
      continue;
    if (!std::isfinite(*value))
      std::abort();
    const auto again = notation.evaluate(notation.format(*value, 15));
    if (!again || std::abs(*again - *value) > 1e-5 * std::abs(*value))
      std::abort();
  }
  return 0;
}
