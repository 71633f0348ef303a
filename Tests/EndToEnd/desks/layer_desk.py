"""A desk under a Wayland compositor with a layer shell: of its tiles and panels only their pixels are
told to others."""

import plistlib
import subprocess

from desks.compositors import DESKTOPS, SIZE
from desks.managed_desk import NAMES, PITCH, TILE, ManagedDesk
from rig import BUILD, wait_for

COLOURS = {"white": (255, 255, 255), "red": (255, 0, 0)}
# What of a tile's side its body covers.
BODY = 0.805


class Picture:
    def __init__(self, desk):
        self.bytes = subprocess.run(
            ["import", "-silent", "-window", "root", "-crop", f"{SIZE[0]}x{SIZE[1]}+0+0", "-depth",
             "8", "rgb:-"], env=desk.env, capture_output=True, check=True).stdout

    def at(self, x, y):
        start = 3 * (y * SIZE[0] + x)
        return tuple(self.bytes[start:start + 3])

    @staticmethod
    def runs(length, holds):
        """Start and end of each run of places that `holds`."""
        found, start = [], None
        for place in range(length + 1):
            if place < length and holds(place):
                start = place if start is None else start
            elif start is not None:
                found.append((start, place))
                start = None
        return found


def is_paper(colour):
    """Of a note, or the ink on it."""
    red, green, blue = colour
    return red > 180 and green > 140 and blue < 190 and green > blue or 180 >= red > green > blue


class Window:
    """Another program's, in one colour; it says what happens to it."""

    def __init__(self, row, title, colour, state):
        self.colour = COLOURS[colour]
        self.log = row.desk.home / f"{title}.log"
        self.process = row.desk.spawn(
            [str(BUILD / "Tests" / "Linux" / "WindowDouble"), colour, state], log=f"{title}.log",
            env={"QT_QPA_PLATFORM": "wayland", "DISPLAY": ""})

    def last(self, start):
        return next((line for line in reversed(self.log.read_text().splitlines())
                     if line.startswith(start)), "")

    def has_focus(self):
        return self.last("focus") == "focus 1"


class LayerDesk(ManagedDesk):
    slot_env = {"DISPLAY": ""}
    size = SIZE
    double_env = {"QT_QPA_PLATFORM": "wayland", "DISPLAY": ""}

    @classmethod
    def start_manager(cls):
        cls.desktop = DESKTOPS[cls.manager](cls.desk, cls.addClassCleanup)

    # What is on the screen

    @classmethod
    def tiles(cls, picture):
        """Each (None, x, y, width, height), as far as its body tells."""
        row = SIZE[1] - 17  # Below one corner and above the other.
        found = []
        for left, right in picture.runs(SIZE[0], lambda x: is_paper(picture.at(x, row))):
            column = (left + right) // 2
            rise = picture.runs(TILE + 2, lambda y: picture.at(column, SIZE[1] - TILE - 2 + y)
                                not in (cls.desktop.background, *COLOURS.values()))
            is_body = abs(right - left - BODY * TILE) <= 2 and rise and \
                abs(rise[0][0] - 2 - TILE * (1 - BODY) / 2) <= 2
            if is_body:
                found.append((None, round(column - PITCH / 2), SIZE[1] - TILE, round(PITCH), TILE))
        return found

    @classmethod
    def windows(cls, number):
        picture = Picture(cls.desk)
        tiles = cls.tiles(picture)
        if len(tiles) != len(NAMES):
            return None, None
        # A panel is whatever is neither desktop nor a window of one colour, above its tile.
        ground = (cls.desktop.background, *COLOURS.values())
        centre = tiles[number][1] + tiles[number][3] // 2
        row = SIZE[1] - TILE - 40
        for left, right in picture.runs(SIZE[0], lambda x: picture.at(x, row) not in ground):
            if abs((left + right) / 2 - centre) > 2:
                continue
            rise = picture.runs(SIZE[1] - TILE, lambda y: picture.at(centre, y) not in ground)[-1]
            return tiles[number], (None, left, rise[0], right - left, rise[1] - rise[0])
        return tiles[number], None

    @classmethod
    def are_in_place(cls, screen=(0, 0, *SIZE)):
        tiles = cls.tiles(Picture(cls.desk))
        lefts = [tile[1] for tile in tiles]
        middle = (lefts[0] + lefts[-1] + PITCH) / 2 if tiles else 0
        return (len(tiles) == len(NAMES)
                and all(abs(b - a - PITCH) <= 1.5 for a, b in zip(lefts, lefts[1:]))
                and abs(middle - screen[2] / 2) <= 3)

    @classmethod
    def bodies(cls):
        """Also those that wear a ring."""
        picture = Picture(cls.desk)
        runs = picture.runs(SIZE[0], lambda x: is_paper(picture.at(x, SIZE[1] - 17)))
        return [run for run in runs if -12 <= run[1] - run[0] - BODY * TILE <= 2]

    @classmethod
    def is_shown(cls):
        return len(cls.bodies()) == len(NAMES)

    @classmethod
    def is_hidden(cls):
        return not cls.bodies()

    # What others have on it

    def open_terminal(self, title="other", colour="white", state="plain"):
        window = Window(self, title, colour, state)

        def end():
            window.process.terminate()
            window.process.wait()
            self.others.remove(window)
        self.others = getattr(self, "others", []) + [window]
        self.addCleanup(end)
        wait_for(lambda: self.frame(window), "the window")
        return window

    def frame(self, window):
        picture = Picture(self.desk)
        places = [(x, y) for y in range(0, SIZE[1], 4) for x in range(0, SIZE[0], 4)
                  if picture.at(x, y) == window.colour]
        if not places:
            return None
        lefts, tops = zip(*places)
        return min(lefts), min(tops), max(lefts) + 4, max(tops) + 4

    def focused(self):
        return next((window for window in self.others if window.has_focus()), None)

    def focus(self, window):
        left, top, _, _ = self.frame(window)
        if not window.has_focus():
            self.desk.click(left + 20, top + 20)
        wait_for(window.has_focus, "the window's focus")

    def owns_focus(self, number):
        """A panel of a layer shell has the keyboard to itself."""
        return self.panel(number) is not None

    def type(self, number, letter):
        def is_typed():
            self.desk.run("xdotool", "type", letter)
            return letter in self.text(number)
        wait_for(is_typed, "the typed letter in the note", pause=0.1)

    # Columns whose means are the X server's elsewhere

    def cover(self):
        window = self.open_terminal("cover", "red")
        left = self.tile(0)[1] - 60
        self.desktop.lay_over("window double", self.frame(window), left, SIZE[1] - 120)
        wait_for(lambda: self.frame(window)[3] > SIZE[1] - 20, "a window over the strip")
        return window

    def column_fullscreen(self):
        window = self.open_terminal("full", "red", "fullscreen")
        wait_for(self.sees_red, "the fullscreen window above the tiles")
        window.process.terminate()
        wait_for(self.sees_tile, "the tiles to come back")
        self.settle()

    def colour(self, number):
        return super().colour(number) if self.tiles(Picture(self.desk)) else \
            Picture(self.desk).at(SIZE[0] // 2, SIZE[1] - TILE // 2 - 12)

    def column_room(self):
        window = self.open_terminal("big", "red", "maximized")
        wait_for(lambda: window.last("size") == f"size {SIZE[0]} {SIZE[1] - TILE}",
                 "a maximized window above the tiles")

    def maximized(self):
        window = self.open_terminal("big", "red", "maximized")
        return lambda: int((window.last("size") or "size 0 0").split()[2])

    def column_desktops(self):
        window = self.open_terminal("stays")
        self.desktop.go_to_desktop(2)
        wait_for(lambda: self.frame(window) is None, "the other desktop")
        self.settle()
        self.works(1, "d")
        self.desktop.go_to_desktop(1)
        wait_for(lambda: self.frame(window), "the first desktop")
        self.settle()

    def column_chosen(self):
        """At the edge and in the size that are preferred."""
        preferences = self.desk.home / "Library" / "Preferences" / "com.apple.dock.plist"
        preferences.parent.mkdir(parents=True, exist_ok=True)

        def restart():
            self.slots[0].terminate()
            self.slots[0].wait()
            self.slots[0] = self.desk.start_slot(1, env=self.slot_env)
        try:
            for edge, size in (("bottom", 16), ("bottom", 256), ("right", 64)):
                with self.subTest(edge=edge, size=size):
                    preferences.write_bytes(plistlib.dumps({"orientation": edge, "tilesize": size}))
                    restart()
                    across = size // 2 + size // 4
                    length = SIZE[1] if edge == "right" else SIZE[0]
                    along = round(length / 2 - size * 1.0625)
                    place = ((SIZE[0] - across, along) if edge == "right"
                             else (along, SIZE[1] - across))
                    wait_for(lambda: is_paper(Picture(self.desk).at(*place)), "the tile there")
        finally:
            preferences.unlink()
            restart()
            self.settle()
