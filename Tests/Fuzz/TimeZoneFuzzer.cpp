#include "TavrinCore/Base/Calendar.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

/// TZ may say anything: days are found all the same, and are days.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace tavrin;
  std::string value(reinterpret_cast<const char*>(bytes), size);
  value.resize(std::min(value.find('\0'), value.size()));
  ::setenv("TZ", value.c_str(), 1);
  const Calendar calendar;
  for (const Date now : {Date{0}, Date{800'000'000}, Date{-1e10}, Date{1e11}}) {
    const Date day = calendar.startOfDay(now);
    const Date next = calendar.startOfDay(calendar.addingDays(1, day));
    if (!(day <= now) || !(day < next) || next.since(day) > 50 * 3600.0)
      std::abort();
    calendar.text(now, "yyyy-MM-dd HH:mm z");
  }
  if (!value.empty() && Calendar::isKnownTimeZone(value))
    calendar.inTimeZone(value).startOfDay({800'000'000});
  return 0;
}
