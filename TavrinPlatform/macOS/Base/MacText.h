#pragma once

#import <Foundation/Foundation.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace tavrin {

/// Empty for nil.
inline std::string toText(NSString* _Nullable string) {
  const char* bytes = string.UTF8String;
  return bytes != nullptr ? bytes : "";
}

/// Empty for what is no UTF-8.
inline NSString* _Nonnull toNSString(std::string_view text) {
  NSString* string = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
  return string != nil ? string : @"";
}

/// Empty for nil, and for what is no file.
inline std::filesystem::path toPath(NSURL* _Nullable url) {
  return toText(url.path);
}

inline NSURL* _Nonnull toFileURL(const std::filesystem::path& path) {
  return [NSURL fileURLWithPath:toNSString(path.native())];
}

} // namespace tavrin
