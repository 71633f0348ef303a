#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct FilesSettings {
  /// Empty means the Downloads folder.
  std::vector<std::string> folders;
  /// The most files listed.
  int limit = 20;
  bool marksUnseen = true;
  /// Files that appeared after this are new; none means that all are.
  std::optional<Date> seenUntil;

  static constexpr auto fields() {
    return std::tuple{optional("folders", &FilesSettings::folders).titled("Folders"),
                      optional("limit", &FilesSettings::limit).titled("Files").ranging(1, 100),
                      optional("marksUnseen", &FilesSettings::marksUnseen).titled("Mark new files"),
                      optional("seenUntil", &FilesSettings::seenUntil).titled("Seen until")};
  }
  bool operator==(const FilesSettings&) const = default;
};

} // namespace tavrin
