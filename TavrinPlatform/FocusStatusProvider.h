#pragma once

#include <optional>

namespace tavrin {

/// Whether the user wants no disturbance. Both may be asked from any thread and may block shortly.
class FocusStatusProvider {
public:
  virtual ~FocusStatusProvider() = default;
  /// No value where the state cannot be read.
  virtual std::optional<bool> isFocused() = 0;
  virtual bool isAuthorized() = 0;
};

} // namespace tavrin
