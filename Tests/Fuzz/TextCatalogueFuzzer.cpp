#include "TavrinCore/Text/TextCatalogue.h"
#include "TavrinCore/Text/Texts.h"

#include <cstdint>
#include <cstdlib>

/// Whatever a catalogue holds, texts are found within it or not at all.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrin;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto rule = PluralRule::of(bytes);
  for (const unsigned long long n : {0ULL, 1ULL, 2ULL, 11ULL, 103ULL, ~0ULL})
    if (rule.form(n) >= rule.count())
      std::abort();
  const auto catalogue = TextCatalogue::of(bytes);
  if (!catalogue)
    return 0;
  useTexts(&*catalogue, "ar");
  for (const char* text : {"", "Play", "Delete {name}", "{count} file"})
    translated(text, {{"name", bytes.substr(0, 40)}});
  plural("{count} file", "{count} files", static_cast<long long>(size));
  translatedIn("verb", "Open");
  useTexts(nullptr, {});
  return 0;
}
