"""Two real monitors, which can be moved and unplugged. DUMMY0 has 1280 by 1024 pixels, DUMMY1 1024 by 768."""

import pytest

from support.layouts import arrangement, read_json, session_file
from support.waiting import wait_until

COLOUR = "#2060c0"
SIZE = ["--size", "420x300"]


@pytest.fixture
def page(site):
    return site.page("/page", COLOUR)


# The arrangement, the arguments, and the frame: a window goes to the primary monitor.
@pytest.mark.parametrize("arrangement, arguments, frame", [
    (("DUMMY0", "DUMMY1", "DUMMY0"), "--top-left", (0, 0, 420, 300)),
    (("DUMMY0", "DUMMY1", "DUMMY1"), "--x 99999 --y 99999", (1884, 468, 420, 300)),
    (("DUMMY0", "DUMMY1", "DUMMY1"), "", (1582, 156, 420, 300)),
    (("DUMMY1", "DUMMY0", "DUMMY0"), "--x 40 --y 60", (1064, 60, 420, 300)),
    (("DUMMY1", "DUMMY0", "DUMMY1"), "--x -9 --y 99999", (0, 468, 420, 300)),
])
def test_place_on_the_primary_display(displays, beside, page, arrangement, arguments, frame):
    displays.arrange(*arrangement)
    window = beside.open(page, *SIZE, *arguments.split())
    window.wait_for_frame(*frame)
    window.wait_until_shows(COLOUR)


def reachable(window, width, height):
    """Whether a person can still see enough of it to take hold of it."""
    frame = window.frame()
    return -frame.width + 40 <= frame.x <= width - 40 and 0 <= frame.y <= height - 40


@pytest.mark.parametrize("unplugged, width, height", [("DUMMY0", 1024, 768), ("DUMMY1", 1280, 1024)])
def test_display_goes_and_comes_back(displays, beside, page, unplugged, width, height):
    displays.arrange(primary=unplugged)
    first = beside.show(page, COLOUR, *SIZE, "--x", "99999", "--y", "99999")
    pid = beside.pid()

    displays.unplug(unplugged)
    wait_until(lambda: reachable(first, width, height), lambda: f"{first} is on what is left", 10)
    second = beside.open(page, *SIZE, "--top-left")
    second.wait_for_frame(0, 0, 420, 300)
    second.wait_until_shows(COLOUR)

    displays.arrange(primary=unplugged)
    left = 1280 if unplugged == "DUMMY1" else 0
    third = beside.open(page, *SIZE, "--x", "30", "--y", "40")
    third.wait_for_frame(left + 30, 40, 420, 300)
    third.wait_until_shows(COLOUR)
    assert len(beside.windows()) == 3
    assert beside.pid() == pid


def test_displays_change_again_and_again(displays, beside, page):
    window = beside.open(page, *SIZE, "--x", "99999")
    pid = beside.pid()
    for _ in range(3):
        displays.unplug("DUMMY0")
        displays.arrange(primary="DUMMY1")
        displays.unplug("DUMMY1")
        displays.arrange()
    last = beside.open(page, *SIZE, "--x", "30", "--y", "40")
    last.wait_for_frame(30, 40, 420, 300)
    last.wait_until_shows(COLOUR)
    assert window.is_open()
    assert beside.pid() == pid


def test_no_display_at_all_loses_no_window(displays, beside, site):
    for title in ("first", "second"):
        beside.show(site.page(f"/{title}", COLOUR), COLOUR, *SIZE)
    displays.unplug("DUMMY0")
    displays.unplug("DUMMY1")
    beside.end()
    session = read_json(session_file(beside))
    assert sorted(window["url"].rsplit("/", 1)[1] for window in session["windows"]) == ["first", "second"]

    displays.arrange()
    beside.succeed("velto")
    wait_until(lambda: sorted(arrangement(beside)) == ["first", "second"],
               lambda: f"two of {arrangement(beside)}")
    wait_until(lambda: all(reachable(window, 2304, 1024) for window in beside.windows()), "both in reach")
