#pragma once

#include "TavrinPlatform/PreferencesService.h"

namespace tavrin {

/// The system's preferences. Reading also looks where the system keeps what holds for all
/// applications and what an administrator set.
class MacPreferencesService final : public PreferencesService {
public:
  bool synchronize(const std::string& domain) override;
  std::optional<PropertyList> copyAppValue(const std::string& key,
                                           const std::string& domain) override;
  void setAppValue(const std::string& key, PropertyList value, const std::string& domain) override;
};

} // namespace tavrin
