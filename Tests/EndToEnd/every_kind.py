"""One widget of every kind, as it is when it is added."""

from rig import BUILD, wait_for

TAVRIN = BUILD / "bin" / "tavrin"
SLOT = 1

KINDS = ("collection timer pomodoro music calendar battery clock stopwatch countdown timeProgress "
         "activity network note reminders shortcut airdrop weather claudeUsage github pet "
         "colourPicker clipboard bookmarks emoji screenshots files shelf water converter fans "
         "keyboardLock").split()


def place(desk, kind, name):
    """The kind's widget, alone in the first slot; its entry in the file."""
    import json
    file = desk.data / "widgets.json"
    if file.exists():
        file.unlink()
    desk.run(str(TAVRIN), "widgets", "add", kind, name, "--place")
    return json.loads(file.read_text())["widgets"]


def start(desk):
    process = desk.start_slot(SLOT)
    desk.wait_for_name(SLOT)
    wait_for(lambda: desk.windows(process.pid), "the tile")
    return process


def stop(process):
    process.terminate()
    process.wait(10)
