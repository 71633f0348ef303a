#include "TavrinCore/Base/Base64.h"
#include "TavrinCore/Kinds/ClipboardBoard.h"

#include <cstring>
#include <optional>
#include <simdjson.h>

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

/// The histories are larger than other documents, and most of their bytes are images': these are
/// written and read one at a time, without a tree of the whole.
template <class T> void append(std::string& out, const T& value) {
  if constexpr (std::is_same_v<T, Data>) {
    out += '"';
    appendBase64(out, value);
    out += '"';
  } else {
    out += encode(value).compact();
  }
}

template <class R, class M>
void appendField(std::string& out, const R& record, const Field<R, M>& field) {
  const M& value = record.*field.member;
  const auto put = [&](const auto& present) {
    out.append(out.back() == '{' ? "\"" : ",\"").append(field.key).append("\":");
    append(out, present);
  };
  if constexpr (detail::OptionalTraits<M>::isOptional) {
    if (value)
      put(*value);
  } else {
    put(value);
  }
}

std::size_t roughSize(const ClipboardItem& item) {
  constexpr std::size_t rest = 512;
  const auto coded = [](const std::optional<Data>& data) {
    return data ? data->bytes.size() / 3 * 4 + 4 : 0;
  };
  return rest + (item.text ? item.text->size() + item.text->size() / 8 : 0) +
         coded(item.imageData) + coded(item.ogImageData);
}

template <class T> T unwrap(simdjson::simdjson_result<T> result) {
  T value;
  if (const auto error = std::move(result).get(value))
    throw JSONError(simdjson::error_message(error));
  return value;
}

void overwrite(void* bytes, std::size_t length) {
  std::memset(bytes, 0, length);
  // Reads the memory as far as the compiler knows.
  asm volatile("" : : "r"(bytes) : "memory");
}

/// The parser unescapes into memory of its own, which it does not overwrite; nor what its stores
/// wrote behind the end.
std::string takeText(ondemand::value value) {
  const std::string_view found = unwrap(value.get_string());
  std::string text(found);
  overwrite(const_cast<char*>(found.data()), found.size() + simdjson::SIMDJSON_PADDING);
  return text;
}

/// Straight from the document where, as always here, no digit is escaped.
std::optional<Data> takeData(ondemand::value value) {
  std::string_view token = value.raw_json_token();
  token.remove_prefix(1);
  token = token.substr(0, token.rfind('"'));
  return Data::fromBase64(token.find('\\') == std::string_view::npos ? token : takeText(value));
}

JSONValue read(ondemand::value value) {
  if (unwrap(value.type()) == ondemand::json_type::string)
    return takeText(value);
  return JSONValue::parse(unwrap(simdjson::to_json_string(value)));
}

/// The large members are read into their places, the others by way of the fields' table.
ClipboardItem readItem(ondemand::value element) {
  JSONValue::Object members;
  std::optional<std::string> text;
  std::optional<Data> image;
  std::optional<Data> preview;
  for (auto item : unwrap(element.get_object())) {
    ondemand::field field = unwrap(std::move(item));
    std::string key(unwrap(field.unescaped_key()));
    const bool isString = unwrap(field.value().type()) == ondemand::json_type::string;
    if (isString && key == "text")
      text = takeText(field.value());
    else if (isString && (key == "imageData" || key == "ogImageData")) {
      auto& data = key == "imageData" ? image : preview;
      data = takeData(field.value());
      // Which the table's decoder shall refuse.
      if (!data)
        members.insert_or_assign(std::move(key), std::string("no base64"));
    } else
      members.insert_or_assign(std::move(key), read(field.value()));
  }
  auto item = decode<ClipboardItem>(JSONValue(std::move(members)));
  item.text = std::move(text);
  item.imageData = std::move(image);
  item.ogImageData = std::move(preview);
  return item;
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
      overwrite(copy_->data(), copy_->size());
  }
  PaddedText(const PaddedText&) = delete;
  PaddedText& operator=(const PaddedText&) = delete;
  const simdjson::padded_string_view& text() const { return view_; }

private:
  std::optional<simdjson::padded_string> copy_;
  simdjson::padded_string_view view_;
};

} // namespace

std::string encodeClipboard(const ClipboardList& list) {
  // With room for what sealing adds, and a parser wants.
  std::size_t size = 128;
  for (const auto& entry : list)
    size += roughSize(entry->item);
  std::string out;
  out.reserve(size);
  out += '[';
  for (const auto& entry : list) {
    out += out.size() > 1 ? ",{" : "{";
    std::apply([&](const auto&... field) { (appendField(out, entry->item, field), ...); },
               ClipboardItem::fields());
    out += '}';
  }
  out += ']';
  return out;
}

ClipboardList decodeClipboard(const std::string& json) {
  ondemand::parser parser;
  const PaddedText padded(json);
  ondemand::document document = unwrap(parser.iterate(padded.text()));
  ClipboardList list;
  for (auto element : unwrap(document.get_array()))
    list.push_back(std::make_shared<const ClipboardEntry>(readItem(unwrap(std::move(element)))));
  if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
    throw JSONError("there is more after the value");
  return list;
}

} // namespace tavrin
