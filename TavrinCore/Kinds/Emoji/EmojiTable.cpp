#include "TavrinCore/Kinds/Emoji/EmojiTable.h"

#include "TavrinCore/Kinds/Emoji/EmojiShorthands.h"
#include "TavrinCore/Kinds/Emoji/EmojiTone.h"
#include "TavrinCore/Text/FoldedWords.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <charconv>
#include <expat.h>
#include <memory>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unordered_map>

namespace tavrin {
namespace {

constexpr std::size_t longestSequence = 16;
constexpr std::size_t longestName = 200;
constexpr std::size_t longestWords = 2000;

/// "1F44B 1F3FB" as UTF-8; empty where it is no sequence of characters.
std::string sequence(std::string_view hex) {
  icu::UnicodeString characters;
  while (!(hex = trimmed(hex)).empty()) {
    std::uint32_t point = 0;
    const auto [end, error] = std::from_chars(hex.data(), hex.data() + hex.size(), point, 16);
    if (error != std::errc() || !U_IS_UNICODE_CHAR(point) || point < 0x20 ||
        characters.length() >= static_cast<int32_t>(longestSequence * 2))
      return {};
    characters.append(static_cast<UChar32>(point));
    hex.remove_prefix(static_cast<std::size_t>(end - hex.data()));
  }
  std::string text;
  characters.toUTF8String(text);
  return text;
}

/// One line of "emoji-test.txt": its emoji where it is a whole one.
struct TestLine {
  std::string text;
  std::string_view name;
};

std::optional<TestLine> testLine(std::string_view line) {
  const auto semicolon = line.find(';');
  const auto hash = line.find('#', semicolon == line.npos ? 0 : semicolon);
  if (semicolon == line.npos || hash == line.npos ||
      trimmed(line.substr(semicolon + 1, hash - semicolon - 1)) != "fully-qualified")
    return std::nullopt;
  TestLine read{sequence(line.substr(0, semicolon)), trimmed(line.substr(hash + 1))};
  // "😀 E1.0 grinning face"
  for (int skipped = 0; skipped < 2; ++skipped) {
    const auto space = read.name.find(' ');
    if (space == read.name.npos)
      return std::nullopt;
    read.name = trimmed(read.name.substr(space));
  }
  if (read.text.empty() || read.name.size() > longestName || !isUTF8(read.name))
    return std::nullopt;
  return read;
}

std::optional<std::string_view> afterPrefix(std::string_view line, std::string_view prefix) {
  if (!line.starts_with(prefix))
    return std::nullopt;
  return trimmed(line.substr(prefix.size()));
}

} // namespace

/// What is being read, before it is packed.
struct EmojiTable::Builder {
  struct Item {
    std::string text;
    /// In the lightest tone; empty for none.
    std::string light;
    std::string name;
    std::string names;
    std::string words;
    /// The document that gave the name.
    int namedBy = -1;
  };
  std::vector<Item> items;
  std::vector<Group> groups;
  std::unordered_map<std::string, std::size_t> byKey;

  void readTest(std::string_view text);
  void readAnnotations(const std::string& xml, int document);
  void annotate(std::string_view emoji, bool isName, std::string_view value, int document);
  void pack(EmojiTable& table) const;
};

void EmojiTable::Builder::readTest(std::string_view text) {
  while (!text.empty()) {
    const auto line = takeLine(text);
    if (const auto group = afterPrefix(line, "# group:")) {
      if (group->size() <= longestName && isUTF8(*group) && groups.size() < 64)
        groups.push_back({std::string(*group), items.size()});
      continue;
    }
    auto read = testLine(line);
    if (!read || items.size() >= most)
      continue;
    const std::string key = emojiKey(read->text);
    const auto tones = emojiTones(read->text);
    if (tones.empty()) {
      if (key.empty() || !byKey.emplace(key, items.size()).second)
        continue;
      items.push_back({read->text, {}, std::string(read->name), foldedWords(read->name), {}, -1});
      continue;
    }
    // Of two people each may have a tone of its own; the form for all tones has one.
    const bool isLight = tones.find_first_not_of(lightestTone) == tones.npos;
    const auto base = byKey.find(key);
    if (isLight && base != byKey.end() && items[base->second].light.empty())
      items[base->second].light = read->text;
  }
  // Those that hold nothing whole, such as the skin tones themselves.
  for (std::size_t i = groups.size(); i-- > 0;)
    if (groups[i].begin == (i + 1 < groups.size() ? groups[i + 1].begin : items.size()))
      groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(i));
}

void EmojiTable::Builder::annotate(std::string_view emoji, bool isName, std::string_view value,
                                   int document) {
  // An arrow stands for what the parent locale says.
  if (value.empty() || value.size() > longestWords || value.find("↑↑") != value.npos)
    return;
  const auto found = byKey.find(emojiKey(emoji));
  // A key without tones is also that of the toned forms, whose annotations add nothing.
  if (found == byKey.end() || emoji.find(toneLead) != emoji.npos)
    return;
  Item& item = items[found->second];
  if (isName && value.size() <= longestName && item.namedBy < 0) {
    item.name = value;
    item.namedBy = document;
  }
  std::string& searched = isName ? item.names : item.words;
  if (searched.size() + value.size() > longestWords)
    return;
  while (!value.empty()) {
    const auto bar = value.find('|');
    const std::string folded = foldedWords(value.substr(0, bar));
    value.remove_prefix(bar == value.npos ? value.size() : bar + 1);
    // What is there already, in another language or as a name, finds it no better twice.
    const auto has = [&](const std::string& lines) {
      return ("\n" + lines + "\n").find("\n" + folded + "\n") != std::string::npos;
    };
    if (folded.empty() || has(item.names) || (!isName && has(item.words)))
      continue;
    if (!searched.empty())
      searched += '\n';
    searched += folded;
  }
}

void EmojiTable::Builder::readAnnotations(const std::string& xml, int document) {
  struct State {
    Builder& builder;
    int document;
    std::string emoji;
    std::string value;
    bool isName = false;
  } state{*this, document, {}, {}, false};
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate("UTF-8"), XML_ParserFree);
  XML_SetUserData(parser.get(), &state);
  XML_SetElementHandler(
      parser.get(),
      [](void* data, const XML_Char* name, const XML_Char** attributes) {
        auto& state = *static_cast<State*>(data);
        state.emoji.clear();
        state.value.clear();
        state.isName = false;
        if (std::string_view(name) != "annotation")
          return;
        for (; *attributes != nullptr; attributes += 2) {
          if (std::string_view(attributes[0]) == "cp")
            state.emoji = attributes[1];
          state.isName |= std::string_view(attributes[0]) == "type";
        }
      },
      [](void* data, const XML_Char*) {
        auto& state = *static_cast<State*>(data);
        if (!state.emoji.empty())
          state.builder.annotate(state.emoji, state.isName, trimmed(state.value), state.document);
        state.emoji.clear();
      });
  XML_SetCharacterDataHandler(parser.get(), [](void* data, const XML_Char* text, int length) {
    auto& state = *static_cast<State*>(data);
    if (!state.emoji.empty() && state.value.size() <= longestWords)
      state.value.append(text, static_cast<std::size_t>(length));
  });
  // What stands before a fault stays.
  XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), 1);
}

void EmojiTable::Builder::pack(EmojiTable& table) const {
  std::size_t size = 0;
  for (const auto& item : items)
    size += item.text.size() + item.light.size() + item.name.size() + item.names.size() +
            item.words.size() + 2;
  table.pool_.reserve(size);
  table.entries_.reserve(items.size());
  const auto keep = [&](std::string_view text) {
    const auto begin = static_cast<std::uint32_t>(table.pool_.size());
    table.pool_ += text;
    return Span{begin, static_cast<std::uint32_t>(table.pool_.size())};
  };
  for (const auto& item : items) {
    Entry entry;
    entry.text = keep(item.text);
    keep(item.light);
    entry.name = keep(item.name);
    entry.searched = keep("\n" + item.names);
    entry.namesEnd = entry.searched.end;
    if (!item.words.empty())
      entry.searched.end = keep("\n" + item.words).end;
    table.entries_.push_back(entry);
  }
  table.groups_ = groups;
  table.commonness_.assign(items.size(), notCommon);
  std::uint8_t place = 0;
  for (const std::string_view emoji : commonEmoji())
    if (const auto found = byKey.find(emojiKey(emoji)); found != byKey.end())
      table.commonness_[found->second] = place++;
}

EmojiTable::EmojiTable(std::string_view emojiTest, std::span<const std::string> annotations) {
  Builder builder;
  builder.readTest(emojiTest);
  int document = 0;
  for (const auto& xml : annotations)
    builder.readAnnotations(xml, document++);
  builder.pack(*this);
}

std::string_view EmojiTable::view(Span span) const {
  return std::string_view(pool_).substr(span.begin, span.end - span.begin);
}

std::string_view EmojiTable::name(std::size_t index) const {
  return view(entries_[index].name);
}

Emoji EmojiTable::emoji(std::size_t index) const {
  const Entry& entry = entries_[index];
  return {std::string(view(entry.text)), std::string(view({entry.text.end, entry.name.begin}))};
}

std::optional<std::size_t> EmojiTable::find(std::string_view emoji) const {
  const std::string key = emojiKey(emoji);
  if (key.empty())
    return std::nullopt;
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (emojiKey(view(entries_[i].text)) == key)
      return i;
  return std::nullopt;
}

} // namespace tavrin
