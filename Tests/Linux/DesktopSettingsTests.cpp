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

} // namespace
} // namespace tavrin
