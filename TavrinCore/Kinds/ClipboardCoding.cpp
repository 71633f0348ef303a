#include "TavrinCore/Kinds/ClipboardBoard.h"

#include <algorithm>
#include <simdjson.h>

namespace tavrin {
namespace {

namespace ondemand = simdjson::ondemand;

/// The histories are larger than other documents, and most of their bytes are images': these are
/// written and read one at a time, without a tree of the whole.
template <class T> void append(std::string& out, const T& value) {
  if constexpr (std::is_same_v<T, Data>)
    out.append(1, '"').append(value.base64()).append(1, '"');
  else
    out += encode(value).compact();
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

JSONValue read(ondemand::value value) {
  if (unwrap(value.type()) == ondemand::json_type::string)
    return std::string(unwrap(value.get_string()));
  return JSONValue::parse(unwrap(simdjson::to_json_string(value)));
}

ClipboardItem readItem(ondemand::value element) {
  JSONValue::Object members;
  for (auto item : unwrap(element.get_object())) {
    ondemand::field field = unwrap(std::move(item));
    std::string key(unwrap(field.unescaped_key()));
    members.insert_or_assign(std::move(key), read(field.value()));
  }
  return decode<ClipboardItem>(JSONValue(std::move(members)));
}

/// The parser's copy of the text, overwritten when done with.
class PaddedText {
public:
  explicit PaddedText(std::string_view text) : text_(text) {}
  ~PaddedText() {
    std::fill_n(text_.data(), text_.size(), '\0');
    asm volatile("" : : "r"(text_.data()) : "memory");
  }
  PaddedText(const PaddedText&) = delete;
  PaddedText& operator=(const PaddedText&) = delete;
  const simdjson::padded_string& text() const { return text_; }

private:
  simdjson::padded_string text_;
};

} // namespace

std::string encodeClipboard(const ClipboardList& list) {
  // With room for what sealing adds.
  std::size_t size = 64;
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

ClipboardList decodeClipboard(std::string_view json) {
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
