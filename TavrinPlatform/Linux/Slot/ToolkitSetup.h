#pragma once

#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include <map>
#include <optional>
#include <string>

namespace tavrin {

/// What the toolkit reads from the environment while it starts, chosen so that a slot stays
/// small: no GL, no GLib, no desktop theme plugin (those bring a second toolkit into the
/// process). Children never see these values: the destructor puts the old ones back.
class ToolkitSetup {
public:
  ToolkitSetup(const FileManager& files, const DesktopFacts& displays);
  ~ToolkitSetup();
  ToolkitSetup(const ToolkitSetup&) = delete;
  ToolkitSetup& operator=(const ToolkitSetup&) = delete;

private:
  void set(const char* name, const char* value);
  void setDefault(const char* name, const char* value);

  std::map<std::string, std::optional<std::string>> previous_;
};

} // namespace tavrin
