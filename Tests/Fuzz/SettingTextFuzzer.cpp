#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Widgets/SettingChanges.h"
#include "Tests/Fuzz/Require.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace tavrin;

const Date now{800'000'000};

void checkDates(std::string_view text) {
  if (const auto date = dateFromISO8601(text))
    require(std::isfinite(date->secondsSinceReferenceDate), "a date is a number");
  if (const auto date = dateFromText(text, now)) {
    const auto again = dateFromText(dateText(*date), now);
    // An hour that the clocks go through twice is written as one.
    require(again && std::fabs(again->since(*date)) <= 7200, "a date is read as it is written");
  }
  if (const auto seconds = durationFromText(text))
    require(std::isfinite(*seconds), "a length of time is a number");
}

} // namespace

/// The first two bytes choose a kind and one of its settings; the rest is what somebody types. What
/// is taken is JSON that the kind's settings take, and reads the same when it is typed as shown.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size < 2)
    return 0;
  const std::string_view text(reinterpret_cast<const char*>(bytes) + 2, size - 2);
  checkDates(text);
  const auto& kinds = allKinds();
  const auto kind = *freshKind(kinds[bytes[0] % kinds.size()].key, now);
  const auto fields = describeSettings(kind);
  if (fields.empty())
    return 0;
  const auto& field = fields[bytes[1] % fields.size()];
  allowedText(field);
  try {
    const JSONValue value = settingFromText(field, text, now);
    settingText(field, value);
    JSONValue settings = settingsJSON(kind);
    settings.object()->insert_or_assign(field.key, value);
    if (refusalOf(fields, settings).empty())
      withSettings(kind, settings);
  } catch (const SettingError&) {
    // It says what is allowed.
  }
  return 0;
}
