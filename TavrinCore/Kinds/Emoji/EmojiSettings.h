#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class EmojiSkinTone { standard, light, mediumLight, medium, mediumDark, dark };

template <> struct EnumNames<EmojiSkinTone> {
  static constexpr auto names = std::to_array<std::pair<EmojiSkinTone, std::string_view>>(
      {{EmojiSkinTone::standard, "standard"},
       {EmojiSkinTone::light, "light"},
       {EmojiSkinTone::mediumLight, "mediumLight"},
       {EmojiSkinTone::medium, "medium"},
       {EmojiSkinTone::mediumDark, "mediumDark"},
       {EmojiSkinTone::dark, "dark"}});
};

struct EmojiSettings {
  EmojiSkinTone skinTone = EmojiSkinTone::standard;
  int recentsLimit = 24;

  static constexpr auto fields() {
    return std::tuple{optional("skinTone", &EmojiSettings::skinTone).titled("Skin tone"),
                      optional("recentsLimit", &EmojiSettings::recentsLimit)
                          .titled("Recents kept")
                          .clamped(4, 60)};
  }
  bool operator==(const EmojiSettings&) const = default;
};

} // namespace tavrin
