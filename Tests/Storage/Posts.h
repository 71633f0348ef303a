#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"

#include <string>
#include <vector>

namespace tavrin {

/// Keeps what was announced: the name, then the object where there is one.
struct Posts final : DistributedNotificationCenter {
  void post(const std::string& name, const std::optional<std::string>& object) override {
    names.push_back(name + (object ? " " + *object : ""));
  }
  TokenPtr observe(const std::string&, Handler) override { return nullptr; }
  std::vector<std::string> names;
};

} // namespace tavrin
