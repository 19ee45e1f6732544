"""Layouts from the command's side: saved, listed, renamed and opened, on the displays of then or of now."""

import json
import os

import pytest
from PIL import Image

from support.alerts import wait_for_alert
from support.layouts import arrangement, layouts_folder, read_json, stored_layout, touching
from support.waiting import wait_until
from support.windows import Frame

NAME, SHORT_NAME = "Morning dashboards", "morning-dashboards"
BUTTONS = ["OK", "Save Layout (Override)", "Save as New Layout…"]

# By title, which is the colour too. On the left display, 1280 by 1024, three that fill a corner of it:
LEFT = {
    "2060c0": Frame(0, 0, 400, 500),
    "a03030": Frame(400, 0, 400, 500),
    "30a030": Frame(0, 500, 800, 524),
}
# and on the right one, 1024 by 768, two that share its width.
RIGHT = {
    "a0a030": Frame(1280, 0, 500, 768),
    "8030a0": Frame(1780, 0, 524, 768),
}
FIVE = LEFT | RIGHT
TWO = {"2060c0": Frame(40, 60, 400, 500), "a03030": Frame(600, 60, 300, 200)}


def colour(title):
    return f"#{title}"


def open_windows(application, site, frames, origin=0):
    for title, (x, y, width, height) in frames.items():
        window = application.show(site.page(f"/{title}", colour(title)), colour(title),
                                  "--size", f"{width}x{height}", "--x", str(x - origin), "--y", str(y))
        window.wait_for_frame(x, y, width, height)


def wait_for_arrangement(application, frames):
    wait_until(lambda: arrangement(application) == frames,
               lambda: f"the windows {frames} instead of {arrangement(application)}")


def save(application, name=NAME):
    """Until its pictures are there too, which come last."""
    application.succeed("velto", "layouts", "save", name)

    def is_complete():
        layout = stored_layout(application, name)
        return layout and all("thumbnail" in window for window in layout["windows"]) and layout
    return wait_until(is_complete, f"{name} is stored with its pictures")


def moved(frames, by):
    return sorted(Frame(x + by, y + by, width, height) for x, y, width, height in frames.values())


def wait_for_frames(application, frames):
    def now():
        return sorted(window.frame() for window in application.windows())
    wait_until(lambda: now() == sorted(frames), lambda: f"the frames {sorted(frames)} instead of {now()}")


# The display that goes, the size of the other one, and what the alert says.
@pytest.mark.parametrize("unplugged, width, height, words", [
    ("DUMMY0", 1024, 768, "Saved on DUMMY0 (1280×1024) — approximated for DUMMY1 (1024×768)."),
    ("DUMMY1", 1280, 1024, "Saved on DUMMY0 (1280×1024); the arrangement no longer fits as it was."),
])
def test_five_windows_on_the_display_that_is_left(displays, beside, site, unplugged, width, height, words):
    displays.arrange(primary="DUMMY1")
    open_windows(beside, site, RIGHT, origin=1280)
    displays.arrange()
    open_windows(beside, site, LEFT)
    wait_for_arrangement(beside, FIVE)
    save(beside)
    beside.close_windows()
    displays.unplug(unplugged)

    beside.succeed("velto", SHORT_NAME)
    alert = wait_for_alert(
        beside, f"“{NAME}” was approximated", f"{words} 2 displays when saved, 1 now.", *BUTTONS)
    wait_until(lambda: touching(FIVE) <= touching(arrangement(beside)),
               lambda: f"they touch as they did: {arrangement(beside)}")
    assert arrangement(beside).keys() == FIVE.keys()
    for x, y, wide, high in arrangement(beside).values():
        assert 0 <= x <= width - wide and 0 <= y <= height - high
    assert beside.desktop.screen.alerts() == [alert]
    beside.desktop.input.press("Return")
    alert.wait_until_gone()
    beside.close_windows()

    displays.arrange()
    beside.succeed("velto", SHORT_NAME)
    wait_for_arrangement(beside, FIVE)
    for window in beside.windows():
        window.wait_until_shows(colour(window.title()))
    assert beside.desktop.screen.alerts() == []


def test_starts_the_application_and_opens_nothing_else(velto, site):
    open_windows(velto, site, TWO)
    save(velto)
    velto.close_windows()
    velto.open(site.page("/left-open", "#404040"))
    velto.end()
    velto.succeed("velto", SHORT_NAME)
    wait_for_arrangement(velto, TWO)


# What is asked for one after the other, and how far from the saved places each further set of windows stands.
@pytest.mark.parametrize("requests, steps", [
    ([[], [], []], [0, 24, 48]),
    ([["--copy"], ["--copy"], ["--exact"]], [24, 24, 0]),
])
def test_further_copies(running, site, requests, steps):
    open_windows(running, site, TWO)
    save(running, "Pair")
    running.close_windows()
    expected = []
    for arguments, step in zip(requests, steps):
        running.succeed("velto", "layouts", "open", "pair", *arguments)
        expected += moved(TWO, step)
        wait_for_frames(running, expected)
        for window in running.windows():
            wait_until(lambda: window.title() in TWO, "its page is there, by which copies are counted")


def listed(application, *arguments):
    done = application.run("velto", "layouts", *arguments)
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout.splitlines()


def test_lists_renames_and_refuses(velto, site):
    open_windows(velto, site, TWO)
    stored = save(velto)
    save(velto, "Ärger & Co.")
    wait_until(lambda: listed(velto, "names") == ["arger-co", SHORT_NAME], "both are listed")
    assert listed(velto, "list") == ["Ärger & Co.", NAME]
    told = json.loads("\n".join(listed(velto, "list", "--json")))[1]
    told = tuple(told[key] for key in ("id", "name", "shortName", "windows"))
    assert told == (stored["id"], NAME, SHORT_NAME, 2)

    velto.succeed("velto", "layouts", "rename", SHORT_NAME, "Evening")
    wait_until(lambda: listed(velto, "names") == ["arger-co", "evening"], "it has its new short name")
    assert stored_layout(velto, "Evening") == stored | {"name": "Evening"}
    velto.end()
    assert velto.run("velto", SHORT_NAME).returncode == 2
    assert velto.pids() == []


def test_pictures_show_the_pages(velto, site):
    frames = TWO | {"30a030": Frame(0, 600, 1000, 200)}
    open_windows(velto, site, frames)
    sizes = {"2060c0": (384, 480), "a03030": (480, 320), "30a030": (480, 96)}
    for window in save(velto)["windows"]:
        with Image.open(layouts_folder(velto) / window["thumbnail"]) as picture:
            title = window["title"]
            assert (picture.format, picture.size) == ("PNG", sizes[title])
            middle = picture.convert("RGB").getpixel((picture.width // 2, picture.height // 2))
            assert "#%02x%02x%02x" % middle == colour(title)


def test_damaged_files_do_no_harm_and_stay(velto, site):
    open_windows(velto, site, TWO)
    folder, good = layouts_folder(velto), save(velto)["id"] + ".veltolayout.json"
    velto.close_windows()
    velto.end()
    text = (folder / good).read_bytes()
    damaged = {
        "half.veltolayout.json": text[:len(text) // 2],
        "newer.veltolayout.json": b'{"schemaVersion": 2, "windows": 7}',
        "outside.veltolayout.json": text.replace(b'"id" : "', b'"id" : "../../', 1),
    }
    for name, content in damaged.items():
        (folder / name).write_bytes(content)
    (folder / "folder.veltolayout.json").mkdir()
    (folder / "nowhere.veltolayout.json").symlink_to("nothing")
    os.mkfifo(folder / "pipe.veltolayout.json")
    names = {path.name for path in folder.glob("*.veltolayout.json")}
    (folder / "index.txt").write_text("out of date\n")

    velto.start()
    wait_until(lambda: listed(velto, "names") == [SHORT_NAME], "the list is made anew")
    velto.succeed("velto", SHORT_NAME)
    wait_for_arrangement(velto, TWO)
    velto.window_at(TWO["a03030"]).close()
    velto.succeed("velto", "layouts", "save", NAME)
    wait_until(lambda: len(read_json(folder / good)["windows"]) == 1, "it can be saved again")
    assert listed(velto, "list") == [NAME]
    assert {path.name for path in folder.glob("*.veltolayout.json")} == names
    assert {name: (folder / name).read_bytes() for name in damaged} == damaged
