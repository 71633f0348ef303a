#include "TavrinCore/Kinds/Shortcut/ShortcutOutput.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

/// Any bytes, in two pieces, many times: what is shown is text, and bounded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  ShortcutOutput output;
  output.append(text.substr(0, size / 2));
  output.append(text.substr(size / 2));
  ShortcutOutput whole;
  whole.append(text);
  const std::string shown = output.text();
  if (shown != whole.text())
    std::abort();
  const auto lines = static_cast<std::size_t>(std::ranges::count(shown, '\n'));
  // A byte that is not UTF-8 is shown as three.
  if (!isUTF8(shown) || lines > ShortcutOutput::mostLines ||
      shown.size() > (ShortcutOutput::mostLines + 1) * (ShortcutOutput::longestLine * 3 + 9))
    std::abort();
  if (!isUTF8(output.lastLine()) || output.lastLine().find('\n') != std::string::npos)
    std::abort();
  return 0;
}
