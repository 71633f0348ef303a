#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/UserDefaults.h"

#include <filesystem>

namespace tavrin {

/// One JSON object in one file, read at the first use and written whole at every change.
/// A file that cannot be read as such counts as empty and is kept beside the new one. What could
/// not be written is tried again: every few seconds, with each `set`, and last when this object
/// goes.
class JSONUserDefaults final : public UserDefaults {
public:
  JSONUserDefaults(std::filesystem::path file, LogSink& log, RunLoop& runLoop);
  ~JSONUserDefaults() override;

  std::optional<JSONValue> value(const std::string& key) const override;
  void set(const std::string& key, const JSONValue& value) override;
  void remove(const std::string& key) override;

private:
  JSONValue::Object& values() const;
  void save();

  std::filesystem::path file_;
  Log log_;
  mutable std::optional<JSONValue::Object> values_;
  RunLoop& runLoop_;
  bool isUnsaved_ = false;
  TokenPtr retry_;
};

} // namespace tavrin
