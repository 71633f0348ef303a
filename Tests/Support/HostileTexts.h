#pragma once

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// Texts as nobody means them: markup, direction marks, controls, escape sequences, null bytes,
/// halves of surrogate pairs, broken UTF-8, and a few of a megabyte. The same ones each time.
inline std::vector<std::string> hostileTexts(std::size_t count) {
  using namespace std::string_view_literals;
  constexpr std::array pieces = {"<img src=/dev/zero>"sv,
                                 "<img src=\"/etc/passwd\">"sv,
                                 "<b>bold</b>"sv,
                                 "<a href='file:///'>x</a>"sv,
                                 "<?xml version='1.0'?>"sv,
                                 "&lt;i&gt;"sv,
                                 "&amp;"sv,
                                 "&#x202e;"sv,
                                 "]]>"sv,
                                 "\u202Egpj.exe"sv,
                                 "\u2066a\u2069"sv,
                                 "\u200F\u200E\u061C"sv,
                                 "\uFEFF"sv,
                                 "\u2028\u2029"sv,
                                 "\0"sv,
                                 "\n"sv,
                                 "\r\n"sv,
                                 "\t"sv,
                                 "\x1b[31m"sv,
                                 "\x1b]0;title\x07"sv,
                                 "\u009B2J"sv,
                                 "\xed\xa0\x80"sv,
                                 "\xed\xbf\xbf"sv,
                                 "\xc0\xaf"sv,
                                 "\xff\xfe"sv,
                                 "\xf0\x9f\x98"sv,
                                 "\U0001F469\u200D\U0001F4BB"sv,
                                 "\"}} query { viewer }"sv,
                                 "\\\""sv,
                                 "'; rm -rf ~ #"sv,
                                 "$(touch x)"sv,
                                 "%s%n"sv,
                                 "name"sv,
                                 "Übergröße"sv,
                                 "שלום"sv,
                                 " "sv};
  std::mt19937 random(20260601);
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < count; ++i) {
    std::string text;
    for (auto left = random() % 6 + 1; left > 0; --left)
      text += pieces[random() % pieces.size()];
    if (i % 2500 == 2499)
      while (text.size() < 1'000'000)
        text += text;
    texts.push_back(std::move(text));
  }
  return texts;
}

} // namespace tavrin
