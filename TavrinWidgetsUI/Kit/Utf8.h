#pragma once

#include <QString>
#include <string_view>

namespace tavrin {

inline QString utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace tavrin
