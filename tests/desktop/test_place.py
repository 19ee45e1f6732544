"""Where a window goes, and how large it is, to the pixel."""

import pytest

from support.application import Application
from support.desktop import Desktop
from support.neighbours import Dock
from support.waiting import wait_until

COLOUR = "#2060c0"

# Arguments, and the frame on a free screen of 1280 by 800.
FREE = [
    ("--size 420x760 --top-left", (0, 0, 420, 760)),
    ("--size 420x300 --x 41 --y 63", (41, 63, 420, 300)),
    ("", (190, 33, 900, 700)),
    ("--size 420x300 --x 9223372036854775807 --y -9223372036854775808", (860, 0, 420, 300)),
    ("--size 2000x1000 --top-left", (0, -200, 2000, 1000)),
    ("--size 10x10 --x 40 --y 60", (40, 60, 25, 25)),
]

# With 32 pixels taken from the top and 48 from the left.
DOCKED = [
    ("--size 420x300 --x 40", (88, 32, 420, 300)),
    ("--size 420x300 --x 99999 --y 99999", (860, 500, 420, 300)),
    ("--size 420x300", (454, 188, 420, 300)),
    ("--size 1240x780 --top-left", (48, 20, 1240, 780)),
]


def opens_at(application, site, arguments, frame):
    window = application.open(site.page("/page", COLOUR), *arguments.split())
    window.wait_for_frame(*frame)
    # Near its lower edge: in the middle of the smallest window there is one of its dots.
    wait_until(lambda: window.colour(window.frame().width // 2, window.frame().height - 3) == COLOUR,
               "it shows its page")
    assert window.frame() == frame, "it moved when its page came"


@pytest.fixture(scope="module")
def unmanaged():
    desktop = Desktop.single(manager=False)
    installed = Application(desktop)
    yield installed
    installed.remove()
    desktop.stop()


@pytest.fixture(scope="module")
def docked(desktop):
    dock = Dock(desktop, top=32, left=48)
    yield dock
    dock.remove()


@pytest.mark.parametrize("arguments, frame", FREE)
def test_on_a_free_screen(running, site, arguments, frame):
    opens_at(running, site, arguments, frame)


def test_by_the_request_that_starts_the_application(velto, site):
    opens_at(velto, site, *FREE[1])


@pytest.mark.parametrize("arguments, frame", FREE[1:])
def test_without_a_window_manager(unmanaged, site, arguments, frame):
    opens_at(unmanaged, site, arguments, frame)
    unmanaged.end()


def test_page_has_the_whole_window(running, site):
    page = site.page("/page", COLOUR, "<script>fetch(`/size?w=${innerWidth}&h=${innerHeight}`)</script>")
    running.open(page, "--size", "423x317")
    assert site.wait_for("/size") == {"w": "423", "h": "317"}


def test_the_window_manager_holds_the_least_size(running, site):
    window = running.open(site.page("/page", COLOUR), "--size", "300x200", "--x", "40", "--y", "40")
    window.handle.configure(width=5, height=5)
    window.wait_for_frame(40, 40, 25, 25)


def test_two_requests_at_once_keep_their_own_places(running, site):
    wanted = {"#a03030": (10, 20, 300, 200), "#30a030": (500, 300, 410, 250)}
    asked = [running.begin("velto", site.page(f"/{colour[1:]}", colour), "--x", str(x), "--y", str(y),
                           "--size", f"{width}x{height}")
             for colour, (x, y, width, height) in wanted.items()]
    assert [process.wait(20) for process in asked] == [0, 0]
    for colour, frame in wanted.items():
        running.window_at(frame).wait_until_shows(colour)


# The last one on this desktop: the panel stays until the end of the module.
@pytest.mark.parametrize("arguments, frame", DOCKED)
def test_beside_a_panel(docked, running, site, arguments, frame):
    opens_at(running, site, arguments, frame)
