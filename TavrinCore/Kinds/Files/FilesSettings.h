#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct FilesSettings {
  static constexpr std::string_view kindKey = "files";

  /// Empty means the Downloads folder.
  std::vector<std::string> folders;
  /// The most files listed.
  int limit = 20;
  bool marksUnseen = true;
  /// Files that appeared after this are new; none means that all are.
  std::optional<Date> seenUntil;

  static constexpr auto fields() {
    return std::tuple{optional("folders", &FilesSettings::folders)
                          .titled("Folders")
                          .helped("Whose newest files are shown.")
                          .as(FieldRole::folder)
                          .absentAs("Downloads"),
                      optional("limit", &FilesSettings::limit)
                          .titled("Files")
                          .helped("The most files listed.")
                          .ranging(1, 100),
                      optional("marksUnseen", &FilesSettings::marksUnseen)
                          .titled("Mark new files")
                          .helped("Counts on the tile what has come since you last looked."),
                      optional("seenUntil", &FilesSettings::seenUntil)
                          .titled("Seen until")
                          .helped("Files that appeared after this are new.")
                          .as(FieldRole::dateAndTime)
                          .hidden()};
  }
  bool operator==(const FilesSettings&) const = default;
};

} // namespace tavrin
