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


@pytest.mark.parametrize("zoom, side", [
    ("100", 100), ("200", 200), ("2", 200), ("50%", 50), ("1000", 300), ("1%", 25), ("0", 100)])
def test_zoom(running, site, zoom, side):
    window = running.open(site.page("/page", COLOUR, BOX), "--size", "420x420", "--zoom", zoom)
    inside, outside = (side - 1, side - 1), (side, side)
    wait_until(lambda: (window.colour(*inside), window.colour(*outside)) == ("#ff0000", COLOUR),
               lambda: f"the box ends at {side}: {window.colour(*inside)}, {window.colour(*outside)}")


def test_an_idle_page_stays_whole(running, site, desktop):
    """Whatever lay over a part of it: the engine paints a page that does not change as a whole only."""
    window = running.open(site.page("/page", COLOUR), "--size", "420x420", "--top-left", "--zoom", "150")
    window.wait_until_shows(COLOUR)

    def is_whole():
        inside = window.picture().crop((40, 40, 405, 405))
        return inside.getcolors() == [(365 * 365, (0x20, 0x60, 0xC0))]

    wait_until(is_whole, "the zoom badge fades")
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
    other = running.open(site.page("/other", OTHER), "--size", "300x200", "--x", "400")
    other.wait_until_shows(OTHER)
    gate.set()
    slow.wait_until_shows(COLOUR)


def process_of(window, site, application):
    """The page's process is the one that works when the page does."""
    before = {pid: processes.processor_time(pid) for pid in application.web_processes()}
    application.desktop.input.click(*window.centre())
    site.wait_for("/burnt")
    return max(before, key=lambda pid: processes.processor_time(pid) - before[pid])


@pytest.mark.parametrize("part", ["", "#part"])
def test_a_page_that_dies_says_so_and_comes_back(running, site, part):
    dying = running.open(site.page("/dying", COLOUR, BURNS) + part, "--size", "500x400", "--top-left")
    dying.wait_until_shows(COLOUR)
    other = running.open(site.page("/other", OTHER, BURNS), "--size", "400x400", "--x", "600")
    other.wait_until_shows(OTHER)

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
    dying.close()


def test_a_dead_page_does_not_keep_its_window(running, site):
    window = running.open(site.page("/page", COLOUR, BURNS), "--top-left")
    window.wait_until_shows(COLOUR)
    os.kill(process_of(window, site, running), signal.SIGKILL)
    wait_until(lambda: not window.shows(COLOUR), "the page is gone")
    window.close()
