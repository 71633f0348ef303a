#include <cctz/time_zone.h>

#include <new>

extern "C" {
bool tavrinLoadTimeZone(const char* name, void* zone);
void tavrinLookUpTime(const void* zone, std::int64_t seconds, void* answer);
void tavrinTimeZoneName(const void* zone, char* buffer, std::size_t size);
}

/// What the library of time zones takes and gives with types of the standard library. It is built
/// with the system's; a zone is a pointer, and a moment a number, in both.
namespace cctz {

bool load_time_zone(const std::string& name, time_zone* zone) {
  return tavrinLoadTimeZone(name.c_str(), zone);
}

time_zone::absolute_lookup time_zone::lookup(const time_point<seconds>& moment) const {
  alignas(absolute_lookup) std::byte room[sizeof(absolute_lookup)];
  tavrinLookUpTime(this, moment.time_since_epoch().count(), room);
  return *std::launder(reinterpret_cast<absolute_lookup*>(room));
}

std::string time_zone::name() const {
  char buffer[256];
  tavrinTimeZoneName(this, buffer, sizeof buffer);
  return buffer;
}

} // namespace cctz
