#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Linux/SettingsManager.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(DesktopSettings, TheFontIsWhatTheDesktopTellsXPrograms) {
  TemporaryFolder home;
  std::filesystem::create_directories(home / ".config");
  put(home / ".config/kdeglobals", "[General]\nfont=Filed,10,-1,5,50,0,0,0,0,0\n");
  const LinuxFileManager files({{"HOME", home.path().string()}});
  const auto bus = Bus::session();
  LinuxWorkspace workspace(files, bus.get(), [] { return nullptr; });
  int changes = 0;
  const auto token = workspace.observeAppearance([&] { ++changes; });
  const auto becomes = [&](const char* family) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return workspace.interfaceFontFamily() == family;
    });
  };
  EXPECT_TRUE(becomes("Filed"));
  SettingsManager manager;
  manager.tell("Gtk/FontName", "Told Sans Bold 11");
  EXPECT_TRUE(becomes("Told Sans"));
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(LinuxWorkspace(files, nullptr, {}).interfaceFontFamily(), "Told Sans");
  manager.tell("Net/ThemeName", "Other");
  EXPECT_TRUE(becomes("Filed"));
}

TEST(DesktopSettings, TextSizeContrastAndStillnessAreWhatAnyToolkitsFilesSay) {
  TemporaryFolder home;
  const LinuxFileManager files({{"HOME", home.path().string()}});
  std::filesystem::create_directories(home / ".config/gtk-3.0");
  const auto looks = [&] {
    const LinuxWorkspace workspace(files, nullptr, {});
    return std::tuple(workspace.interfaceTextScale(), workspace.prefersHighContrast(),
                      workspace.prefersReducedMotion());
  };
  EXPECT_EQ(looks(), std::tuple(1.0, false, false));
  put(home / ".config/kdeglobals", "[General]\nfont=Noto Sans,22,-1,5,50,0,0,0,0,0\n"
                                   "ColorScheme=BreezeHighContrast\n"
                                   "[KDE]\nAnimationDurationFactor=0\n");
  EXPECT_EQ(looks(), std::tuple(2.0, true, true));
  put(home / ".config/kdeglobals", "[KDE]\nAnimationDurationFactor=0.5\n");
  EXPECT_EQ(looks(), std::tuple(1.0, false, false));
  put(home / ".config/gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=false\n"
                                             "gtk-theme-name=HighContrastInverse\n");
  EXPECT_EQ(looks(), std::tuple(1.0, true, true));
}

TEST(DesktopSettings, WhatXProgramsAreToldOfMotionAndSizeIsFollowed) {
  TemporaryFolder home;
  const LinuxFileManager files({{"HOME", home.path().string()}});
  LinuxWorkspace workspace(files, nullptr, {});
  int changes = 0;
  const auto token = workspace.observeAppearance([&] { ++changes; });
  const auto becomes = [](const auto& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  };
  SettingsManager manager;
  manager.tell("Gtk/EnableAnimations", 0);
  EXPECT_TRUE(becomes([&] { return workspace.prefersReducedMotion(); }));
  manager.tell("Gtk/EnableAnimations", 1);
  EXPECT_TRUE(becomes([&] { return !workspace.prefersReducedMotion(); }));
  manager.tell("Gtk/FontName", "Sans 16.5");
  EXPECT_TRUE(becomes([&] { return workspace.interfaceTextScale() == 1.5; }));
  manager.tell("Net/ThemeName", "HighContrast");
  EXPECT_TRUE(becomes([&] { return workspace.prefersHighContrast(); }));
  EXPECT_EQ(workspace.interfaceTextScale(), 1);
  EXPECT_EQ(changes, 4);
}

} // namespace
} // namespace tavrin
