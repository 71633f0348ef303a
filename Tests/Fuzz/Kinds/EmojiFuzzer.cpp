#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/Emoji/EmojiTable.h"
#include "TavrinCore/Text/Text.h"

#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Whatever stands in the data files, what is read of it is text, and can be found again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view whole(reinterpret_cast<const char*>(bytes), size);
  const auto middle = std::min(whole.find('\0'), whole.size());
  const std::string test(whole.substr(0, middle));
  const std::vector<std::string> annotations{
      std::string(whole.substr(std::min(middle + 1, whole.size())))};
  const EmojiTable table(test, annotations);
  for (std::size_t i = 0; i < table.size(); ++i) {
    const Emoji emoji = table.emoji(i);
    if (emoji.text.empty() || !isUTF8(emoji.text) || !isUTF8(table.name(i)) ||
        table.find(emoji.text) != i || !isUTF8(emoji.inTone(EmojiSkinTone::dark)))
      std::abort();
  }
  for (const auto& group : table.groups())
    if (group.begin >= table.size())
      std::abort();
  table.search(whole.substr(0, 40));
  if (table.search("").size() != table.size())
    std::abort();
  return 0;
}
