#pragma once

#include "TavrinCore/Dock/PropertyList.h"

#include <optional>
#include <string>

namespace tavrin {

/// The user's preferences by application domain, such as "com.apple.dock". What was set is on disk
/// after the next `synchronize`.
class PreferencesService {
public:
  virtual ~PreferencesService() = default;
  /// Writes what was set and forgets what was read. Answers whether the service took it.
  virtual bool synchronize(const std::string& domain) = 0;
  /// Why it did not take it the last time, as a clause that can follow "because"; no value where
  /// the service does not say.
  virtual std::optional<std::string> refusal() const { return std::nullopt; }
  /// No value where there is none. Throws DockError where the domain's file cannot be read.
  virtual std::optional<PropertyList> copyAppValue(const std::string& key,
                                                   const std::string& domain) = 0;
  virtual void setAppValue(const std::string& key, PropertyList value,
                           const std::string& domain) = 0;
};

} // namespace tavrin
