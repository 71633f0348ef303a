"""The Dock's commands on real property lists, checked with independent readers of the format."""

import copy
import datetime
import json
import math
import os
import pathlib
import plistlib
import random
import re
import shutil
import subprocess
import tempfile
import unittest
from urllib.parse import quote, unquote, urlsplit

TAVRIN = pathlib.Path(os.environ["TAVRIN_BUILD"]).resolve() / "bin" / "tavrin"
FORMS = (plistlib.FMT_XML, plistlib.FMT_BINARY)


def app(number, **more):
    return {"GUID": number, "tile-type": "file-tile", "tile-data": {
        "file-data": {"_CFURLString": f"file:///Applications/App{number}.app/",
                      "_CFURLStringType": 15},
        "file-label": f"App{number}", "bundle-identifier": f"com.example.app{number}", **more}}


def strange_values(chance):
    """Values that no model of the Dock knows."""
    return {
        "date": datetime.datetime(chance.randint(1900, 2200), chance.randint(1, 12), 3, 4, 5, 6),
        "data": chance.randbytes(chance.randint(0, 300)),
        "real": chance.choice([0.1, -0.0, 1e300, 5e-324, chance.random(), math.inf]),
        "huge": chance.choice([2**64 - 1, 2**63, -2**63, 2**63 - 1, 2**53 + 1]),
        "text": chance.choice(["日本 😀", "e\u0301", "<&>]]>", "", " \n\t ", "\u2028"]),
        "deep": {"a": [{"b": [[], {}, [True, False]]}]},
        "": "an empty key", "schlüssel 🔑": 1,
    }


def corpus():
    chance = random.Random(20261114)
    yield "empty", {}
    yield "one section", {"persistent-others": []}
    for seed in range(12):
        root = {"tilesize": 48.5, "autohide": True, **strange_values(chance)}
        root["persistent-apps"] = [
            app(i, **strange_values(chance)) for i in range(500 if seed == 0 else 5)]
        root["persistent-apps"][1:1] = [
            {"tile-type": kind, "tile-data": {}}
            for kind in ("spacer-tile", "small-spacer-tile", "flex-spacer-tile")]
        root["persistent-others"] = [
            {"GUID": 1, "tile-type": "directory-tile", "other": strange_values(chance),
             "tile-data": {"file-data": {"_CFURLString": "/Users/ä b/Downloads",
                                         "_CFURLStringType": 0, "more": 1},
                           "arrangement": 2, "showas": 3, **strange_values(chance)}},
            {"tile-type": "file-tile", "tile-data": {
                "file-data": {"_CFURLString": "file:///tmp/a%20b.txt", "_CFURLStringType": 15}}},
            {"tile-type": "url-tile", "tile-data": {
                "url": {"_CFURLString": "https://example.org/?q=ä&x=%20", "_CFURLStringType": 15},
                "label": "Example", **strange_values(chance)}}]
        yield f"seed {seed}", root


def path_of(address):
    text = unquote(urlsplit(address).path) if address.startswith("file://") else address
    return text.rstrip("/") or "/"


def written(tile, in_apps):
    """What a tile becomes when it is written back, by the rules and not by the program."""
    tile = copy.deepcopy(tile)
    tile.pop("GUID", None)
    kind, data = tile["tile-type"], tile["tile-data"]
    if kind == "url-tile":
        data["url"] = {"_CFURLString": data["url"]["_CFURLString"], "_CFURLStringType": 15}
        data.setdefault("label", data["url"]["_CFURLString"])
    elif kind in ("file-tile", "directory-tile"):
        path = path_of(data["file-data"]["_CFURLString"])
        slash = "/" if kind == "directory-tile" or in_apps else ""
        data["file-data"] = {"_CFURLStringType": 15, "_CFURLString":
                             "file://" + quote(path, safe="-._~!$&'()*+,=:@/") + slash}
        data.setdefault("file-label", path.rsplit("/", 1)[-1])
    if kind == "directory-tile":
        for key, value in (("file-type", 2), ("arrangement", 1), ("displayas", 0), ("showas", 0)):
            data.setdefault(key, value)
    return tile


class DockTest(unittest.TestCase):
    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="tavrin-dock-"))
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.dock = self.home / "Library" / "Preferences" / "com.apple.dock.plist"
        self.dock.parent.mkdir(parents=True)
        self.data = self.home / "data"
        self.env = {"HOME": str(self.home), "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
                    "TZ": "Europe/Berlin", "TAVRIN_APP_SUPPORT_DIR": str(self.data),
                    "DBUS_SESSION_BUS_ADDRESS": "disabled:"}

    def tavrin(self, *words, status=0, wrapper=()):
        # Leaks cannot be looked for in a program that is traced.
        env = {**self.env, "LSAN_OPTIONS": "detect_leaks=0"} if wrapper else self.env
        result = subprocess.run([*wrapper, str(TAVRIN), *words], env=env, text=True,
                                capture_output=True, timeout=60)
        if status is not None:
            self.assertEqual(result.returncode, status, result.stderr)
        return result

    def put(self, root, form=plistlib.FMT_XML):
        self.dock.write_bytes(plistlib.dumps(root, fmt=form))

    def labels(self):
        root = plistlib.loads(self.dock.read_bytes())
        return [tile["tile-data"].get("file-label") for tile in root["persistent-apps"]]


class Corpus(DockTest):
    def test_nothing_changes_but_what_the_rules_say(self):
        for name, root in corpus():
            for form in FORMS:
                with self.subTest(name=name, form=form):
                    self.put(root, form)
                    before = self.dock.read_bytes()
                    self.tavrin("dock", "remove", "--spacers", "--section", "others",
                                "--file", str(self.dock))
                    self.assertEqual(self.dock.read_bytes(), before, "an edit without effect")
                    self.tavrin("dock", "spacer", "--section", "others", "--file", str(self.dock))
                    expected = dict(root)
                    for key, in_apps in (("persistent-apps", True), ("persistent-others", False)):
                        expected[key] = [written(t, in_apps) for t in root.get(key, [])]
                    expected["persistent-others"].append(
                        {"tile-type": "spacer-tile", "tile-data": {}})
                    after = plistlib.loads(self.dock.read_bytes())
                    self.assertEqual(repr_of(after), repr_of(expected))
                    self.assertTrue(self.dock.read_bytes().startswith(b"<?xml"))
                    check = subprocess.run(["plistutil", "-i", str(self.dock), "-o", "/dev/null"],
                                           capture_output=True)
                    self.assertEqual(check.returncode, 0, check.stderr)

    def test_layouts_survive_a_profile_and_a_backup(self):
        root = dict(corpus())["seed 3"]
        self.put(root, plistlib.FMT_BINARY)
        self.tavrin("profiles", "create", "All")
        self.tavrin("dock", "remove", "--all", "--no-restart")
        self.tavrin("profiles", "switch", "All", "--no-restart")
        after = plistlib.loads(self.dock.read_bytes())
        expected = dict(root)
        for key, in_apps in (("persistent-apps", True), ("persistent-others", False)):
            expected[key] = [written(t, in_apps) for t in root[key]]
        self.assertEqual(repr_of(after), repr_of(expected))

    def test_every_wrong_node_is_refused_and_nothing_written(self):
        whole = {"persistent-apps": [app(1)], "persistent-others": [
            {"tile-type": "url-tile", "tile-data": {"url": {"_CFURLString": "x:y"}}}]}
        refused = 0
        for place in places(whole):
            for wrong in (True, 7, 1.5, "wrong", b"d", [], ["x"], {"a": 1}):
                broken = copy.deepcopy(whole)
                at = broken
                for step in place[:-1]:
                    at = at[step]
                at[place[-1]] = wrong
                self.put(broken, FORMS[refused % 2])
                before = self.dock.read_bytes()
                result = self.tavrin("dock", "spacer", "--no-restart", status=None)
                if result.returncode == 0:
                    plistlib.loads(self.dock.read_bytes())
                    continue
                refused += 1
                self.assertIn(result.returncode, (12, 14), result.stderr)
                self.assertRegex(result.stderr,
                                 "^tavrin: Failed to (decode dock plist at|handle dock item) ")
                self.assertEqual(self.dock.read_bytes(), before)
        self.assertGreater(refused, 50)

    def test_five_hundred_tiles_come_at_once(self):
        self.put({"persistent-apps": [app(i) for i in range(500)]}, plistlib.FMT_BINARY)
        items = json.loads(self.tavrin("dock", "show", "--json").stdout)
        self.assertEqual(len(items), 500)


def places(node, path=()):
    entries = node.items() if isinstance(node, dict) else enumerate(node)
    for key, value in list(entries):
        yield (*path, key)
        if isinstance(value, (dict, list)):
            yield from places(value, (*path, key))


def repr_of(node):
    """Tells 1 from True and -0.0 from 0.0, which == does not; keys in order."""
    if isinstance(node, dict):
        return [(key, repr_of(node[key])) for key in sorted(node)]
    if isinstance(node, list):
        return [repr_of(one) for one in node]
    return repr(node)


class Killed(DockTest):
    """Ends the program before each call that changes the disk, and looks at what is left."""

    CALLS = ("rename", "unlink", "unlinkat", "mkdir", "fsync", "write", "openat")

    def each_kill(self, prepare, words):
        kills = 0
        for call in self.CALLS:
            number = 1
            while True:
                prepare()
                strace = ("strace", "-f", "-o", "/dev/null", "-e", f"trace={call}", "-e",
                          f"inject={call}:signal=KILL:when={number}")
                self.killed = self.tavrin(*words, status=None, wrapper=strace)
                if self.killed.returncode not in (137, -9):
                    break
                kills += 1
                yield call, number
                # Opening files is mostly the loader's work.
                number += 1 if call != "openat" else 5
        self.assertGreater(kills, 8)

    def start(self, backups=3):
        shutil.rmtree(self.data, ignore_errors=True)
        self.data.mkdir()
        self.put({"persistent-apps": [app(1), app(2)], "tilesize": 3.5})
        self.data.joinpath("profiles.json").write_text(json.dumps({"version": 2, "profiles": [
            {"id": "11111111-1111-1111-1111-111111111111", "name": "Work", "color": "blue",
             "items": [{"app": {"_0": {"path": "/Applications/App9.app"}}}], "others": []}]}))
        folder = self.data / "backups"
        folder.mkdir()
        for i in range(backups):
            folder.joinpath(f"dock-2026-01-01T00-00-{i:02}.000Z.plist").write_bytes(
                plistlib.dumps({"persistent-apps": [app(100 + i)], "persistent-others": []}))

    def assert_sound(self, words, before, outcomes):
        now = self.labels()
        self.assertIn(now, outcomes)
        self.assertEqual(plistlib.loads(self.dock.read_bytes()).get("tilesize"), 3.5)
        self.assertEqual(json.loads(self.data.joinpath("profiles.json").read_text())["version"], 2)
        if now != before:
            self.assertIn("; `tavrin dock undo` brings it back\n", self.killed.stderr)
            self.tavrin("dock", "undo", "--no-restart")
            self.assertEqual(self.labels(), before, words)

    def test_a_switch(self):
        words = ("profiles", "switch", "Work", "--no-restart")
        for step in self.each_kill(self.start, words):
            with self.subTest(step=step):
                self.assert_sound(words, ["App1", "App2"], (["App1", "App2"], ["App9.app"]))

    def test_an_undo(self):
        words = ("dock", "undo", "--no-restart")
        for step in self.each_kill(self.start, words):
            with self.subTest(step=step):
                self.assert_sound(words, ["App1", "App2"], (["App1", "App2"], ["App102"]))

    def test_a_prune(self):
        words = ("dock", "remove", "App1", "--no-restart")
        for step in self.each_kill(lambda: self.start(backups=25), words):
            with self.subTest(step=step):
                self.assert_sound(words, ["App1", "App2"], (["App1", "App2"], ["App2"]))

    def start_workspace(self):
        self.start()
        self.data.joinpath("widgets.json").write_text('{"version":1,"widgets":[]}')
        self.tavrin("backups", "create")
        self.data.joinpath("profiles.json").write_text('{"version":2,"profiles":[]}')
        self.data.joinpath("widgets.json").write_text('{"version":1,"widgets":[], "x":1}')

    def test_a_workspace_restore(self):
        before = None

        def prepare():
            nonlocal before
            self.start_workspace()
            before = {name: self.data.joinpath(name).read_bytes()
                      for name in ("profiles.json", "widgets.json")}

        for step in self.each_kill(prepare, ("backups", "restore", "latest")):
            with self.subTest(step=step):
                now = {name: self.data.joinpath(name).read_bytes() for name in before}
                for text in now.values():
                    json.loads(text)
                if now != before:
                    named = re.search("`tavrin (backups restore [^`]*)` brings", self.killed.stderr)
                    self.assertTrue(named, self.killed.stderr)
                    self.tavrin(*named.group(1).split())
                    self.assertEqual({name: self.data.joinpath(name).read_bytes()
                                      for name in before}, before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
