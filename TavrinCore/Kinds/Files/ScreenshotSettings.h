#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ScreenshotSettings {
  static constexpr std::string_view kindKey = "screenshots";

  /// None is the desktop's own screenshot folder.
  std::optional<std::string> folder;
  /// The most pictures listed.
  int limit = 20;

  static constexpr auto fields() {
    return std::tuple{optional("folder", &ScreenshotSettings::folder)
                          .titled("Folder")
                          .helped("Where the pictures are looked for.")
                          .as(FieldRole::folder)
                          .absentAs("The desktop's own"),
                      optional("limit", &ScreenshotSettings::limit)
                          .titled("Pictures")
                          .helped("The most pictures listed.")
                          .ranging(1, 100)};
  }
  bool operator==(const ScreenshotSettings&) const = default;
};

} // namespace tavrin
