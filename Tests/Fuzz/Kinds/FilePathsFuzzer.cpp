#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Files/FileKind.h"
#include "TavrinCore/Kinds/Files/Shelf.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"
#include "TavrinCore/Text/Text.h"
#include "Tests/Fuzz/Require.h"

#include <cstdlib>

using namespace tavrin;

/// Paths, addresses and names from drops, settings and folders.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& path : pathsOfURIList(text)) {
    require(path.is_absolute());
    require(pathOfFileURL(fileURL(path.native())) == path.native());
    require(pathOfText(pathText(path)) == path);
    require(isUTF8(shownName(path)) && shownName(path).find('\n') == std::string::npos);
    require(isUTF8(shownFolder(path, "/home")));
  }
  if (const auto path = pathOfText(text, "/home"))
    require(path->is_absolute() && path->native().find('\0') == std::string::npos);
  fileKind(text);
  fileEnding(text);
  isPartialDownload(text);
  for (const bool isCut : {false, true})
    if (const auto preview = textPreview(text, isCut))
      require(isUTF8(*preview));
  ShelfSettings settings;
  for (std::size_t at = 0; at < size && settings.paths.size() < 100;) {
    const auto end = std::min(text.find('\n', at), size);
    settings.paths.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  const auto files = shelf::files(settings);
  const auto again = shelf::adding(settings, files);
  require(shelf::files(again) == files && files.size() <= ShelfSettings::maximumCount);
  return 0;
}
