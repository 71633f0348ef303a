#pragma once

#include "TavrinCore/Desktop/DesktopReport.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Linux/Base/DesktopFacts.h"

#include <filesystem>
#include <set>
#include <string>

namespace tavrin {

/// What can be reached on a bus: names that have an owner, and names whose owner the bus would
/// start.
struct BusNames {
  bool isOpen = false;
  std::set<std::string, std::less<>> owned;
  std::set<std::string, std::less<>> startable;

  bool has(std::string_view name) const { return owned.contains(name) || startable.contains(name); }
};

/// `bus` may be null.
BusNames readBusNames(Bus* bus);

/// All that a report is made of.
struct DesktopSurvey {
  DesktopFacts facts;
  /// TAVRIN_SURFACE.
  std::string surfaceWish;
  BusNames session;
  BusNames system;
  /// Where the modules lie; see ModuleFolder.
  std::filesystem::path modules;
  std::filesystem::path inputDevices = "/dev/input";
  bool hasSoundLibrary = false;
};

DesktopReport makeDesktopReport(const DesktopSurvey& survey);

} // namespace tavrin
