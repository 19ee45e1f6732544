"""A window's page: zoom, slow servers, pages that die."""

import os
import signal
import threading

import pytest

from support import processes
from support.neighbours import Neighbour
from support.waiting import wait_until
from support.windows import Frame

COLOUR, OTHER = "#2060c0", "#208040"
BOX = "<div style='width:100px;height:100px;background:#ff0000'></div>"
BURNS = """<script>
onclick = () => {
  const until = Date.now() + 500
  while (Date.now() < until);
  fetch("/burnt")
}
onkeydown = () => fetch("/key")
</script>"""
# Of the page that tells about a dead one.
BUTTON = (0xFF, 0xFD, 0xF7)


@pytest.mark.parametrize("zoom, side", [("1.5", 150), ("1%", 25)])
def test_zoom(running, site, zoom, side):
    window = running.open(site.page("/page", COLOUR, BOX), "--size", "420x420", "--zoom", zoom)
    inside, outside = (side - 1, side - 1), (side, side)
    wait_until(lambda: (window.colour(*inside), window.colour(*outside)) == ("#ff0000", COLOUR),
               lambda: f"the box ends at {side}: {window.colour(*inside)}, {window.colour(*outside)}")


def test_an_idle_page_stays_whole(running, site, desktop):
    """Whatever lay over a part of it: the engine paints a page that does not change as a whole only."""
    gate = threading.Event()
    page = site.page("/page", COLOUR, gate=gate)
    window = running.open(page, "--size", "420x420", "--top-left", "--zoom", "150")
    wait_until(lambda: window.colour(404, 394) == "#3b3b3b",
               lambda: f"a badge shows the zoom: {window.colour(404, 394)}")
    gate.set()

    def is_whole():
        inside = window.picture().crop((40, 40, 405, 405))
        return inside.getcolors() == [(365 * 365, (0x20, 0x60, 0xC0))]

    wait_until(is_whole, "the page is there and the badge is gone")
    cover = Neighbour(desktop, Frame(150, 150, 200, 200))
    try:
        wait_until(lambda: not is_whole(), "another window covers a part")
        for x in (60, 700):
            before = cover.frame()
            cover.handle.configure(x=x, y=330)
            wait_until(lambda before=before: cover.frame() != before, "it is moved")
        wait_until(is_whole, "the page is whole again")
    finally:
        cover.remove()


def test_a_window_is_there_before_its_page(running, site):
    gate = threading.Event()
    slow = running.open(site.page("/slow", COLOUR, gate=gate), "--size", "300x200", "--top-left")
    site.wait_for("/slow")
    slow.wait_for_frame(0, 0, 300, 200)
    running.show(site.page("/other", OTHER), OTHER, "--size", "300x200", "--x", "400")
    gate.set()
    slow.wait_until_shows(COLOUR)


def process_of(window, site, application):
    """The page's process is the one that works when the page does."""
    before = {pid: processes.processor_time(pid) for pid in application.web_processes()}
    application.desktop.input.click(*window.centre())
    site.wait_for("/burnt")
    return max(before, key=lambda pid: processes.processor_time(pid) - before[pid])


def test_a_page_that_dies_says_so_and_comes_back(running, site):
    page = site.page("/dying", COLOUR, BURNS) + "#part"
    dying = running.show(page, COLOUR, "--size", "500x400", "--top-left")
    other = running.show(site.page("/other", OTHER, BURNS), OTHER, "--size", "400x400", "--x", "600")

    os.kill(process_of(dying, site, running), signal.SIGKILL)
    reload = wait_until(lambda: dying.middle_of(BUTTON), "the window offers to load the page again")
    assert other.shows(OTHER)
    running.desktop.input.click(*other.centre())
    wait_until(other.has_focus, "the other window has the keyboard")
    running.desktop.input.press("v")
    site.wait_for("/key")

    running.desktop.input.click(*reload)
    dying.wait_until_shows(COLOUR)
    assert site.count("/dying") == 2


def test_a_dead_page_does_not_keep_its_window(running, site):
    window = running.show(site.page("/page", COLOUR, BURNS), COLOUR, "--top-left")
    os.kill(process_of(window, site, running), signal.SIGKILL)
    wait_until(lambda: not window.shows(COLOUR), "the page is gone")
    window.close()
