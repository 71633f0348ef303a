"""What a link's page says of itself, from a web server to the panel."""

import itertools
import json
import subprocess
import sys
import time
import unittest

from desks.access_tree import AccessTree, start_accessibility
from desks.internet import COLOUR, Site, enter, start_site
from rig import Desk, DeskTest, wait_for, widget
from test_clipboard import items_of, start_keyring


class SiteTest(DeskTest):
    @classmethod
    def setUpClass(cls):
        server = start_site()
        cls.addClassCleanup(server.server_close)
        cls.addClassCleanup(server.shutdown)


class Previews(SiteTest):
    def setUp(self):
        self.desk = Desk()
        self.addCleanup(self.desk.close)
        Site.asked.clear()
        start_accessibility(self.desk)
        self.access = AccessTree(self.desk)
        start_keyring(self.desk)
        self.desk.write_widgets([widget("clipboard", {}, 3, "Clipboard")], announce=False)
        self.slot = self.desk.start_slot(3)
        self.desk.wait_for_name(3)
        wait_for(lambda: self.copy("warm") or time.sleep(0.3) or items_of(self.desk),
                 "the slot to listen")

    def copy(self, text):
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.desk.env, input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)

    def item(self, url):
        return next((item for item in items_of(self.desk) if item.get("text") == url), None)

    def shown(self):
        return [node["name"] for node in self.access.nodes(self.slot.pid)]

    def pixels_of(self, colour):
        path = self.desk.home / "screen.png"
        self.desk.screenshot(path)
        counted = subprocess.run(
            ["convert", str(path), "-fuzz", "4%", "-fill", "black", "+opaque",
             "rgb({},{},{})".format(*colour), "-fill", "white", "-opaque",
             "rgb({},{},{})".format(*colour), "-format", "%[fx:mean*w*h]", "info:"],
            capture_output=True, text=True, check=True)
        return float(counted.stdout)

    def test_a_copied_link_shows_its_title_and_its_picture(self):
        self.copy("http://tides.com/march")
        item = wait_for(lambda: (self.item("http://tides.com/march") or {}).get("ogTitle")
                        and self.item("http://tides.com/march"), "the preview", pause=0.2)
        self.assertEqual(item["ogTitle"], "Tides of the F\xe6r\xf6er")
        self.assertEqual(item["ogDescription"], "Twice a day")
        self.assertIn("ogImageData", item)
        self.assertIn("ogFetchedAt", item)
        self.assertEqual(Site.asked, [("tides.com", "/march"), ("tides.com", "/picture.png")])
        for headers in Site.headers_seen:
            self.assertNotIn("Cookie", headers)
            self.assertNotIn("Referer", headers)
        self.desk.toggle(3)
        wait_for(lambda: any("Tides of the F\xe6r\xf6er" in name for name in self.shown()),
                 "the title in the panel", pause=0.2)
        wait_for(lambda: self.pixels_of(COLOUR) > 300, "the picture in the panel", pause=0.2)

    def test_nothing_that_is_not_public_is_asked(self):
        # Without digits: with them a link counts as a secret and would not be asked for anyway.
        refused = ["http://printer.com/", "http://here.com/", "http://localhost/",
                   "http://tides.com/to/here.com/a", "http://tides.com/to/localhost/b"]
        for url in refused:
            self.copy(url)
            time.sleep(0.2)
        # One at a time: when the last one has its preview, the others are done with.
        self.copy("http://tides.com/to/tides.com/march")
        wait_for(lambda: (self.item("http://tides.com/to/tides.com/march") or {}).get("ogTitle"),
                 "the preview behind a redirect", pause=0.2)
        for url in refused:
            self.assertNotIn("ogTitle", self.item(url), url)
        self.assertEqual({host for host, _ in Site.asked}, {"tides.com"})
        # The toolkit asks again by itself when a connection ends before the answer was read.
        self.assertEqual([path for path, _ in itertools.groupby(path for _, path in Site.asked)],
                         ["/to/here.com/a", "/to/localhost/b", "/to/tides.com/march", "/march",
                          "/picture.png"])


class Names(SiteTest):
    def bookmarks(self):
        document = json.loads((self.desk.data / "widgets.json").read_text())
        return document["widgets"][0]["kind"]["bookmarks"]["_0"].get("bookmarks", [])

    def test_a_link_that_is_added_gets_its_pages_name(self):
        Site.asked.clear()
        start_accessibility(self.desk)
        access = AccessTree(self.desk)
        self.addCleanup(access.close)
        self.desk.write_widgets([widget("bookmarks", {"showsIcons": False}, 1, "Links")],
                                announce=False)
        slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        _, x, y, width, height = wait_for(lambda: self.desk.windows(slot.pid), "the tile")[0]
        self.desk.click(x + width / 2, y + height / 2)
        wait_for(lambda: self.desk.run("xdotool", "getwindowfocus", "getwindowpid",
                                       check=False).strip() == str(slot.pid), "the focus")
        for address in ("http://printer.com/", "http://tides.com/march"):
            self.desk.run("xdotool", "type", "--delay", "15", address)
            self.desk.key("Return")
            wait_for(lambda: address in [each["url"] for each in self.bookmarks()], address)
            self.desk.key("ctrl+a", "BackSpace")
        name = "Tides of the F\xe6r\xf6er"
        wait_for(lambda: name in [each.get("title") for each in self.bookmarks()], "the name kept")
        wait_for(lambda: any(name in node["name"] for node in access.panel(slot.pid)),
                 "the name in the panel")
        # Nobody on a private network was asked.
        self.assertEqual(Site.asked, [("tides.com", "/march")])


if __name__ == "__main__":
    sys.exit(enter(unittest.main))
