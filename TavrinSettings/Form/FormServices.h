#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Settings/SettingSystem.h"
#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/CalendarStore.h"
#include "TavrinPlatform/ColourSampler.h"

#include <QImage>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace tavrin {

struct InstalledApp {
  /// Null while it is being read, and where there is none.
  QImage icon;
  /// Known not to be installed.
  bool isGone = false;
};

/// What a form asks of whoever shows it. Answers come on the main thread, at once or later, and
/// none once the token is gone; a function may be empty, then the form offers what is left: to type
/// the value. Nothing is asked before the control that needs it is opened, but the names of what is
/// chosen already.
struct FormServices {
  template <class T> using Asking = std::function<TokenPtr(std::function<void(T)> answer)>;

  /// What values are checked against.
  SettingSystem system;
  std::function<Date()> now;

  /// The identifiers of all zones, such as Europe/Berlin.
  std::function<std::vector<std::string>()> timeZones;
  /// The places of that name. `trouble` is a sentence, empty where all went well.
  std::function<TokenPtr(const std::string& name,
                         std::function<void(std::vector<WeatherPlace>, std::string trouble)>)>
      cities;
  /// The accounts of the calendar store with their calendars, or reminder lists.
  std::function<TokenPtr(CalendarStore::Entity, std::function<void(CalendarStore::Accounts)>)>
      accounts;
  /// Players by name and title, as on the bus now.
  std::function<std::vector<std::pair<std::string, std::string>>()> players;
  std::function<std::vector<std::string>()> networkLinks;
  Asking<std::vector<ApplicationInfo>> applications;
  /// An application as this computer has it, its icon a square of `points` times `scale` pixels.
  std::function<InstalledApp(const AppEntry&, int points, double scale)> installedApp;
  /// More is known of applications than `installedApp` answered.
  std::function<TokenPtr(std::function<void()>)> observeInstalledApps;
  /// A picture of `ApplicationInfo::icon`, a square of `points` times `scale` pixels.
  std::function<TokenPtr(const std::string& icon, int points, int scale,
                         std::function<void(QImage)>)>
      applicationIcon;
  /// Lets the user take a colour from the screen.
  Asking<const ColourSample&> pickColour;

  /// `newFile` is one to be written.
  enum class Choosing { file, files, folder, newFile };
  /// The desktop's own dialog over `parent`, begun at `start`, a folder or, for a new file, what it
  /// may be called; empty when it was left.
  std::function<std::vector<std::filesystem::path>(QWidget* parent, Choosing,
                                                   const std::filesystem::path& start)>
      choosePaths;
};

} // namespace tavrin
