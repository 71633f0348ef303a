#pragma once

#include "TavrinCore/Base/Date.h"

#import <Foundation/Foundation.h>

namespace tavrin {

/// The reference date for none.
inline Date toDate(NSDate* _Nullable date) {
  return date != nil ? Date{date.timeIntervalSinceReferenceDate} : Date{};
}

inline NSDate* _Nonnull toNSDate(Date date) {
  return [NSDate dateWithTimeIntervalSince1970:date.unixSeconds()];
}

} // namespace tavrin
