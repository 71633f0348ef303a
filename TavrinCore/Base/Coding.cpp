#include "TavrinCore/Base/Coding.h"

namespace tavrin {
namespace {

std::string sentence(const std::string& path, const std::string& fault) {
  return path.empty() ? "the value " + fault : "\"" + path + "\" " + fault;
}

} // namespace

CodingError::CodingError(std::string path, std::string fault)
    : std::runtime_error(sentence(path, fault)), path_(std::move(path)), fault_(std::move(fault)) {}

CodingError CodingError::inside(std::string_view key) const {
  if (fault_.empty())
    return *this;
  return {path_.empty() ? std::string(key) : std::string(key) + "." + path_, fault_};
}

void detail::throwWrongType(std::string_view expected) {
  throw CodingError("", "must be " + std::string(expected));
}

bool Coder<bool>::decode(const JSONValue& json) {
  const auto* value = json.boolean();
  if (value == nullptr)
    detail::throwWrongType("true or false");
  return *value;
}

double Coder<double>::decode(const JSONValue& json) {
  const auto value = json.doubleValue();
  if (!value)
    detail::throwWrongType("a number");
  return *value;
}

std::int64_t Coder<std::int64_t>::decode(const JSONValue& json) {
  const auto value = json.integerValue();
  if (!value)
    detail::throwWrongType("a whole number");
  return *value;
}

std::string Coder<std::string>::decode(const JSONValue& json) {
  const auto* value = json.string();
  if (value == nullptr)
    detail::throwWrongType("a text");
  return *value;
}

UUID Coder<UUID>::decode(const JSONValue& json) {
  const auto value = UUID::parse(Coder<std::string>::decode(json));
  if (!value)
    detail::throwWrongType("an identifier such as 6B29FC40-CA47-1067-B31D-00DD010662DA");
  return *value;
}

Data Coder<Data>::decode(const JSONValue& json) {
  auto value = Data::fromBase64(Coder<std::string>::decode(json));
  if (!value)
    detail::throwWrongType("base64 text");
  return *std::move(value);
}

} // namespace tavrin
