#include "TavrinStorage/Timestamp.h"

#include "TavrinCore/Base/ISO8601.h"

#include <algorithm>

namespace tavrin {

std::string fileStamp(Date date) {
  auto text = iso8601WithMilliseconds(date);
  std::replace(text.begin(), text.end(), ':', '-');
  return text;
}

} // namespace tavrin
