"""The rules of docs/architecture.md that can be read off the sources, and who breaks them."""

import collections
import pathlib
import re

MOST_LINES = 450
MOST_FILES = 40
# Lines between a function's braces; it is to fit a screen.
MOST_FUNCTION_LINES = 60
# Functions that are tables: one entry after the other, and nothing to be told apart.
TABLES = {"gnuNames", "serviceTiles", "services"}

# Lower floors first; what stands on one floor stands side by side.
FLOORS = [
    ["TavrinCore"],
    ["TavrinPlatform"],
    ["TavrinStorage"],
    ["TavrinWidgetsUI"],
    ["TavrinSlot", "TavrinHost"],
    ["TavrinCommand", "TavrinSettings"],
]
PRODUCT = [folder for floor in FLOORS for folder in floor]
ADAPTERS = ["Linux", "macOS", "Qt", "POSIX"]
# What an adapter's folder may take from the others.
BELOW = {"Linux": ["Qt", "POSIX"], "macOS": ["Qt", "POSIX"], "Qt": ["POSIX"], "POSIX": []}
# Where sources may include adapters: what tests or measures them.
OUTSIDE = ["Tests", "Benchmarks", "Tools"]
CODE = {".h", ".cpp", ".mm", ".py"}

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]', re.M)
PLATFORM_CONDITIONAL = re.compile(
    r"^\s*#\s*(?:if|elif).*\b(__linux__|__linux|__APPLE__|__unix__|__MACH__|_WIN32|__GLIBC__"
    r"|Q_OS_\w+|TARGET_OS_\w+|__has_include\w*\s*\(\s*<[^>]*>\s*\))", re.M)
TEXT = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
RAW_TEXT = re.compile(r'\bR"(\w*)\((.*?)\)\1"', re.S)
# Scripts for another program, which says where its tools are.
SCRIPTS = {"TavrinStorage/ClaudeUsage/ClaudeUsageBridge.cpp"}
PLACE = re.compile(r"(?:^|[\s:=~])/(?:proc|sys|usr|etc|run|dev|snap|opt|var|home|lib)(?:/|$)"
                   r"|x-special/gnome|\.so(?:\.\d+)?$|\.dylib$|KDE Connect")


def without_comments(text):
    return re.sub(r'//[^\n]*|/\*.*?\*/|("(?:[^"\\\n]|\\.)*")', lambda m: m.group(1) or "", text,
                  flags=re.S)


def floor_of(folder):
    return next((i for i, floor in enumerate(FLOORS) if folder in floor), None)


def room_of(parts):
    """The folder of a file in a floor that has rooms; Kit has floors of its own."""
    return parts[1] if len(parts) > 2 else ""


def room_at(depth, parts):
    """The room that a file's folder is in when only folders down to `depth` are told apart. What
    lies in the floor itself, or beside rooms, is a room of its own."""
    return "/".join(parts[1:-1][:depth]) or "(top)"


def arrow_fault(source, target):
    """Why the file `source` may not include `target`; None where it may. Both are lists of parts."""
    here, there = source[0], target[0]
    if here in OUTSIDE:
        return None
    if there in OUTSIDE:
        return "what ships does not include " + there
    below, above = floor_of(there), floor_of(here)
    if below is None or above is None:
        return None
    if below > above or (below == above and here != there):
        return f"{here} may not see {there}"
    target_adapter = target[1] if there == "TavrinPlatform" and target[1] in ADAPTERS else None
    if target_adapter:
        source_adapter = source[1] if here == "TavrinPlatform" and source[1] in ADAPTERS else None
        if source_adapter is None:
            # An interface's file beside it may stand on POSIX, as the folder Files does.
            return f"only adapters see {there}/{target_adapter}"
        if target_adapter != source_adapter and target_adapter not in BELOW[source_adapter]:
            return f"{source_adapter} may not see {target_adapter}"
    if here == there == "TavrinWidgetsUI":
        own, other = room_of(source), room_of(target)
        if other != own and other != "Kit":
            return f"the room {own} may not see the room {other}"
    return None


def circle(arrows):
    """A way through `arrows` (room -> rooms) that comes back to its beginning; None without one."""
    done, way = set(), []

    def visit(room):
        if room in way:
            return way[way.index(room):] + [room]
        if room in done:
            return None
        way.append(room)
        for other in sorted(arrows.get(room, ())):
            if found := visit(other):
                return found
        way.pop()
        done.add(room)
        return None

    for room in sorted(arrows):
        if found := visit(room):
            return found
    return None


NO_FUNCTION = re.compile(r"\b(?:namespace|class|struct|enum|union)\b[^()]*$")


def long_functions(text):
    """Name and length of the functions in `text` (C++ or Objective-C++) that do not fit a screen."""
    text = re.sub(r'R"(\w*)\(.*?\)\1"|//[^\n]*|/\*.*?\*/|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)\'',
                  lambda match: "\n" * match.group().count("\n"), text, flags=re.S)
    blocks, last, depth = [], 0, 0
    for mark in re.finditer(r"[{};]", text):
        at = mark.start()
        if mark.group() == "{":
            head = text[last:at]
            is_function = depth == 0 and ")" in head and not NO_FUNCTION.search(head)
            blocks.append((at, is_function, head))
            depth += is_function
        elif mark.group() == "}" and blocks:
            begin, is_function, head = blocks.pop()
            depth -= is_function
            if is_function and (lines := text.count("\n", begin, at) - 1) > MOST_FUNCTION_LINES:
                yield re.findall(r"[\w:~]+(?=\()", head)[:1] or ["?"], lines
        last = at + 1


def room_faults(root):
    """Kinds whose rooms do not stand on every floor that has them under one name, and rooms beside
    them that are no kind's."""
    rooms = lambda folder: {path.name for path in (root / folder).iterdir()
                            if path.is_dir() and any(path.glob("*.cpp"))}
    kinds = {path.name for path in (root / "TavrinCore" / "Kinds").iterdir()}
    tests = [rooms("Tests/" + floor) for floor in ("Core/Kinds", "WidgetsUI", "Slot")]
    found = [f"TavrinWidgetsUI: no room {kind}" for kind in kinds - rooms("TavrinWidgetsUI")]
    found += [f"Tools/Gallery: no room {kind}" for kind in kinds - rooms("Tools/Gallery")]
    found += [f"Tests: no room {kind}" for kind in kinds.difference(*tests)]
    for folder in ("TavrinWidgetsUI", "Tools/Gallery", "Tests/Core/Kinds", "Tests/WidgetsUI",
                   "Tests/Slot"):
        found += [f"{folder}/{room}: no kind's room" for room in rooms(folder) - kinds - {"Kit"}]
    return sorted(found)


def sources(root):
    for folder in PRODUCT + OUTSIDE:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in CODE and path.is_file():
                yield path, path.relative_to(root).parts


def faults(root):
    """What the tree at `root` does against the rules, a line each."""
    root = pathlib.Path(root)
    found = []
    folders = set()
    rooms = collections.defaultdict(lambda: collections.defaultdict(set))
    for path, parts in sources(root):
        name = "/".join(parts)
        folders.add(path.parent)
        text = path.read_text(encoding="utf-8")
        if (lines := text.count("\n")) > MOST_LINES:
            found.append(f"{name}: {lines} lines, at most {MOST_LINES}")
        if path.suffix == ".py":
            continue
        for (function, *_), lines in long_functions(text):
            if function not in TABLES:
                found.append(f"{name}: {function} has {lines} lines, at most {MOST_FUNCTION_LINES}")
        code = without_comments(text)
        for kind, included in INCLUDE.findall(code):
            target = included.split("/")
            if kind == "<":
                bare = parts[0] == "TavrinCore" or parts[:2] == ("TavrinPlatform", "POSIX")
                if bare and re.match(r"Qt?[A-Z]", included):
                    found.append(f"{name}: includes the toolkit's {included}")
                continue
            if len(target) < 2:
                continue
            if why := arrow_fault(list(parts), target):
                found.append(f"{name}: includes {included}, but {why}")
            if parts[0] == target[0]:
                for depth in range(1, max(len(parts), len(target)) - 1):
                    own, other = room_at(depth, parts), room_at(depth, target)
                    if own != other:
                        rooms[parts[0], depth][own].add(other)
        if parts[0] in PRODUCT and parts[0] != "TavrinPlatform":
            for match in PLATFORM_CONDITIONAL.finditer(code):
                found.append(f"{name}: asks for the platform by {match.group(1)}")
            texts = [match.group(1) for match in TEXT.finditer(code)]
            if name not in SCRIPTS:
                raw = (match.group(2) for match in RAW_TEXT.finditer(text))
                texts += [line for lines in raw for line in lines.splitlines()]
            for shown in texts:
                if PLACE.search(shown):
                    found.append(f'{name}: names what one system has: "{shown}"')
    for folder in sorted(folders):
        if (count := sum(path.is_file() for path in folder.iterdir())) > MOST_FILES:
            found.append(f"{folder.relative_to(root)}: {count} files, at most {MOST_FILES}")
    circles = {}
    for (floor, _), arrows in sorted(rooms.items()):
        if way := circle(arrows):
            circles.setdefault(floor, way)
    found += [f"{floor}: a circle of rooms: {' -> '.join(way)}" for floor, way in circles.items()]
    return found
