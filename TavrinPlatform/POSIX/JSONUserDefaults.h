#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/UserDefaults.h"

#include <filesystem>

namespace tavrin {

/// One JSON object in one file, read at the first use and written whole at every change.
/// A file that cannot be read as such counts as empty and is kept beside the new one.
class JSONUserDefaults final : public UserDefaults {
public:
  JSONUserDefaults(std::filesystem::path file, LogSink& log);

  std::optional<JSONValue> value(const std::string& key) const override;
  void set(const std::string& key, const JSONValue& value) override;
  void remove(const std::string& key) override;

private:
  JSONValue::Object& values() const;
  void save();

  std::filesystem::path file_;
  Log log_;
  mutable std::optional<JSONValue::Object> values_;
  bool hasComplained_ = false;
};

} // namespace tavrin
