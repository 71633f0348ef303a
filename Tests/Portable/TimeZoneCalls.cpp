#include <cctz/time_zone.h>

#include <algorithm>
#include <new>
#include <string>

/// The library of time zones for a program with another standard library: by the system's compiler,
/// with nothing of the standard library in the calls.
extern "C" {
bool tavrinLoadTimeZone(const char* name, void* zone) {
  return cctz::load_time_zone(name, static_cast<cctz::time_zone*>(zone));
}
void tavrinLookUpTime(const void* zone, std::int64_t seconds, void* answer) {
  const cctz::time_point<cctz::seconds> moment{cctz::seconds(seconds)};
  new (answer) cctz::time_zone::absolute_lookup(
      static_cast<const cctz::time_zone*>(zone)->lookup(moment));
}
void tavrinTimeZoneName(const void* zone, char* buffer, std::size_t size) {
  const auto name = static_cast<const cctz::time_zone*>(zone)->name();
  name.copy(buffer, size - 1);
  buffer[std::min(name.size(), size - 1)] = '\0';
}
}
