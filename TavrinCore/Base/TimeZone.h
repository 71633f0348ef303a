#pragma once

#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The zone of an identifier such as "Europe/Berlin", by the rules in the system's own files. No
/// value for what those do not have, and for anything that is not a name: an identifier comes from
/// settings, and must not open files elsewhere. The one exception is the identifier that
/// `systemTimeZoneID` gives.
std::optional<cctz::time_zone> timeZone(const std::string& id);

using ZoneMoment = cctz::time_point<cctz::seconds>;

/// When clocks in `zone` show `wall`: the earlier moment where they repeat it, the first behind the
/// gap where they skip it.
ZoneMoment momentOf(const cctz::civil_second& wall, const cctz::time_zone& zone);

/// What the system's zone is called. TZ as POSIX has it counts first: a name, a file's path (both
/// may stand behind a colon), or a rule such as "CET-1CEST,M3.5.0,M10.5.0/3". A path to a file and
/// a rule are their own identifiers.
std::string systemTimeZoneID();

/// "Buenos Aires" of "America/Argentina/Buenos_Aires".
std::string cityOf(std::string_view zoneID);

/// The same in the user's language, "Kairo" of "Africa/Cairo", by the Common Locale Data
/// Repository; `cityOf` in English and where it has no name.
std::string localCityOf(const std::string& zoneID);

} // namespace tavrin
