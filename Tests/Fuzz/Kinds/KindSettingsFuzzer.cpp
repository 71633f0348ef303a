#include "TavrinCore/Widgets/SettingChanges.h"
#include "TavrinCore/Widgets/WidgetsFile.h"
#include "Tests/Fuzz/Require.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tavrin;

/// What a slot reads: the entry of its widget, as one of a file.
std::optional<DockWidget> read(const JSONValue& entry) {
  const JSONValue::Object document{{"version", 1}, {"widgets", JSONValue::Array{entry}}};
  const auto file = decode<WidgetsFile>(document);
  if (file.widgets.empty()) {
    require(encode(file) == JSONValue(document), "an entry that is not understood stays as it was");
    return std::nullopt;
  }
  return file.widgets.front();
}

/// A slot writes what it changed into the record that is there.
void changeSettings(const DockWidget& widget) {
  const DockWidget::Kind& kind = widget.kind;
  require(withChanges(kind, kind, kind) == kind, "no change changes nothing");
  const auto fresh = *freshKind(kind.key(), {800'000'000});
  // Members that nobody knows here stay beside them.
  const JSONValue changed = settingsJSON(withChanges(kind, kind, fresh));
  const JSONValue wanted = settingsJSON(fresh);
  for (const auto& field : describeSettings(fresh)) {
    const auto* is = changed.member(field.key);
    const auto* was = wanted.member(field.key);
    require(is == nullptr ? was == nullptr : was != nullptr && *is == *was,
            "a change of all settings is all of them");
  }
  require(withChanges(fresh, kind, kind) == fresh, "what others changed is kept");
  require(withSettings(kind, settingsJSON(kind)) == kind, "settings can be set to what they are");
  require(widget.span >= 1 && widget.span <= kind.maxSpan(), "spans are in bounds");
}

} // namespace

/// The first byte chooses a kind; the rest is the JSON of its settings.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0)
    return 0;
  const auto& kinds = allKinds();
  const auto& info = kinds[bytes[0] % kinds.size()];
  try {
    const JSONValue settings =
        JSONValue::parse({reinterpret_cast<const char*>(bytes) + 1, size - 1});
    auto entry = encode(DockWidget(UUID{}, "Mine", 3, *freshKind(info.key, {800'000'000}), 1));
    auto& payload = entry.object()->at("kind").object()->begin()->second;
    if (payload.member("_0") != nullptr)
      payload.object()->at("_0") = settings;
    else
      payload = settings;
    if (const auto widget = read(entry)) {
      require(widget->kind.key() == info.key, "the kind stays");
      require(read(encode(*widget)) == widget, "what was written reads the same");
      changeSettings(*widget);
    }
  } catch (const JSONError&) {
    // No JSON, or a number that has no JSON form.
  }
  return 0;
}
