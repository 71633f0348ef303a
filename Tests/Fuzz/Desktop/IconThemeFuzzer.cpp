#include "TavrinCore/Desktop/IconTheme.h"

#include <cstdint>
#include <cstdlib>

/// Any text is read as a theme that inherits itself, and as the name of an icon in it: no file
/// outside the base folder is asked for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto theme = IconTheme::parse(text);
  for (const auto& folder : theme.folders)
    if (folder.size <= 0 || folder.scale <= 0 || folder.distance(48, 2) < 0)
      std::abort();
  IconSources sources;
  sources.folders = {"/base"};
  sources.theme = [&](const std::string&) { return std::optional(theme); };
  bool isInside = true;
  sources.exists = [&](const std::filesystem::path& path) {
    const auto below = path.lexically_normal().lexically_relative("/base");
    isInside = isInside && !below.empty() && *below.begin() != "..";
    return false;
  };
  findIcon("x", 48, 2, "theme", sources);
  if (const std::string name(text.substr(0, 200)); !name.starts_with('/'))
    findIcon(name, 16, 1, name, sources);
  if (!isInside)
    std::abort();
  return 0;
}
