#pragma once

#include "TavrinCore/Base/JSONValue.h"

#include <optional>
#include <string>

namespace tavrin {

/// Small values that belong to this application alone, kept over restarts.
/// A value set here is on disk when `set` returns. Where it cannot be written it is kept in
/// memory until it can, and the log says so once.
class UserDefaults {
public:
  virtual ~UserDefaults() = default;
  virtual std::optional<JSONValue> value(const std::string& key) const = 0;
  virtual void set(const std::string& key, const JSONValue& value) = 0;
  virtual void remove(const std::string& key) = 0;
};

} // namespace tavrin
