#include "TavrinCore/Kinds/Water/WaterReading.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace tavrin;

/// Any log that can be read is put in order, takes a pour, and stays within its bounds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const Calendar calendar("Europe/Berlin", "en_GB");
  constexpr Date now{800'000'000};
  WaterLog log;
  try {
    log = decode<WaterLog>(JSONValue::parse({reinterpret_cast<const char*>(bytes), size}));
  } catch (const JSONError&) {
    return 0;
  } catch (const CodingError&) {
    return 0;
  }
  log.tidy();
  const int before = log.total(now, calendar);
  const auto reading = WaterReading::of(log, {}, now, calendar);
  if (!(reading.level >= 0 && reading.level <= 1) || before < 0)
    std::abort();
  reading.timeLeft();
  reading.count();
  log.add(250, now, calendar);
  const bool isOrdered = std::ranges::is_sorted(log.days, {}, &WaterDay::day);
  if (!isOrdered || log.days.size() > WaterLog::historyLength || log.lastPour != now)
    std::abort();
  if (decode<WaterLog>(encode(log)) != log)
    std::abort();
  return 0;
}
