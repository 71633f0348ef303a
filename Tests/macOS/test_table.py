"""docs/macos.md against the tree: every interface has a row, every row its files, and the checklist
its forty points."""

import pathlib
import re
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ADAPTERS = "TavrinPlatform/macOS/"
POINTS = 40


def interfaces(root):
    """The classes of the interface headers that somebody has to fill in."""
    for header in sorted(root.glob("TavrinPlatform/*.h")):
        for found in re.finditer(r"^class (\w+)[^;{]*\{(.*?)^\};", header.read_text(), re.M | re.S):
            if re.search(r"\)[^;]*= 0;", found[2]):
                yield found[1]


def place(root, name):
    return root / (name if name.startswith("Tavrin") or name.startswith("Packaging") else ADAPTERS + name)


def rows(text):
    """Interfaces, files, lines and points of each row of the table of adapters."""
    for line in text.split("\n## The adapters", 1)[1].split("\n## ", 1)[0].splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) == 6 and cells[2].isdigit():
            yield (re.findall(r"\w+", cells[0]), re.findall(r"`([^`]+)`", cells[1]), int(cells[2]),
                   [int(number) for number in re.findall(r"\d+", cells[5])])


def faults(root):
    text = (root / "docs/macos.md").read_text()
    table = list(rows(text))
    named = {name for names, *_ in table for name in names}
    for interface in interfaces(root):
        if interface not in named:
            yield f"{interface} has no row"
    shown = set()
    for names, files, lines, points in table:
        row = ", ".join(names)
        shown.update(place(root, name) for name in files)
        missing = [name for name in files if not place(root, name).is_file()]
        for name in missing:
            yield f"{row}: there is no {name}"
        if not files:
            yield f"{row}: no adapter"
        if not missing:
            counted = sum(len(place(root, name).read_text().splitlines()) for name in files)
            if abs(counted - lines) > max(10, counted // 10):
                yield f"{row}: {counted} lines, not {lines}"
        if not points or not all(1 <= point <= POINTS for point in points):
            yield f"{row}: points {points}"
    for source in sorted((root / ADAPTERS).rglob("*")):
        if source.suffix in (".mm", ".cpp") and source not in shown:
            yield f"{source.relative_to(root)} stands in no row"
        if source.suffix in (".mm", ".cpp", ".h") and re.search(r"\bUnavailable", source.read_text()):
            yield f"{source.relative_to(root)}: something is unavailable"
    checklist = re.findall(r"^(\d+)\. (.+)$", text.split("\n## Checklist", 1)[-1], re.M)
    if [int(number) for number, _ in checklist] != list(range(1, POINTS + 1)):
        yield f"the checklist has {len(checklist)} points"
    for number, words in checklist:
        files = re.findall(r"`([\w/.+-]+\.\w+|[\w/]+/)`", words.rsplit(". ", 1)[-1])
        if not files:
            yield f"point {number} says not where to look"
        for name in files:
            if not place(root, name).exists():
                yield f"point {number}: there is no {name}"


# Where the rigs of the table's three columns stand.
COLUMNS = ("Tests/Linux", "Tests/Platform", "Tests/macOS")
# Suites that are called otherwise than their interfaces.
SUITES = {"DistributedNotificationCenter": "NotificationCenter", "FocusStatusProvider": "FocusStatus",
          "UserNotificationCenter": "UserNotifications"}


def contract_faults(root):
    """What the table of contracts says of suites and rigs, and which interface it leaves out."""
    text = (root / "docs/macos.md").read_text().split("\n## The adapters", 1)[0]
    said = {}
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) == 4 and re.fullmatch(r"[A-Z]\w+", cells[0]):
            said[cells[0]] = [cell.startswith("yes") for cell in cells[1:]]
    suites = {path.name[:-len("Contract.h")] for path in root.glob("Tests/Platform/*Contract.h")}
    rigs = [set() for _ in COLUMNS]
    for column, folder in zip(rigs, COLUMNS):
        for source in (root / folder).rglob("*Test*.*"):
            column.update(re.findall(r"INSTANTIATE_TYPED_TEST_SUITE_P\(\w+, (\w+)Contract,",
                                     source.read_text(errors="replace")))
    for name, cells in said.items():
        suite = SUITES.get(name, name)
        if suite not in suites:
            yield f"{name}: there is no Tests/Platform/{suite}Contract.h"
        for cell, column, folder in zip(cells, rigs, COLUMNS):
            if cell != (suite in column):
                yield f"{name}: {folder} has {'a' if suite in column else 'no'} rig"
    for suite in suites - {SUITES.get(name, name) for name in said}:
        yield f"{suite}Contract.h has no row"
    left_out = text.split("Without a contract suite:", 1)[-1]
    for interface in interfaces(root):
        if interface not in said and not re.search(rf"\b{interface}\b", left_out):
            yield f"{interface}: nothing is said of a contract"


class TheTable(unittest.TestCase):
    maxDiff = None

    def test_is_true(self):
        self.assertGreater(len(set(interfaces(ROOT))), 35)
        self.assertEqual("", "\n".join(faults(ROOT)))
        self.assertEqual("", "\n".join(contract_faults(ROOT)))


class TheRules(unittest.TestCase):
    ROW = "| Clock | `Clock.mm` | 1 | yes | C | 1 |"
    LIST = "\n".join(f"{n}. Look. `Clock.mm`" for n in range(1, POINTS + 1))

    def faults(self, row=ROW, checklist=LIST, source="int clock;\n", more=""):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in {
                    "TavrinPlatform/Clock.h": "class Clock {\n  virtual int now() const = 0;\n};\n"
                                              "class Plain {\n  int now();\n};\n" + more,
                    ADAPTERS + "Clock.mm": source,
                    "docs/macos.md": f"\n## The adapters\n\n{row}\n\n## Checklist\n\n{checklist}\n"}.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text)
            return list(faults(root))

    def test_each_fault_is_told(self):
        self.assertEqual([], self.faults())
        for told, changed in [
                ("Timer has no row", {"more": "class Timer {\n  virtual ~Timer() = default;\n"
                                              "  virtual void a() = 0;\n};\n"}),
                ("Clock: there is no Gone.mm", {"row": self.ROW.replace("1 |", "1 |").replace(
                    "`Clock.mm`", "`Clock.mm`, `Gone.mm`")}),
                ("Clock: 90 lines, not 1", {"source": "int a;\n" * 90}),
                ("Clock: points [41]", {"row": self.ROW.replace("| 1 |", "| 41 |").replace("| 41 | yes", "| 1 | yes")}),
                (ADAPTERS + "Clock.mm: something is unavailable", {"source": "UnavailableClock c;\n"}),
                ("the checklist has 39 points", {"checklist": self.LIST.rsplit("\n", 1)[0]}),
                ("point 40 says not where to look", {"checklist": self.LIST[:-len(" `Clock.mm`")]}),
                ("point 40: there is no Gone.mm",
                 {"checklist": self.LIST[:-len("`Clock.mm`")] + "`Gone.mm`"})]:
            with self.subTest(told=told):
                self.assertEqual([told], self.faults(**changed))


if __name__ == "__main__":
    unittest.main()
