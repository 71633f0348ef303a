#pragma once

#include "TavrinPlatform/PreferencesService.h"

#include <filesystem>
#include <map>

namespace tavrin {

/// Preferences in one property list file a domain, for systems without a service for them.
class FilePreferencesService final : public PreferencesService {
public:
  /// `folder` holds the files, each named after its domain; it is made when first written to.
  explicit FilePreferencesService(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// Where the file cannot be written, what was set is dropped.
  bool synchronize(const std::string& domain) override;
  std::optional<std::string> refusal() const override { return refusal_; }
  std::optional<PropertyList> copyAppValue(const std::string& key,
                                           const std::string& domain) override;
  void setAppValue(const std::string& key, PropertyList value, const std::string& domain) override;

private:
  std::filesystem::path file(const std::string& domain) const {
    return folder_ / (domain + ".plist");
  }

  std::filesystem::path folder_;
  std::optional<std::string> refusal_;
  std::map<std::string, PropertyList::Dictionary> changes_;
  std::map<std::string, PropertyList::Dictionary> known_;
};

} // namespace tavrin
