#pragma once

#include <stdexcept>
#include <string>

namespace tavrin {

/// A setting that is not taken. `what()` is a sentence for the user, without a full stop.
class SettingError : public std::runtime_error {
public:
  enum class Fault {
    /// The value is not one that this setting takes.
    refusedValue,
    /// There is no such setting, or no such element of a list.
    unknownSetting,
  };

  explicit SettingError(const std::string& sentence, Fault fault = Fault::refusedValue)
      : std::runtime_error(sentence), fault_(fault) {}

  Fault fault() const { return fault_; }

private:
  Fault fault_;
};

} // namespace tavrin
