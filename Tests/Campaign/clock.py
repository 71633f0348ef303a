"""The wall clock of the campaign's programs, which it sets; SimulatedClock.cpp is the other half."""

import datetime
import os
import struct
import time
import zoneinfo

SECOND = 1_000_000_000
# A day with a change of the clocks in the middle, or none: where, and the noon before.
BEGINNINGS = [
    ("Europe/Berlin", (2027, 3, 27)), ("Europe/Berlin", (2026, 10, 24)),
    ("America/New_York", (2027, 3, 13)), ("Australia/Lord_Howe", (2027, 4, 3)),
    ("America/Santiago", (2026, 9, 5)), ("Asia/Kathmandu", (2026, 12, 31)),
    ("Pacific/Apia", (2028, 2, 28)), ("Europe/Dublin", (2026, 10, 24)),
]
ZONES = sorted({zone for zone, _ in BEGINNINGS} | {"Africa/Casablanca", "Asia/Tehran", "Etc/UTC"})


class SimulatedClock:
    def __init__(self, file, zone):
        self.file = file
        self.zone = zone
        self.offset = 0
        self.passed = 0.0
        file.write_bytes(struct.pack("<q", 0))

    def now(self):
        """Seconds since 1970, as the programs see them."""
        return time.time() + self.offset

    def local(self):
        return datetime.datetime.fromtimestamp(self.now(), zoneinfo.ZoneInfo(self.zone))

    def set(self, moment):
        self.passed += moment - self.now()
        self.offset = moment - time.time()
        # One write of eight bytes: nobody sees half of it, and all are told.
        descriptor = os.open(self.file, os.O_WRONLY)
        os.pwrite(descriptor, struct.pack("<q", int(self.offset * SECOND)), 0)
        os.close(descriptor)

    def advance(self, seconds):
        self.set(self.now() + seconds)

    def begin(self, date):
        self.set(datetime.datetime(*date, 12, tzinfo=zoneinfo.ZoneInfo(self.zone)).timestamp())
        self.passed = 0.0

    def next_midnight(self):
        local = self.local()
        tomorrow = local.date() + datetime.timedelta(days=1)
        return datetime.datetime.combine(tomorrow, datetime.time(),
                                         zoneinfo.ZoneInfo(self.zone)).timestamp()

    def next_change(self):
        """When the zone's clocks change next, within two days; else no value."""
        zone = zoneinfo.ZoneInfo(self.zone)

        def shift(moment):
            return datetime.datetime.fromtimestamp(moment, zone).utcoffset()
        start = self.now()
        quarter = 900 - start % 900
        for step in range(2 * 96):
            moment = start + quarter + step * 900
            if shift(moment) != shift(moment - 1):
                return moment
        return None
