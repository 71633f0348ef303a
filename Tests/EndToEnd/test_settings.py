"""The settings window: its strip and its keys; one window in a session; others who change the same
file; a window that is killed."""

import json
import random
import threading
import time
import unittest

from desks.access_tree import start_accessibility
from desks.calendars import CalendarServer
from rig import BUILD, Desk, wait_for, widget
from desks.settings_window import COMMAND, PROGRAM, SettingsTest, Window, stored, strip


class LiveStrip(SettingsTest):
    """The strip shows what the slots show: what runs as it is, what does not as a preview."""

    def pixels(self, window, name):
        x, y, width, height = window.await_name(name)["extents"]
        return self.desk.pixels((None, x, y, width, height))

    def is_preview(self, window, name):
        return "A preview" in window.await_name(name)["description"]

    def test_a_tile_is_as_its_slot_shows_it_and_says_where_none_does(self):
        self.desk.write_widgets([widget("stopwatch", {}, 1, name="Watch", span=2),
                                 widget("note", {"text": "Milk"}, 2, name="List")], announce=False)
        slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        window = Window(self.desk)
        watch, note = "Watch, place 1 of 2", "List, place 2 of 2"
        wait_for(lambda: not self.is_preview(window, watch), "the slot's own picture")
        wait_for(lambda: self.is_preview(window, note), "the preview of what does not run")
        # It stands still, as the sample of its kind does not.
        resting = self.pixels(window, watch)
        time.sleep(2.5)
        self.assertEqual(self.pixels(window, watch), resting)
        # Its first button, started where it stands on the desktop.
        _, x, y, width, height = wait_for(lambda: self.desk.windows(slot.pid), "the tile")[0]
        self.desk.click(x + width * 0.6, y + height / 2)
        running = wait_for(lambda: (now := self.pixels(window, watch)) != resting and now,
                           "it to run")
        wait_for(lambda: self.pixels(window, watch) != running, "the next second")
        # Another start, and its end.
        self.desk.start_slot(2)
        wait_for(lambda: not self.is_preview(window, note), "the other one's picture")
        self.kill(slot)
        wait_for(lambda: self.is_preview(window, watch), "the end")


    def test_what_is_set_is_seen_on_the_desktop_at_once(self):
        self.desk.write_widgets([widget("clock", {}, 1, name="Here"),
                                 widget("note", {}, 2, name="List"),
                                 widget("timer", {}, 3, name="Tea")], announce=False)
        slots = [self.desk.start_slot(slot) for slot in (1, 2, 3)]
        window = Window(self.desk)
        settings = {"Here": lambda: window.press("Analog face", "check box"),
                    "List": lambda: window.type_text("Text", "Milk", "text"),
                    "Tea": lambda: window.press("Green")}
        for place, (name, change) in enumerate(settings.items()):
            tile = wait_for(lambda: self.desk.windows(slots[place].pid), "the tile")[0]
            on_strip = f"{name}, place {place + 1} of 3"
            window.press(on_strip)
            before, shown = self.desk.pixels(tile), self.pixels(window, on_strip)
            change()
            wait_for(lambda: self.desk.pixels(tile) != before, f"the tile of {name}")
            wait_for(lambda: self.pixels(window, on_strip) != shown, f"the strip's tile of {name}")
        window.close()


class ByMouse(SettingsTest):
    def test_a_card_that_the_windows_edge_cuts_is_placed_by_a_click(self):
        window = Window(self.desk)
        # The row at the lower edge of a window that nobody has resized.
        window.click("Add Note")
        self.await_strip("Note")
        window.click("Add Reminders")
        self.await_strip("Note", "Reminders")


class ByKeys(SettingsTest):
    def open(self):
        self.desk.write_widgets(
            [widget(kind, {}, slot, name=name) for kind, slot, name in (
                ("clock", 1, "Here"), ("note", 2, "List"), ("timer", 3, "Tea"),
                ("weather", None, "Rain"), ("clock", None, "There"))], announce=False)
        window = Window(self.desk)
        window.await_keyboard()
        return window

    def round(self, window):
        """The names that Tab goes through until it comes round."""
        names = [window.focused()["name"]]
        for _ in range(40):
            self.desk.key("Tab")
            name = wait_for(lambda: (lambda now: now and now["name"] != names[-1] and now["name"])(
                window.focused()), "the keyboard to move")
            if name == names[0]:
                return names
            names.append(name)
        raise AssertionError(f"Tab does not come round: {names}")

    def test_strip_and_gallery_are_one_stop_of_tab_each(self):
        window, key = self.open(), self.desk.key
        window.focus("Here, place 1 of 3")
        names = self.round(window)
        self.assertEqual(names[1], "Move Right")
        self.assertEqual([name for name in names if ", place " in name], names[:1])
        cards = [name for name in names if name in ("Rain", "There") or name.startswith("Add ")]
        self.assertEqual(cards, ["Rain"])
        key("End")
        window.await_focus("Tea, place 3 of 3")
        key("Left")
        window.await_focus("List, place 2 of 3")
        # Where one was is where one comes back to.
        self.assertEqual(self.round(window)[0], "List, place 2 of 3")
        window.focus("Rain")
        for pressed, reached in (("Right", "There"), ("Right", "Add App Collection"),
                                 ("Right", "Add Timer"), ("Up", "There"), ("Down", "Add Timer"),
                                 ("End", "Add Screenshots"), ("Home", "Rain"),
                                 ("Up", "Search widgets")):
            key(pressed)
            if reached == "Add Screenshots":
                wait_for(lambda: (window.focused() or {}).get("name", "").startswith("Add ")
                         and window.focused()["name"] != "Add Timer", "the last card")
            else:
                window.await_focus(reached)
        window.close()

    def test_a_letter_at_a_card_begins_a_search(self):
        window = self.open()
        window.focus("Rain")
        self.desk.run("xdotool", "type", "pom")
        window.await_focus("Search widgets")
        self.desk.key("Return")
        self.await_strip("Here", "List", "Tea", "Pomodoro")
        window.close()

    def test_return_leads_into_a_form_and_escape_back_to_where_it_was(self):
        window, key = self.open(), self.desk.key
        for name in ("List, place 2 of 3", "There"):
            window.focus(name)
            key("Return")
            window.await_focus("Name", "text")
            key("Escape")
            window.await_focus(name)
        # A change from elsewhere takes the keyboard from nobody.
        self.desk.run(str(COMMAND), "widgets", "rename", "Rain", "Sun")
        window.await_name("Sun")
        self.assertTrue(window.find("There")["focused"])
        window.close()

    def test_what_was_done_is_taken_back_where_it_is_said(self):
        window = self.open()
        window.focus("List, place 2 of 3")
        self.desk.key("Delete")
        self.await_strip("Here", "Tea")
        window.press("Undo", "push button")
        self.await_strip("Here", "List", "Tea")
        # An offer is of the last thing that was done.
        window.focus("List, place 2 of 3")
        self.desk.key("Delete")
        self.await_strip("Here", "Tea")
        window.await_name("Undo", "push button")
        window.focus("Tea, place 2 of 2")
        self.desk.key("ctrl+Left")
        self.await_strip("Tea", "Here")
        wait_for(lambda: window.tree() and not window.find("Undo", "push button"), "no offer")
        window.close()


class Modules(SettingsTest):
    """What a window of a program outside of the bundles loads, and draws."""

    def test_it_has_its_icon_and_asks_the_network(self):
        self.desk.write_widgets([widget("weather", {}, None, name="Rain")], announce=False)
        window = Window(self.desk)
        frame = max(self.desk.windows(window.process.pid), key=lambda each: each[3] * each[4])[0]
        icon = lambda: self.desk.run("xprop", "-id", frame, "_NET_WM_ICON")
        wait_for(lambda: "32 x 32" in icon() and "128 x 128" in icon(), "the icon")
        window.press("Rain")
        window.press("City")
        window.await_focus("City", "text")
        self.desk.run("xdotool", "type", "Paris")
        wait_for(lambda: any("Is there a network?" in entry["name"] for entry in window.tree()),
                 "the answer")
        self.assertNotIn("load the module", (self.desk.home / "settings.log").read_text())

    def test_it_offers_the_calendars_of_the_desktop(self):
        CalendarServer(self.desk)
        self.desk.write_widgets([widget("calendar", {}, None, name="Days"),
                                 widget("reminders", {}, None, name="Tasks")], announce=False)
        window = Window(self.desk)
        window.press("Days")
        wait_for(lambda: any(entry["name"].strip() == "Personal" for entry in window.tree()),
                 "the calendar")
        window.press("All Widgets")
        window.press("Tasks")
        window.press("List", "push button")
        window.await_name("Personal, On This Computer", "list item")
        self.desk.key("Down", "Return")
        wait_for(lambda: self.settings("Tasks").get("listID") == "system-task-list", "the list")


class ThisComputer(SettingsTest):
    def test_the_switch_has_the_widgets_start_with_the_session_by_the_command(self):
        window = Window(self.desk)
        window.press("This Computer", "radio button")
        switch = "Start the widgets with the session"
        status = lambda: json.loads(self.desk.run(str(COMMAND), "autostart", "status", "--json"))
        wait_for(lambda: (window.find(switch) or {}).get("enabled"), "the switch")
        window.press(switch, "check box")
        wait_for(lambda: status()["isOn"], "it on")
        entry, = (self.desk.home / "config" / "autostart").glob("*.desktop")
        self.assertIn(f'Exec="{COMMAND}" start', entry.read_text())
        window.press(switch, "check box")
        wait_for(lambda: not status()["isOn"], "it off")
        window.close()


class OneWindow(SettingsTest):
    def test_the_desktop_entry_starts_it_and_raises_it(self):
        window, pid = self.started_by_the_entry()
        window.press("Add Clock")
        self.await_strip("Clock")
        self.launch_entry()
        window.await_keyboard()
        self.assertEqual(self.owner(), pid)

    def test_a_slot_has_the_bus_start_it_and_the_next_one_raises_it(self):
        self.install_service()
        clock = widget("clock", {}, 1, name="Here")
        note = widget("note", {"text": "Milk"}, 2, name="List")
        self.desk.write_widgets([clock, note], announce=False)
        slot = self.desk.start_slot(1)
        self.desk.wait_for_name(1)
        tile = wait_for(lambda: self.desk.windows(slot.pid), "the tile")
        self.desk.toggle(1)
        wait_for(lambda: len(self.desk.windows(slot.pid)) > len(tile), "the panel")
        slot_panel = Panel(self.desk, slot)
        slot_panel.press_edit()
        window, pid = self.await_owner_of_the_name()
        window.await_name("All Widgets")
        window.await_name("Here, place 1 of 2")
        self.assertEqual(self.heading(window), "Here")
        self.desk.run(str(COMMAND), "settings", "List")
        wait_for(lambda: self.heading(window) == "List", "the other widget")
        self.assertEqual(self.owner(), pid)
        # A second start hands over and ends.
        second = self.desk.spawn([str(PROGRAM), f"--edit={clock['id']}"])
        self.assertEqual(second.wait(20), 0)
        wait_for(lambda: self.heading(window) == "Here", "the first widget again")

    def test_where_the_bus_knows_no_display_the_command_opens_the_window_itself(self):
        self.install_service(knows_display=False)
        self.desk.write_widgets([widget("clock", {}, 1, name="Here")], announce=False)
        self.desk.run(str(COMMAND), "settings", "Here")
        said = self.desk.home / "bus.log"
        wait_for(lambda: said.exists() and "There is no display" in said.read_text(), "the reason")
        window, _ = self.await_owner_of_the_name()
        wait_for(lambda: self.heading(window) == "Here", "the widget")

    def heading(self, window):
        names = [entry["name"] for entry in window.tree()]
        return names[names.index("All Widgets") + 1] if "All Widgets" in names else None


class Panel:
    """The open panel of a slot."""

    def __init__(self, desk, process):
        self.window = Window.__new__(Window)
        self.window.desk, self.window.process = desk, process

    def press_edit(self):
        edit = wait_for(lambda: next((entry["name"] for entry in self.window.tree()
                                      if entry["name"].startswith("Edit")), None), "Edit")
        self.window.press(edit)


class Together(SettingsTest):
    def test_what_the_command_does_shows_at_once_and_undo_leaves_it(self):
        self.desk.write_widgets([widget("note", {"text": "a"}, 1, name="List")], announce=False)
        window = Window(self.desk)
        window.await_name("List, place 1 of 1")
        self.desk.run(str(COMMAND), "widgets", "rename", "List", "Paper")
        window.await_name("Paper, place 1 of 1")
        window.press("Add Clock")
        self.await_strip("Paper", "Clock")
        self.desk.run(str(COMMAND), "widgets", "rename", "Clock", "Home")
        window.await_name("Home, place 2 of 2")
        window.press("Undo Add Clock")
        wait_for(lambda: any("was changed elsewhere" in entry["name"] for entry in window.tree()),
                 "the remark")
        self.assertEqual(strip(self.desk), ["Paper", "Home"])

    def test_a_window_killed_in_the_middle_of_a_drag_leaves_whole_files(self):
        self.desk.write_widgets([widget("clock", {}, slot, name=f"W{slot}") for slot in (1, 2, 3)],
                                announce=False)
        window = Window(self.desk)
        before = (self.desk.data / "widgets.json").read_text()
        x, y = window.centre("W1, place 1 of 3")
        run = self.desk.run
        run("xdotool", "mousemove", str(int(x)), str(int(y)), "mousedown", "1")
        for step in range(1, 6):
            run("xdotool", "mousemove", str(int(x + 25 * step)), str(int(y)))
        self.kill(window.process)
        run("xdotool", "mouseup", "1")
        self.assertEqual((self.desk.data / "widgets.json").read_text(), before)
        self.assertEqual([path.name for path in self.desk.data.iterdir()
                          if path.name.startswith("widgets.json")], ["widgets.json"])
        again = Window(self.desk)
        again.await_name("W1, place 1 of 3")

    def test_forty_edits_by_two_windows_and_the_command_lose_nothing(self):
        self.desk.write_widgets([widget("note", {}, None, name="Note A"),
                                 widget("note", {}, None, name="Note B"),
                                 widget("note", {}, None, name="Note C"),
                                 widget("clock", {}, None, name="Shared")], announce=False)
        first = Window(self.desk)
        # Another session of the same user.
        second_desk = Desk(screens=("1280x900",))
        self.addCleanup(second_desk.close)
        second_desk.env["TAVRIN_APP_SUPPORT_DIR"] = str(self.desk.data)
        second_desk.env["TAVRIN_BUNDLES"] = str(BUILD / "none")
        start_accessibility(second_desk)
        second = Window(second_desk)
        seed = random.randrange(1 << 32)
        print(f"seed {seed}")
        self.said, self.made, self.edits = {}, [], 0
        failures = []

        def work(function, *arguments):
            try:
                function(*arguments)
            except BaseException as error:
                failures.append(error)

        workers = [threading.Thread(target=work, args=arguments) for arguments in (
            (self.edit_by_window, random.Random(seed), first, "Note A", "Show seconds",
             "showsSeconds"),
            (self.edit_by_window, random.Random(seed + 1), second, "Note B", "Analog face",
             "isAnalog"),
            (self.edit_by_command, random.Random(seed + 2)))]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        self.assertEqual(failures, [])
        self.assertGreaterEqual(self.edits, 40)
        names = [entry["name"] for entry in stored(self.desk)]
        self.assertEqual(len(set(names)), len(names))
        self.assertEqual(len(names), 4 + len(self.made))
        self.assertEqual({key: self.settings(key[0]).get(key[1]) for key in self.said}, self.said)
        self.assertEqual(strip(self.desk), [], "each was taken off again")

    def edit_by_window(self, dice, window, note, title, key):
        for number in range(9):
            choice = dice.choice(("add", "type", "switch"))
            if choice == "add":
                kind = dice.choice(("Clock", "Weather", "Timer", "Water"))
                window.press(f"Add {kind}")
                self.made.append(kind)
                window.press("Take Off the Strip")
                wait_for(lambda: (button := window.find("Take Off the Strip"))
                         and not button["enabled"], "it taken off")
            elif choice == "type":
                window.press(note)
                window.type_text("Text", f"{note} {number}", "text")
                self.said[note, "text"] = f"{note} {number}"
            else:
                window.press("Shared")
                window.press(title, "check box")
                self.said["Shared", key] = not self.said.get(("Shared", key), False)
            self.edits += 2 if choice == "add" else 1
            if choice != "add":
                window.press("All Widgets")

    def edit_by_command(self, dice):
        for number in range(22):
            choice = dice.choice(("add", "colour", "zone"))
            if choice == "add":
                self.desk.run(str(COMMAND), "widgets", "add", "fans", f"C{number}")
                self.made.append(f"C{number}")
                self.desk.run(str(COMMAND), "widgets", "release", f"C{number}")
            elif choice == "colour":
                colour = f"#{dice.randrange(1 << 24):06X}"
                self.desk.run(str(COMMAND), "widgets", "set", "Note C", f"colorHex={colour}")
                self.said["Note C", "colorHex"] = colour
            else:
                zone = dice.choice(("Asia/Tokyo", "Europe/Paris", "America/Lima"))
                self.desk.run(str(COMMAND), "widgets", "set", "Shared", f"timeZoneID={zone}")
                self.said["Shared", "timeZoneID"] = zone
            self.edits += 2 if choice == "add" else 1


if __name__ == "__main__":
    unittest.main()
