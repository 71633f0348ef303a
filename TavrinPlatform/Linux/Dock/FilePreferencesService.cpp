#include "TavrinPlatform/Linux/Dock/FilePreferencesService.h"

#include "TavrinCore/Dock/DockError.h"
#include "TavrinPlatform/Files/PlistRoot.h"

#include <system_error>

namespace tavrin {

bool FilePreferencesService::synchronize(const std::string& domain) {
  known_.erase(domain);
  auto changes = changes_.extract(domain);
  if (changes.empty())
    return true;
  try {
    auto root = readPlistRoot(file(domain)).value_or(PropertyList::Dictionary());
    for (auto& [key, value] : changes.mapped())
      root.insert_or_assign(key, std::move(value));
    std::error_code ignored; // Writing into a folder that is not there says more.
    std::filesystem::create_directories(folder_, ignored);
    writePlistRoot(file(domain), std::move(root));
    return true;
  } catch (const DockError& error) {
    refusal_ = error.detail();
    return false;
  }
}

std::optional<PropertyList> FilePreferencesService::copyAppValue(const std::string& key,
                                                                 const std::string& domain) {
  const auto changed = changes_.find(domain);
  if (changed != changes_.end() && changed->second.contains(key))
    return changed->second.at(key);
  auto known = known_.find(domain);
  if (known == known_.end())
    known = known_.emplace(domain, readPlistRoot(file(domain)).value_or(PropertyList::Dictionary()))
                .first;
  const auto found = known->second.find(key);
  return found == known->second.end() ? std::nullopt : std::optional(found->second);
}

void FilePreferencesService::setAppValue(const std::string& key, PropertyList value,
                                         const std::string& domain) {
  changes_[domain].insert_or_assign(key, std::move(value));
}

} // namespace tavrin
