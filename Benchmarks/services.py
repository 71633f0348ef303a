"""What widgets cost that read the desktop's calendars or a web service.

The calendar service is the real one, the web service a local one; both on a
bus and a home of their own.
"""

import datetime
import http.server
import json
import pathlib
import statistics
import sys
import threading
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "Tests" / "EndToEnd"))
from desks.calendars import CalendarServer, add, change, component  # noqa: E402
from rig import Desk, wait_for, widget  # noqa: E402
from figures import row, section, timed  # noqa: E402
from slots import memory  # noqa: E402

EVENTS = 10_000
SERIES = 500
SURFACE = {"TAVRIN_SURFACE": "picture"}


def main_thread(pid):
    """Processor milliseconds of the main thread so far."""
    schedstat = pathlib.Path(f"/proc/{pid}/task/{pid}/schedstat").read_text()
    return int(schedstat.split()[0]) / 1e6


def stamp(moment):
    return moment.strftime("%Y%m%dT%H%M%SZ")


def fill(calendar):
    now = datetime.datetime.utcnow()
    events = []
    for number in range(EVENTS):
        start = now + datetime.timedelta(hours=(number * 24 * 365 / EVENTS) - 24 * 180)
        events.append(component("VEVENT", UID=f"event{number}", SUMMARY=f"Event {number}",
                                DTSTART=stamp(start),
                                DTEND=stamp(start + datetime.timedelta(minutes=45))))
    for number in range(SERIES):
        start = now - datetime.timedelta(days=90, minutes=number * 17)
        events.append(component("VEVENT", UID=f"series{number}", SUMMARY=f"Series {number}",
                                DTSTART=stamp(start),
                                DTEND=stamp(start + datetime.timedelta(minutes=30)),
                                RRULE="FREQ=WEEKLY;COUNT=104"))
    for first in range(0, len(events), 1000):
        add(calendar, events[first:first + 1000])


class Tile:
    """The picture of slot 1, and what its process spends until it changes."""

    def __init__(self, desk, pid):
        self.file = desk.picture(1)
        self.pid = pid

    def settle(self, seconds=2.0):
        """The moment of the last change before it stood still that long."""
        seen, last = self.file.stat().st_mtime_ns, time.monotonic()
        moment = last
        while time.monotonic() - last < seconds:
            time.sleep(0.002)
            now = self.file.stat().st_mtime_ns
            if now != seen:
                seen, moment = now, time.monotonic()
                last = moment
        return moment

    def cost(self, act):
        """Milliseconds until the tile stands as it stays, and those of the main thread."""
        seen, before = self.file.stat().st_mtime_ns, main_thread(self.pid)
        start = time.monotonic()
        act()
        wait_for(lambda: self.file.stat().st_mtime_ns != seen, "the tile", 60)
        return (self.settle() - start) * 1000, main_thread(self.pid) - before


def bench_calendar(slots):
    desk = Desk()
    try:
        calendar = CalendarServer(desk).calendar()
        fill(calendar)
        identifier = "11111111-2222-4333-8444-555555555555"
        note = widget("note", {"text": "Milk"}, 1, identifier=identifier)
        timer = widget("timer", {}, 1, identifier=identifier)
        agenda = widget("calendar", {"style": "agenda"}, 1, identifier=identifier)
        section(f"A calendar of {EVENTS} events and {SERIES} series")
        firsts = []
        for _ in range(slots):
            desk.write_widgets([note], announce=False)
            process = desk.start_slot(1, env=SURFACE)
            desk.wait_for_name(1)
            time.sleep(4)
            before = memory(process.pid)["Private_Dirty"]
            tile = Tile(desk, process.pid)
            _, usual = tile.cost(lambda: desk.write_widgets([timer]))
            whole, main = tile.cost(lambda: desk.write_widgets([agenda]))
            firsts.append((whole, main, usual, main - usual))
            if len(firsts) < slots:
                process.terminate()
                process.wait(10)
        whole, main, usual, own = (statistics.median(column) for column in zip(*firsts))
        row(f"a timer becomes an agenda: until it stands, median of {slots}", whole, "ms")
        row("its time on the main thread, median", main, "ms")
        row("that of a note that becomes a timer, median", usual, "ms")
        timed("the first agenda's own time on the main thread, median", own, 5)
        timed("and the most", max(first[-1] for first in firsts), 5)
        upcoming = datetime.datetime.utcnow() + datetime.timedelta(seconds=30)
        costs = []
        for number in range(7):
            text = component("VEVENT", UID="event4932", SUMMARY=f"{number} changed",
                             DTSTART=stamp(upcoming - datetime.timedelta(hours=1)),
                             DTEND=stamp(upcoming + datetime.timedelta(hours=9)))
            costs.append(tile.cost(lambda: change(calendar, text)))
        row("a change elsewhere: until the tile shows it, median",
            statistics.median(cost[0] for cost in costs), "ms")
        timed("a refresh's time on the main thread, the most", max(cost[1] for cost in costs), 5)
        time.sleep(4)
        after = memory(process.pid)["Private_Dirty"]
        row("private memory of the slot as a note", before, "MB")
        row("private memory with the calendars' libraries", after, "MB", 10)
    finally:
        desk.close()


class Forecast(http.server.BaseHTTPRequestHandler):
    answer = json.dumps({
        "timezone": "Europe/Berlin",
        "current": {"temperature_2m": 21.5, "apparent_temperature": 20, "weather_code": 2,
                    "is_day": 1},
        "daily": {"time": [(datetime.date.today() + datetime.timedelta(days=day)).isoformat()
                           for day in range(5)],
                  "weather_code": [0, 1, 2, 3, 61], "temperature_2m_max": [20, 21, 22, 23, 24],
                  "temperature_2m_min": [10, 11, 12, 13, 14]}}).encode()

    def do_GET(self):
        self.send_response(200)
        self.send_header("Content-Length", str(len(self.answer)))
        self.end_headers()
        self.wfile.write(self.answer)

    def log_message(self, *_):
        pass


def bench_weather():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Forecast)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    desk = Desk()
    try:
        place = {"cityName": "Berlin", "latitude": 52.52, "longitude": 13.405, "unit": "celsius"}
        url = f"http://127.0.0.1:{server.server_port}/v1/forecast"
        desk.write_widgets([widget("weather", place, 1)], announce=False)
        process = desk.start_slot(1, env={**SURFACE, "TAVRIN_FORECAST_URL": url})
        desk.wait_for_name(1)
        wait_for(desk.picture(1).exists, "the tile", 10)
        Tile(desk, process.pid).settle()
        time.sleep(4)
        section("A weather widget with its reading")
        size = memory(process.pid)["Private_Dirty"]
        row("private memory with the network's libraries", size, "MB", 5)
    finally:
        desk.close()
        server.shutdown()


def bench(quick):
    if not quick:
        # Fresh slots that each become an agenda: only the first time has everything to do.
        bench_calendar(slots=3)
    bench_weather()
