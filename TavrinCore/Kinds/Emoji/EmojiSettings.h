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

template <> struct EnumTitles<EmojiSkinTone> {
  static constexpr auto titles =
      std::to_array<std::string_view>({marked("Standard"), marked("Light"), marked("Medium light"),
                                       marked("Medium"), marked("Medium dark"), marked("Dark")});
};

struct EmojiSettings {
  static constexpr std::string_view kindKey = "emoji";

  EmojiSkinTone skinTone = EmojiSkinTone::standard;
  int recentsLimit = 24;

  static constexpr auto fields() {
    return std::tuple{optional("skinTone", &EmojiSettings::skinTone)
                          .titled("Skin tone")
                          .helped("In which tone people and hands are inserted."),
                      optional("recentsLimit", &EmojiSettings::recentsLimit)
                          .titled("Recents kept")
                          .helped("The most emoji under those used last.")
                          .clamped(4, 60)};
  }
  bool operator==(const EmojiSettings&) const = default;
};

} // namespace tavrin
