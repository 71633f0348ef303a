"""Reads the includes of the tree, and what else of its rules the sources show."""

import pathlib
import tempfile
import unittest

import house

ROOT = pathlib.Path(__file__).resolve().parents[2]


class TheTree(unittest.TestCase):
    maxDiff = None

    def test_keeps_the_rules(self):
        self.assertGreater(sum(1 for _ in house.sources(ROOT)), 500)
        self.assertEqual("", "\n".join(house.faults(ROOT)))

    def test_a_kinds_rooms_have_one_name_on_all_floors(self):
        self.assertEqual("", "\n".join(house.room_faults(ROOT)))


class TheRules(unittest.TestCase):
    """Each fault is found in a tree that has nothing else wrong."""

    def faults(self, files):
        with tempfile.TemporaryDirectory() as root:
            for name, text in files.items():
                path = pathlib.Path(root, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return house.faults(root)

    def include(self, source, target):
        return self.faults({source: f'#include "{target}"\n'})

    def test_arrows(self):
        for source, target in [
            ("TavrinCore/a.h", "TavrinPlatform/Clock.h"),
            ("TavrinPlatform/Linux/Dock/a.cpp", "TavrinStorage/b.h"),
            ("TavrinSlot/a.cpp", "TavrinHost/b.h"),
            ("TavrinSlot/main.cpp", "TavrinPlatform/Linux/LinuxPlatform.h"),
            ("TavrinStorage/a.cpp", "TavrinPlatform/POSIX/Spawn.h"),
            ("TavrinPlatform/Web/a.cpp", "TavrinPlatform/Qt/QtRunLoop.h"),
            ("TavrinPlatform/POSIX/a.cpp", "TavrinPlatform/Qt/QtRunLoop.h"),
            ("TavrinPlatform/Qt/a.cpp", "TavrinPlatform/Linux/Base/Bus.h"),
            ("TavrinPlatform/macOS/a.mm", "TavrinPlatform/Linux/Base/Bus.h"),
            ("TavrinWidgetsUI/Emoji/a.cpp", "TavrinWidgetsUI/Files/b.h"),
            ("TavrinWidgetsUI/Kit/Tiles/a.cpp", "TavrinWidgetsUI/Files/b.h"),
            ("TavrinCore/a.cpp", "Tests/Support/b.h"),
        ]:
            with self.subTest(source=source, target=target):
                self.assertEqual(1, len(self.include(source, target)))
        for source, target in [
            ("TavrinSlot/Controllers/a.cpp", "TavrinPlatform/Files/AtomicFile.h"),
            ("TavrinHost/main.cpp", "TavrinPlatform/CommandPlatform.h"),
            ("TavrinPlatform/Linux/Files/a.cpp", "TavrinPlatform/POSIX/Spawn.h"),
            ("TavrinPlatform/Linux/Files/a.cpp", "TavrinPlatform/Linux/Base/Bus.h"),
            ("TavrinWidgetsUI/Emoji/a.cpp", "TavrinWidgetsUI/Kit/Tiles/b.h"),
            ("Tests/Linux/a.cpp", "TavrinPlatform/Linux/Base/Bus.h"),
        ]:
            with self.subTest(source=source, target=target):
                self.assertEqual([], self.include(source, target))

    def test_the_toolkit_stays_above_the_core(self):
        self.assertEqual(2, len(self.faults({
            "TavrinCore/a.h": "#include <QString>\n",
            "TavrinPlatform/POSIX/a.h": "#include <QtGlobal>\n",
            "TavrinPlatform/Qt/a.h": "#include <QString>\n"})))

    def test_circles_of_rooms(self):
        at = "TavrinPlatform/Linux/"
        files = {at + "Base/a.h": f'#include "{at}Tile/b.h"\n',
                 at + "Tile/b.h": f'#include "{at}Files/c.h"\n',
                 at + "Files/c.h": ""}
        self.assertEqual([], self.faults(files))
        files[at + "Files/c.h"] = f'#include "{at}Base/a.h"\n'
        way = "Linux/Base -> Linux/Tile -> Linux/Files -> Linux/Base"
        self.assertEqual([f"TavrinPlatform: a circle of rooms: {way}"], self.faults(files))

    def test_circles_are_found_on_every_floor_and_at_every_depth(self):
        for floor, one, other in [
            ("TavrinCore", "Base", "Text"),
            ("TavrinStorage", "Dock", ""),
            ("TavrinWidgetsUI", "Kit/Views", "Kit/Panels"),
            ("TavrinWidgetsUI", "Files/Rolls", "Files"),
            ("TavrinHost", "Dock", "Widgets"),
            ("TavrinSettings", "Form", "Window"),
        ]:
            first, second = (floor + "/" + (room + "/" if room else "") for room in (one, other))
            files = {first + "a.h": f'#include "{second}b.h"\n', second + "b.h": ""}
            with self.subTest(floor=floor, one=one, other=other):
                self.assertEqual([], self.faults(files))
                files[second + "c.h"] = f'#include "{first}d.h"\n'
                self.assertEqual(1, len(self.faults(files)))
        # By parts of two rooms, no two of which see each other.
        self.assertEqual(["TavrinCore: a circle of rooms: Dock -> Kinds -> Dock"], self.faults({
            "TavrinCore/Dock/a.h": '#include "TavrinCore/Kinds/Files/b.h"\n',
            "TavrinCore/Kinds/Note/c.h": '#include "TavrinCore/Dock/d.h"\n'}))

    def test_what_one_system_has(self):
        for line in ["#ifdef __linux__", "#if defined(Q_OS_MACOS)", "# elif defined __APPLE__",
                     "#if __has_include(<xlocale.h>)",
                     'auto a = "/proc/self/exe";', 'auto a = "/usr/bin:/bin";',
                     'auto a = "PATH=/usr/bin";', 'auto a = "~/x:/opt/y";',
                     'auto a = "libcrypto.so.3";']:
            with self.subTest(line=line):
                self.assertEqual(1, len(self.faults({"TavrinStorage/a.cpp": line + "\n"})))
                self.assertEqual([], self.faults({"TavrinPlatform/Files/a.cpp": line + "\n"}))
                self.assertEqual([], self.faults({"TavrinStorage/a.cpp": "// " + line + "\n"}))
        self.assertEqual([], self.faults({"TavrinCore/a.cpp": 'auto a = "/system/usr";\n'}))
        script = 'auto a = R"sh(\ntrue\n[ -x /usr/bin/true ]\n)sh";\n'
        self.assertEqual(1, len(self.faults({"TavrinStorage/a.cpp": script})))

    def test_functions_fit_a_screen(self):
        def faults(lines, head="int a(int b)"):
            body = "  b();  // {\n" * lines
            return self.faults({"Tools/a.cpp": f"namespace c {{\n{head} {{\n{body}}}\n}}\n"})
        self.assertEqual([], faults(60))
        self.assertEqual(["Tools/a.cpp: a has 61 lines, at most 60"], faults(61))
        self.assertEqual(1, len(faults(61, "D::D(int b)\n    : c_(b)")))
        self.assertEqual([], faults(61, "struct A"))
        self.assertEqual([], faults(61, "const std::vector<Service>& services()"))

    def test_sizes(self):
        self.assertEqual([], self.faults({"Tools/a.cpp": "\n" * 450}))
        self.assertEqual(1, len(self.faults({"Tools/a.cpp": "\n" * 451})))
        names = [f"Tests/Kit/{i}.cpp" for i in range(41)]
        self.assertEqual([], self.faults(dict.fromkeys(names[1:], "")))
        self.assertEqual(1, len(self.faults(dict.fromkeys(names, ""))))


if __name__ == "__main__":
    unittest.main()
