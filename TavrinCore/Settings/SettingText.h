#pragma once

#include "TavrinCore/Base/FieldInfo.h"

#include <string>
#include <string_view>

namespace tavrin {

/// A setting's value as a person writes it, as the JSON that is stored:
///
///     yes/no, true/false, on/off             a switch
///     25m, 1h30m, 90, 1:30:00                a length of time, in seconds when it stands alone
///     2000, 2000 ml                          a number, with or without its unit
///     2026-12-24, 2026-12-24T18:00           a date in local time; also with Z or +01:00
///     now, today, tomorrow, +14d, -2h        a date seen from `now`
///     focus                                  a choice, by its name or the start of it
///     5m,10m or ["a, b", "c"]                a list
///     ctrl+alt+P                             a shortcut
///     null                                   no value, where there may be none
///
/// Throws SettingError with a sentence that names what is allowed.
JSONValue settingFromText(const FieldInfo& field, std::string_view text, Date now);

/// The stored value as a person reads it.
std::string settingText(const FieldInfo& field, const JSONValue& value);

/// What the setting takes: "1 min to 2 h", "yes or no", "day, week, month or year".
std::string allowedText(const FieldInfo& field);

/// The clause about the first value that its line does not allow, such as
/// `"focus" must be 1 min to 2 h`; empty when all are allowed. Keys without a line are refused.
std::string refusalOf(const std::vector<FieldInfo>& fields, const JSONValue& settings);

/// Seconds as "1 h 30 min".
std::string durationText(double seconds);
/// A date as "2026-12-24 18:00" in local time, with seconds where there are some.
std::string dateText(Date date);
/// No value for a text that is no date.
std::optional<Date> dateFromText(std::string_view text, Date now);
/// No value for a text that is no length of time.
std::optional<double> durationFromText(std::string_view text);

/// "a", "a or b", "a, b or c".
std::string alternatives(const std::vector<std::string>& words);
/// "a", "a and b", "a, b and c".
std::string enumeration(const std::vector<std::string>& words);

/// A sentence that nothing of this sort goes by the reference, with the names that there are.
std::string noneCalled(std::string_view what, std::string_view reference,
                       const std::vector<std::string>& names);

} // namespace tavrin
