#pragma once

#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"

namespace tavrin {

// The calls of Texts.h for the toolkit's texts; each takes literals, too.

inline QString worded(const char* english) {
  return utf8(translation(english));
}
/// Of a table's text.
inline QString worded(std::string_view english) {
  return utf8(translation(english));
}
inline QString worded(const char* english, TextPlaces places) {
  return utf8(translated(english, places));
}
inline QString wordedIn(const char* context, const char* english, TextPlaces places = {}) {
  return utf8(translatedIn(context, english, places));
}
inline QString wordedPlural(const char* one, const char* many, long long count,
                            TextPlaces places = {}) {
  return utf8(plural(one, many, count, places));
}

} // namespace tavrin
