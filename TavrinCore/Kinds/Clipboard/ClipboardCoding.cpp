#include "TavrinCore/Base/Base64.h"
#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"
#include "TavrinCore/Text/JSONText.h"
#include "TavrinCore/Text/Texts.h"

#include <bitset>
#include <simdjson.h>

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

/// The histories are larger than other documents, most of their bytes are images', and all of them
/// are secret. So they are written into one buffer and read out of it without a tree of the whole,
/// and no text and no image stands anywhere else meanwhile.
template <class T> constexpr bool isText = std::is_same_v<T, std::string>;

/// More than any of the other members takes, and than a member's key.
constexpr std::size_t longestRest = 64;

template <class T> void append(std::string& out, const T& value) {
  if constexpr (std::is_same_v<T, Data>) {
    out += '"';
    appendBase64(out, value);
    out += '"';
  } else if constexpr (isText<T>) {
    appendJSONText(out, value);
  } else {
    out += encode(value).compact();
  }
}

template <class T> std::size_t longest(const T& value) {
  if constexpr (std::is_same_v<T, Data>)
    return (value.bytes.size() + 2) / 3 * 4 + 2;
  else if constexpr (isText<T>)
    return jsonTextLength(value);
  else
    return longestRest;
}

/// Calls `visit(key, value)` with each member that is there.
template <class Visit> void forEachMember(const ClipboardItem& item, const Visit& visit) {
  const auto one = [&]<class M>(const Field<ClipboardItem, M>& field) {
    const M& value = item.*field.member;
    if constexpr (!detail::OptionalTraits<M>::isOptional)
      visit(field.key, value);
    else if (value)
      visit(field.key, *value);
  };
  std::apply([&](const auto&... field) { (one(field), ...); }, codedFields<ClipboardItem>());
}

template <class T> T unwrap(simdjson::simdjson_result<T> result) {
  T value;
  if (const auto error = std::move(result).get(value))
    throw JSONError(simdjson::error_message(error));
  return value;
}

/// The document with the room behind it that the parser wants; a copy, overwritten when done with,
/// where the text itself has not got it.
class PaddedText {
public:
  explicit PaddedText(const std::string& text) {
    if (text.capacity() >= text.size() + simdjson::SIMDJSON_PADDING)
      view_ = simdjson::padded_string_view(text.data(), text.size(), text.capacity());
    else
      view_ = copy_.emplace(text);
  }
  ~PaddedText() {
    if (copy_)
      wipe(copy_->data(), copy_->size());
  }
  PaddedText(const PaddedText&) = delete;
  PaddedText& operator=(const PaddedText&) = delete;
  const simdjson::padded_string_view& text() const { return view_; }

private:
  std::optional<simdjson::padded_string> copy_;
  simdjson::padded_string_view view_;
};

class Reader {
public:
  explicit Reader(const std::string& json) : padded_(json) {}
  ~Reader() { wipe(unescaped_); }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  ClipboardList read();

private:
  using Seen = std::bitset<std::tuple_size_v<decltype(codedFields<ClipboardItem>())>>;

  std::string_view textOf(ondemand::value value);
  template <class T> void readInto(T& member, ondemand::value value);
  template <class M>
  void readField(ClipboardItem& item, const Field<ClipboardItem, M>& field, ondemand::value value);
  void readItem(ClipboardItem& item, ondemand::value element);

  PaddedText padded_;
  ondemand::parser parser_;
  std::string unescaped_;
};

/// Straight from the document where nothing is escaped. Good until the next call.
std::string_view Reader::textOf(ondemand::value value) {
  if (unwrap(value.type()) != ondemand::json_type::string)
    detail::throwWrongType("a text");
  std::string_view token = value.raw_json_token();
  token.remove_prefix(1);
  token = token.substr(0, token.rfind('"'));
  if (token.find('\\') == std::string_view::npos)
    return token;
  // The parser's own memory would keep what it unescapes.
  if (const auto room = token.size() + simdjson::SIMDJSON_PADDING; unescaped_.size() < room) {
    wipe(unescaped_);
    unescaped_.resize(room);
  }
  auto* to = reinterpret_cast<std::uint8_t*>(unescaped_.data());
  return unwrap(parser_.unescape(
      ondemand::raw_json_string(reinterpret_cast<const std::uint8_t*>(token.data())), to));
}

template <class T> void Reader::readInto(T& member, ondemand::value value) {
  if constexpr (std::is_same_v<T, Data>) {
    auto data = Data::fromBase64(textOf(value));
    if (!data)
      detail::throwWrongType("base64 text");
    member = std::move(*data);
  } else if constexpr (isText<T>) {
    member = textOf(value);
  } else if (unwrap(value.type()) == ondemand::json_type::string) {
    member = decode<T>(JSONValue(textOf(value)));
  } else {
    member = decode<T>(JSONValue::parse(unwrap(simdjson::to_json_string(value))));
  }
}

template <class M>
void Reader::readField(ClipboardItem& item, const Field<ClipboardItem, M>& field,
                       ondemand::value value) {
  try {
    if constexpr (detail::OptionalTraits<M>::isOptional)
      readInto((item.*field.member).emplace(), value);
    else
      readInto(item.*field.member, value);
  } catch (const CodingError& error) {
    throw error.inside(field.key);
  }
}

void Reader::readItem(ClipboardItem& item, ondemand::value element) {
  if (unwrap(element.type()) != ondemand::json_type::object)
    detail::throwWrongType("an object");
  Seen seen;
  const auto member = [&]<class M>(const Field<ClipboardItem, M>& field, std::size_t index,
                                   std::string_view key, ondemand::value& value) {
    if (field.key != key)
      return false;
    seen[index] = unwrap(value.type()) != ondemand::json_type::null;
    if (seen[index])
      readField(item, field, value);
    else if constexpr (detail::OptionalTraits<M>::isOptional)
      (item.*field.member).reset();
    return true;
  };
  for (auto each : unwrap(element.get_object())) {
    ondemand::field found = unwrap(std::move(each));
    const std::string_view key = unwrap(found.unescaped_key());
    ondemand::value value = found.value();
    std::apply(
        [&](const auto&... field) {
          std::size_t index = 0;
          (member(field, index++, key, value) || ...);
        },
        codedFields<ClipboardItem>());
  }
  std::apply(
      [&](const auto&... field) {
        std::size_t index = 0;
        const auto check = [&](const auto& one) {
          if (!seen[index++] && one.isRequired)
            throw CodingError(std::string(one.key), "is missing");
        };
        (check(field), ...);
      },
      codedFields<ClipboardItem>());
}

ClipboardList Reader::read() {
  ondemand::document document = unwrap(parser_.iterate(padded_.text()));
  ClipboardList list;
  for (auto element : unwrap(document.get_array())) {
    ClipboardItem item;
    readItem(item, unwrap(std::move(element)));
    list.push_back(std::make_shared<const ClipboardEntry>(std::move(item)));
    // Short texts stay behind where they were moved from.
    item.wipeTexts();
  }
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
    throw JSONError(translated("there is more after the value"));
  return list;
}

} // namespace

void ClipboardItem::wipeTexts() {
  const auto one = [this]<class M>(const Field<ClipboardItem, M>& field) {
    if constexpr (std::is_same_v<M, std::optional<std::string>>)
      if (auto& text = this->*field.member)
        wipe(*text);
  };
  std::apply([&](const auto&... field) { (one(field), ...); }, fields());
}

std::string encodeClipboard(const ClipboardList& list) {
  // With room for what sealing adds, and a parser wants; so the text never moves.
  std::size_t size = 128;
  for (const auto& entry : list)
    forEachMember(entry->item, [&](std::string_view, const auto& value) {
      size += longestRest + longest(value);
    });
  std::string out;
  out.reserve(size);
  out += '[';
  for (const auto& entry : list) {
    out += out.size() > 1 ? ",{" : "{";
    forEachMember(entry->item, [&](std::string_view key, const auto& value) {
      out.append(out.back() == '{' ? "\"" : ",\"").append(key).append("\":");
      append(out, value);
    });
    out += '}';
  }
  out += ']';
  return out;
}

ClipboardList decodeClipboard(const std::string& json) {
  return Reader(json).read();
}

} // namespace tavrin
