"""How the application starts, comes forward, and ends."""

import signal
import time

import pytest

from support import processes
from support.application import Application, launch_url
from support.desktop import Desktop
from support.neighbours import Neighbour
from support.visits import write_visits
from support.waiting import wait_until

COLOUR = "#2060c0"


def grid(site, count):
    """Requests for that many small windows beside each other, with their frames and colours."""
    wanted = []
    for i in range(count):
        colour = f"#{40 + 8 * i:02x}60{220 - 8 * i:02x}"
        x, y = i % 6 * 210, i // 6 * 160
        url = launch_url(site.page(f"/{i}", colour), width=200, height=150, x=x, y=y)
        wanted.append((url, (x, y, 200, 150), colour))
    return wanted


@pytest.mark.parametrize("program, count", [("velto-open", 8), ("velto-app", 2)])
def test_starts_at_the_same_moment(velto, site, program, count):
    wanted = grid(site, count)
    starts = [velto.begin(program, url) for url, _, _ in wanted]
    for _, frame, colour in wanted:
        velto.window_at(frame).wait_until_shows(colour)
    assert len(velto.windows()) == count
    ended = {start.wait(10) for start in starts if start.pid != velto.pid()}
    assert ended == {0}


@pytest.mark.parametrize("program", ["velto-open", "velto-app"])
def test_a_killed_one_is_replaced(velto, site, program):
    velto.show(site.page("/first", COLOUR), COLOUR)
    killed = velto.pid()
    velto.end(signal.SIGKILL)
    assert velto.socket.exists()
    wait_until(lambda: not velto.windows(), "the killed one's window is gone")
    velto.begin(program, launch_url(site.page("/second", COLOUR)))
    wait_until(velto.windows, "a window opens again")[0].wait_until_shows(COLOUR)
    assert velto.pid() != killed


@pytest.mark.parametrize("by", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_a_signal_ends_it_cleanly(velto, site, by):
    process = velto.start()
    velto.show(site.page("/page", COLOUR), COLOUR)
    process.send_signal(by)
    assert process.wait(10) == 0
    assert not velto.socket.exists()
    wait_until(lambda: not processes.of_runtime_directory(velto.runtime), "its helper processes end with it")


def test_it_ends_when_the_display_goes(site):
    desktop = Desktop.single()
    velto = Application(desktop)
    try:
        velto.show(site.page("/page", COLOUR), COLOUR)
        desktop.stop()
        wait_until(lambda: not velto.pids(), "the application ends")
    finally:
        desktop.stop()
        velto.remove()


@pytest.mark.parametrize("program", ["velto", "velto-app"])
def test_an_unsafe_runtime_directory_is_refused(velto, site, program):
    (velto.runtime / "velto").mkdir(0o700)
    (velto.runtime / "velto").chmod(0o755)
    refused(velto.run(program, site.page("/page", COLOUR)), "open to other users")
    wait_until(lambda: not velto.pids(), "nothing goes on running")
    assert velto.windows() == []


@pytest.mark.parametrize("program, display", [
    ("velto", None), ("velto-open", ":4321"), ("velto-app", "nonsense")])
def test_no_display(velto, site, program, display):
    started = time.monotonic()
    done = velto.run(program, site.page("/page", COLOUR), DISPLAY=display, WAYLAND_DISPLAY=None)
    refused(done, "display")
    assert time.monotonic() - started < 5
    wait_until(lambda: not velto.pids(), "nothing goes on running")
    assert not velto.socket.exists()


def refused(done, reason):
    assert done.returncode == 1, done
    assert done.stderr.count("\n") == 1 and done.stderr.endswith("\n"), f"one line, not {done.stderr!r}"
    assert reason in done.stderr


def test_starting_again_without_a_url_raises_the_last_window(velto, site):
    first = velto.open(site.page("/first", COLOUR), "--size", "300x200", "--top-left")
    last = velto.show(site.page("/last", COLOUR), COLOUR, "--size", "300x200", "--x", "400")
    other = Neighbour(velto.desktop, frame=(0, 0, 1000, 600))
    other.activate()
    velto.succeed("velto")
    wait_until(last.has_focus, "the window has the keyboard")
    wait_until(lambda: last.screen.is_above(last, other), "it is in front")
    assert set(velto.windows()) == {first, last}
    other.remove()


def test_the_first_start_opens_the_newest_web_page(velto, site):
    page, older = site.page("/newest", COLOUR), site.page("/older", COLOUR)
    write_visits(velto, [("velto-player://youtube?v=abcdefghijk", "", 0), (page, "", 1), (older, "", 2)])
    window = velto.window_from("velto")
    window.wait_until_shows(COLOUR)
    assert (site.count("/newest"), site.count("/older")) == (1, 0)
    assert velto.windows() == [window]


def test_with_an_empty_home_it_waits_and_sleeps(velto, site):
    velto.succeed("velto")
    pid = velto.pid()
    wait_until(velto.web_processes, "the spare page's process runs")
    wait_until(lambda: settled(pid), "it comes to rest")
    before = processes.wake_ups(pid)
    time.sleep(2)  # what is measured
    assert processes.wake_ups(pid) - before <= 2
    assert velto.windows() == []
    velto.show(site.page("/page", COLOUR), COLOUR)
    assert velto.pid() == pid


def settled(pid):
    before = processes.wake_ups(pid)
    time.sleep(0.5)
    return processes.wake_ups(pid) == before
