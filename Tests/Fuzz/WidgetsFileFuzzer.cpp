#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinCore/Widgets/WidgetsFile.h"
#include "Tests/Fuzz/Require.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tavrin;

std::optional<WidgetsFile> read(std::string_view text) {
  try {
    return decode<WidgetsFile>(JSONValue::parse(text));
  } catch (const JSONError&) {
  } catch (const CodingError&) {
  }
  return std::nullopt;
}

std::size_t entryCount(const WidgetsFile& file) {
  return file.widgets.size() + file.unrecognized.size();
}

} // namespace

/// Whatever can be read, is written so that it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto file = read(text);
  if (!file)
    return 0;
  const auto written = encode(*file).prettyPrinted();
  const auto again = read(written);
  require(again.has_value(), "what was written can be read");
  require(*again == *file, "reading what was written gives the same file");
  require(encode(*again).prettyPrinted() == written, "writing it again gives the same text");
  require(entryCount(*file) == JSONValue::parse(text).member("widgets")->array()->size(),
          "no entry is lost");
  for (const auto& widget : file->widgets) {
    require(widget.span >= 1 && widget.span <= widget.kind.maxSpan(), "spans are in bounds");
    require(withSettings(widget.kind, settingsJSON(widget.kind)) == widget.kind,
            "settings can be set to what they are");
  }
  const auto slot = file->freeSlot();
  require(!slot || (*slot >= 1 && *slot <= DockSlot::count), "free slots are slots");
  try {
    WidgetsFile::migrating(JSONValue::parse(text));
  } catch (const CodingError&) {
  }
  return 0;
}
