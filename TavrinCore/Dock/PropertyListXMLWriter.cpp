#include "TavrinCore/Dock/PropertyList.h"

#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr std::string_view header = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)";

/// XML 1.0, section 2.2.
void checkCharacters(std::string_view text) {
  if (!isUTF8(text))
    throw PropertyListError(translated("a text is not UTF-8"));
  const auto isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  if (std::any_of(text.begin(), text.end(), isControl) ||
      text.find("\uFFFE") != std::string_view::npos ||
      text.find("\uFFFF") != std::string_view::npos)
    throw PropertyListError(translated("a text holds a character that XML cannot"));
}

std::string dateText(Date date) {
  const double seconds = std::floor(date.unixSeconds());
  const double days = std::floor(seconds / 86400);
  // 0000-01-01 and 32767-12-31.
  if (!(days >= -719528 && days <= 11248737))
    throw PropertyListError(translated("a date is outside the years that XML can hold"));
  const std::chrono::year_month_day day{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(days)))};
  const int rest = static_cast<int>(seconds - days * 86400);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", int(day.year()), unsigned(day.month()),
                     unsigned(day.day()), rest / 3600, rest / 60 % 60, rest % 60);
}

class XMLWriter {
public:
  std::string write(const PropertyList& root) {
    out_ = header;
    value(root, 0);
    out_ += "</plist>\n";
    return std::move(out_);
  }

private:
  void indent(std::size_t depth) { out_.append(depth, '\t'); }

  void text(std::string_view text) {
    checkCharacters(text);
    for (const char c : text) {
      if (c == '&')
        out_ += "&amp;";
      else if (c == '<')
        out_ += "&lt;";
      else if (c == '>')
        out_ += "&gt;";
      else if (c == '\r') // A bare one would be read as a line feed.
        out_ += "&#13;";
      else
        out_ += c;
    }
  }

  void simple(std::string_view tag, std::string_view content) {
    out_.append("<").append(tag).append(">");
    text(content);
    out_.append("</").append(tag).append(">\n");
  }

  void data(const Data& data, std::size_t depth) {
    constexpr std::size_t lineLength = 76;
    const auto packed = data.base64();
    out_ += "<data>\n";
    for (std::size_t at = 0; at < packed.size(); at += lineLength) {
      indent(depth);
      out_.append(packed, at, lineLength).append("\n");
    }
    indent(depth);
    out_ += "</data>\n";
  }

  void array(const PropertyList::Array& items, std::size_t depth) {
    out_ += items.empty() ? "<array/>\n" : "<array>\n";
    if (items.empty())
      return;
    for (const auto& item : items)
      value(item, depth + 1);
    indent(depth);
    out_ += "</array>\n";
  }

  void dictionary(const PropertyList::Dictionary& entries, std::size_t depth) {
    out_ += entries.empty() ? "<dict/>\n" : "<dict>\n";
    if (entries.empty())
      return;
    for (const auto& [key, entry] : entries) {
      indent(depth + 1);
      simple("key", key);
      value(entry, depth + 1);
    }
    indent(depth);
    out_ += "</dict>\n";
  }

  void value(const PropertyList& one, std::size_t depth) {
    if (depth > PropertyList::maximumDepth)
      throw PropertyListError(translated("the values are nested too deeply"));
    indent(depth);
    if (const auto* boolean = one.boolean())
      out_ += *boolean ? "<true/>\n" : "<false/>\n";
    else if (const auto* integer = one.integer())
      simple("integer", std::to_string(*integer));
    else if (const auto* large = one.largeInteger())
      simple("integer", std::to_string(*large));
    else if (const auto* real = one.real())
      simple("real", fmt::format("{}", *real));
    else if (const auto* string = one.string())
      simple("string", *string);
    else if (const auto* date = one.date())
      simple("date", dateText(*date));
    else if (const auto* bytes = one.data())
      data(*bytes, depth);
    else if (const auto* uid = one.uid())
      dictionary({{"CF$UID", uid->value}}, depth);
    else if (const auto* items = one.array())
      array(*items, depth);
    else
      dictionary(*one.dictionary(), depth);
  }

  std::string out_;
};

} // namespace

std::string PropertyList::xml() const {
  return XMLWriter().write(*this);
}

} // namespace tavrin
