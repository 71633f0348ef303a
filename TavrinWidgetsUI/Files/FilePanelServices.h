#pragma once

#include "TavrinPlatform/Clock.h"

#include <QString>
#include <filesystem>
#include <functional>

namespace tavrin {

/// What a panel that lists files needs besides them.
struct FilePanelServices {
  using Action = std::function<void(const std::filesystem::path&)>;

  Clock& clock;
  std::filesystem::path home;
  /// The widget's.
  std::function<QString()> name;
  Action open;
  Action copy;
  Action reveal;
  Action moveToTrash;
  /// The name of the file that was moved to the trash last and can be put back; empty for none. It
  /// stays when the panel closes.
  std::function<QString()> undoable = [] { return QString(); };
  std::function<void()> undo = [] {};
  std::function<void()> edit;
  /// What the last thing done failed with; empty for nothing.
  std::function<QString()> trouble;
};

} // namespace tavrin
