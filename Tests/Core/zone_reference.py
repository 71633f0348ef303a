"""What Python makes of the system's time zone files, at each change of a clock from 1970 to 2037 and
a second to either side: a line each of zone, seconds since 1970, the wall's time, the day's start."""
import datetime
import zoneinfo

WEEK = 7 * 86400
FIRST, LAST = 0, int(datetime.datetime(2038, 1, 1, tzinfo=datetime.timezone.utc).timestamp())


def offset(zone, second):
    return datetime.datetime.fromtimestamp(second, zone).utcoffset()


def changes(zone):
    """The first second of each new offset."""
    before = offset(zone, FIRST)
    for week in range(FIRST + WEEK, LAST, WEEK):
        after = offset(zone, week)
        if after == before:
            continue
        low, high = week - WEEK, week
        while high - low > 1:
            middle = (low + high) // 2
            if offset(zone, middle) == before:
                low = middle
            else:
                high = middle
        yield high
        before = after


def start_of_day(zone, wall):
    """Where midnight is skipped, the first moment behind the gap."""
    midnight = wall.replace(hour=0, minute=0, second=0, tzinfo=zone, fold=0)
    second = int(midnight.timestamp())
    shown = datetime.datetime.fromtimestamp(second, zone)
    if shown.replace(tzinfo=None) == midnight.replace(tzinfo=None):
        return second
    low, high = second - 86400, second + 86400
    while high - low > 1:
        middle = (low + high) // 2
        if offset(zone, middle) == offset(zone, second - 86400):
            low = middle
        else:
            high = middle
    return high


for name in sorted(zoneinfo.available_timezones()):
    if name == "localtime":
        continue
    zone = zoneinfo.ZoneInfo(name)
    for change in [FIRST, *changes(zone)]:
        for second in (change - 1, change, change + 1):
            wall = datetime.datetime.fromtimestamp(second, zone).replace(tzinfo=None, fold=0)
            print(name, second, wall.strftime("%Y-%m-%d %H:%M:%S"), start_of_day(zone, wall))
