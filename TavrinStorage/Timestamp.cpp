#include "TavrinStorage/Timestamp.h"

#include "TavrinCore/Base/ISO8601.h"

#include <algorithm>

namespace tavrin {

std::string fileStamp(Date date) {
  auto text = iso8601WithMilliseconds(date);
  std::replace(text.begin(), text.end(), ':', '-');
  return text;
}

std::optional<Date> dateFromFileStamp(std::string_view stamp) {
  const auto time = stamp.find('T');
  if (stamp.size() != fileStampLength || time == std::string_view::npos)
    return std::nullopt;
  std::string text(stamp);
  std::replace(text.begin() + static_cast<std::ptrdiff_t>(time), text.end(), '-', ':');
  return dateFromISO8601(text);
}

} // namespace tavrin
