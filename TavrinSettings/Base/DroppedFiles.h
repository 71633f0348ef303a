#pragma once

#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <vector>

namespace tavrin {

/// The files of this computer that are dragged.
inline std::vector<std::filesystem::path> filesOf(const QMimeData& data) {
  std::vector<std::filesystem::path> files;
  for (const auto& url : data.urls())
    if (url.isLocalFile())
      files.emplace_back(url.toLocalFile().toStdString());
  return files;
}

} // namespace tavrin
