"""Texts that are shown and not marked for translation, read off the sources."""

import pathlib
import re

# Where users' texts are made. What only developers read, such as what a log is told, is left out by
# the call it stands in.
ROOMS = ["TavrinCore/Settings", "TavrinWidgetsUI", "TavrinSlot", "TavrinHost", "TavrinCommand",
         "TavrinSettings", "TavrinPlatform/Linux/Command"]
# TavrinCore/Text/Texts.h, TavrinWidgetsUI/Kit/Words.h, TavrinCore/Base/Field.h.
# Below them stand the reasons of what went wrong, whole clauses, beside names for machines.
REASONS = ["TavrinCore", "TavrinStorage", "TavrinPlatform/Files", "TavrinPlatform/Web",
           "TavrinPlatform/POSIX", "TavrinPlatform/Qt", "TavrinPlatform/Linux"]
MARKING = {"translated", "translation", "translatedIn", "plural", "marked", "worded", "wordedIn", "wordedPlural",
           "counted", "titled", "helped", "grouped", "absentAs", "noneCalled", "failure"}
# Calls whose texts nobody is shown: names of things in files, on buses and in the toolkit; patterns
# of dates; errors of the program itself.
UNSHOWN = {"environment", "getenv", "setObjectName", "setProperty", "property", "starts_with",
           "ends_with", "find", "contains", "member", "required", "optional", "emplace", "play",
           "invalid_argument", "logic_error", "Log", "info", "error", "debug", "localText",
           "toString", "widest", "setDisplayFormat", "Calendar", "atom", "symbol", "perform",
           "throwWrongType", "CodingError", "setWidest", "SD_BUS_METHOD", "SD_BUS_PROPERTY",
           "methodCall", "static_assert", "fromString", "hasFamily", "compare", "isKind"}
# Texts that are the same in every language, and what is no text for users: by file (or folder) and
# pattern, with the reason.
ALLOWED = [
    ("", r"Tavrin|GitHub|Inter|Claude Code|AirDrop"),                 # names
    ("TavrinSettings/Samples/", r".*"),                                # what sample widgets hold
    ("TavrinCommand/CompletionCommands.cpp", r".*"),                   # scripts of shells
    ("TavrinCommand/Base/ParserWords.cpp", r".*"),                          # the library's own words
    ("TavrinCommand/Dock/DockCommands.cpp", r"printf .*"),              # a command of the shell
    ("TavrinHost/Dock/DockItems.cpp", r"Contents"),                     # a folder of bundles
    ("TavrinSettings/Form/ListControls.cpp", r"not taken"),             # told to the control alone
    ("TavrinSettings/Form/SimpleControls.cpp", r"yyyy-MM-dd HH:mm"),
    ("TavrinHost/Widgets/SlotControl.cpp", r"Tavrin Settings\.app/.*"),   # a path
    ("TavrinSlot/Controllers/Runs/", r"Submarine|Glass"),               # sounds
    ("TavrinCommand/Widgets/EditorRun.cpp", r".*"),                    # a script of the shell
    ("TavrinCore/Base/Calendar.cpp", r".*"),                           # faults of the library
    ("TavrinCore/Base/Coding", r".*"),                                 # faults of a record's form
    ("TavrinCore/Desktop/", r"Desktop (Entry|Action )|Icon Theme"),     # groups of files
    ("TavrinCore/Dock/DockItem.cpp", r"(Small|Flex) spacer"),           # what layouts store
    ("TavrinCore/Kinds/Bookmarks/BookmarkFiles.cpp", r"<!DOCTYPE.*"),
    ("TavrinCore/Kinds/Converter/ConverterUnits.cpp", r".*"),          # words that are typed
    ("TavrinCore/Kinds/Fans/FanControl.cpp", r"fan value |.*\"anchor.*|anchor .*|.*certificate.*"),
    ("TavrinCore/Kinds/Files/FileKind.cpp", r".*"),                    # endings of files
    ("TavrinCore/Kinds/GitHub/GitHubQuery.cpp", r".*"),                # a query
    ("TavrinCore/Widgets/DockSlot.cpp", r"Tavrin Slot "),               # a bundle's name
    ("TavrinCore/Widgets/DockWidget.cpp", r".*"),                      # an assertion
    ("TavrinPlatform/Linux/Applications/", r"app-tavrin.*"),
    ("TavrinPlatform/Linux/Base/", r".*"),                             # words for the log
    ("TavrinPlatform/Linux/Devices/BusNearbyDevices.cpp", r"KDE Connect"),
    ("TavrinPlatform/Linux/Devices/SysfsFans.cpp", r".*"),             # the root helper has no user,
    ("TavrinPlatform/Linux/FanHelper/", r".*"),                        # and so no language
    ("TavrinPlatform/Linux/Files/Trash.cpp", r".*"),                   # a file's form
    ("TavrinPlatform/Linux/Slot/", r".*"),                             # answers to programs
    ("TavrinPlatform/Linux/Tile/", r".*"),
    ("TavrinStorage/Dock/FocusModeMonitor.cpp", r".*"),                # told to the log
    ("TavrinPlatform/Linux/Command/LinuxAutostart.cpp", r".*"),        # unit files and entries
]

LITERALS = re.compile(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*')
ONE = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
RAW = re.compile(r'R"(\w*)\(.*?\)\1"', re.S)
WORD = re.compile(r"[A-Z][a-z]{2,}…?")
SENTENCE = re.compile(r"[A-Za-z’']{2,}[,;:]? [A-Za-z“\"']{2,}")
NO_SENTENCE = re.compile(r"://|^[a-z-]+=|^tavrin |[{}()<>]{2}|^-|\bnodes\b")


def without_comments(text):
    return re.sub(r'//[^\n]*|/\*.*?\*/|("(?:[^"\\\n]|\\.)*")|^\s*#[^\n]*',
                  lambda m: m.group(1) or "", text, flags=re.S | re.M)


# What stands here is shown, be it a single word without a capital.
SHOWN = re.compile(r"(?:\b(?:caption|sentence)\s*=|\b(?:setUnit|setWords|setHint|caption)\()\s*"
                   r"(?:[^;{}\"]*\?\s*)?$")


def reads_as_words(text):
    if NO_SENTENCE.search(text):
        return False
    return bool(WORD.fullmatch(text) or SENTENCE.search(text))


def calls_around(code, at):
    """The names of the calls that the place `at` stands in, the innermost first."""
    names, depth = [], 0
    begin = max(0, at - 4000)
    for i in range(at - 1, begin, -1):
        if code[i] in ")]}":
            depth += 1
        elif code[i] in "([{":
            if depth > 0:
                depth -= 1
                continue
            if code[i] == "(" and (name := re.search(r"(\w+)(?:<[\w:]*>)?\s*$", code[begin:i])):
                names.append(name.group(1))
        elif code[i] == ";" and depth == 0:
            break
    return names


def unmarked(code):
    """The texts of `code` that read as words and stand in no call that marks them."""
    code = RAW.sub('""', without_comments(code))
    for match in LITERALS.finditer(code):
        text = "".join(ONE.findall(match.group(0)))
        is_shown = SHOWN.search(code[max(0, match.start() - 120):match.start()])
        if not reads_as_words(text) and not (is_shown and re.search("[A-Za-z]{3}", text)):
            continue
        calls = calls_around(code, match.start())
        if any(name in MARKING for name in calls[:3]) or (calls and calls[0] in UNSHOWN):
            continue
        yield text


def faults(root):
    """A line for each text that is shown and not marked."""
    root = pathlib.Path(root)
    for room in ROOMS + REASONS:
        for path in sorted((root / room).rglob("*")):
            name = str(path.relative_to(root))
            if path.suffix not in (".h", ".cpp") or (
                    room in REASONS and any(name.startswith(other + "/") for other in ROOMS)):
                continue
            for text in unmarked(path.read_text(encoding="utf-8")):
                if room in REASONS and not SENTENCE.search(text):
                    continue
                if not any(name.startswith(place) and re.fullmatch(pattern, text, re.S)
                           for place, pattern in ALLOWED):
                    yield f'{name}: "{text}" is not marked for translation'


if __name__ == "__main__":
    import sys
    for fault in faults(sys.argv[1]):
        print(fault)
