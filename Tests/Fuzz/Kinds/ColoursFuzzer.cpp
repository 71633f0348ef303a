#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"

#include <cstdint>
#include <cstdlib>

/// A history that can be read reads the same once written, and its colours can be shown.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  try {
    auto history =
        decode<ColourHistory>(JSONValue::parse({reinterpret_cast<const char*>(bytes), size}));
    if (decode<ColourHistory>(JSONValue::parse(encode(history).prettyPrinted())) != history)
      std::abort();
    for (const auto& colour : history.colours)
      for (const auto format : allCases<ColourFormat>())
        if (colour.text(format).empty())
          std::abort();
    history.trim(24);
    if (!history.colours.empty())
      history.add(history.colours.back(), 4);
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return 0;
}
