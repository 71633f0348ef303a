#pragma once

#include "TavrinCore/Base/Date.h"

namespace tavrin {

/// The only place that reads the time.
class Clock {
public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;
};

} // namespace tavrin
