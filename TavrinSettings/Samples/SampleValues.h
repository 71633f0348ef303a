#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"
#include "TavrinCore/Kinds/Calendar/Reminder.h"
#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinCore/Kinds/Emoji/EmojiHistory.h"
#include "TavrinCore/Kinds/GitHub/GitHubBoard.h"
#include "TavrinCore/Kinds/GitHub/GitHubContributions.h"
#include "TavrinCore/Kinds/Water/WaterLog.h"
#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinPlatform/MediaPlayers.h"

#include <QImage>

namespace tavrin::samples {

/// What kinds read from a computer that has a bit of everything: made up, and the same at every
/// call. For pictures of tiles and panels where the real thing is not to be read.

/// A day of five events seen from `now`, and a holiday after it.
std::vector<CalendarEvent> events(Date now, const Calendar& calendar);
/// Four that are open, one of them late, and one that is done.
std::vector<Reminder> reminders(Date now, const Calendar& calendar);
/// Five days that begin with `condition`, in Celsius.
WeatherReading weather(double temperature, WeatherCondition condition, bool isDay, Date now,
                       const std::string& timeZoneID);
/// Pull requests and an issue, the checks of some failing.
std::vector<GitHubItem> gitHubItems(Date now);
/// A year; a quiet one is empty.
GitHubContributions contributions(Date now, bool isQuiet = false);
/// A week of glasses; today's are `millilitres`, the last of them poured some minutes before `now`.
WaterLog water(int millilitres, double minutesAgo, Date now, const Calendar& calendar);
ColourHistory colours(std::initializer_list<int> values);
const std::vector<Emoji>& emoji();
/// A player in the middle of a track.
MediaPlayer player(PlaybackStatus status, const std::string& title, const std::string& artist,
                   Date now, double length = 213, double position = 74);
/// A record's cover.
const QImage& cover(bool isLight = false);
/// The picture of a screen with a window or two; no two of six are alike.
QImage screen(int variety, QSize size = {1280, 800});
/// The same as lists show it.
QImage smallScreen(int variety, QSize size = {1280, 800});
/// An application's icon, unlike those with other numbers.
QImage applicationIcon(std::size_t index, int pixels);

} // namespace tavrin::samples
