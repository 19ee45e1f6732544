"""How the application starts, comes forward, and ends."""

import json
import os
import signal
import time

import pytest

from support import processes
from support.application import Application, launch_url
from support.desktop import Desktop
from support.neighbours import Neighbour
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


def test_twenty_windows_in_quick_succession(velto, site):
    wanted = grid(site, 20)
    velto.start()
    starts = [velto.begin("velto-open", url) for url, _, _ in wanted]
    assert {start.wait(30) for start in starts} == {0}
    for _, frame, colour in wanted:
        velto.window_at(frame).wait_until_shows(colour)
    assert len(velto.windows()) == 20


@pytest.mark.parametrize("program", ["velto-open", "velto-app"])
def test_a_killed_one_is_replaced(velto, site, program):
    velto.open(site.page("/first", COLOUR)).wait_until_shows(COLOUR)
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
    velto.open(site.page("/page", COLOUR)).wait_until_shows(COLOUR)
    process.send_signal(by)
    assert process.wait(10) == 0
    assert not velto.socket.exists()
    wait_until(lambda: not processes.of_runtime_directory(velto.runtime), "its helper processes end with it")


def test_it_ends_when_the_display_goes(site):
    desktop = Desktop.single()
    velto = Application(desktop)
    try:
        velto.open(site.page("/page", COLOUR)).wait_until_shows(COLOUR)
        desktop.stop()
        wait_until(lambda: not velto.pids(), "the application ends")
    finally:
        desktop.stop()
        velto.remove()


# Refusals: what is wrong, what the reason has to name.


def too_open(runtime):
    (runtime / "velto").mkdir(0o700)
    (runtime / "velto").chmod(0o755)
    return "open to other users"


def a_link(runtime):
    (runtime / "elsewhere").mkdir(0o700)
    (runtime / "velto").symlink_to("elsewhere")
    return "symbolic link"


def a_file(runtime):
    (runtime / "velto").touch(0o600)
    return "not a folder"


def somebody_elses(runtime):
    if os.geteuid() != 0:
        pytest.skip("only the superuser can give a folder away")
    (runtime / "velto").mkdir(0o700)
    os.chown(runtime / "velto", 12345, 12345)
    return "another user"


@pytest.mark.parametrize("program", ["velto", "velto-app"])
@pytest.mark.parametrize("spoil", [too_open, a_link, a_file, somebody_elses])
def test_an_unsafe_runtime_directory_is_refused(velto, site, program, spoil):
    reason = spoil(velto.runtime)
    done = velto.run(program, site.page("/page", COLOUR))
    refused(done, reason)
    wait_until(lambda: not velto.pids(), "nothing goes on running")
    assert velto.windows() == []


@pytest.mark.parametrize("program", ["velto", "velto-open", "velto-app"])
@pytest.mark.parametrize("display", [None, ":4321", "nonsense"])
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
    last = velto.open(site.page("/last", COLOUR), "--size", "300x200", "--x", "400")
    last.wait_until_shows(COLOUR)
    other = Neighbour(velto.desktop, frame=(0, 0, 1000, 600))
    other.activate()
    velto.succeed("velto")
    wait_until(last.has_focus, "the window has the keyboard")
    wait_until(lambda: last.screen.is_above(last, other), "it is in front")
    assert set(velto.windows()) == {first, last}
    other.remove()


def test_the_first_start_opens_the_newest_web_page(velto, site):
    page, older = site.page("/newest", COLOUR), site.page("/older", COLOUR)
    entries = [{"url": url, "title": "", "timestamp": f"2024-01-0{day}T00:00:00Z"}
               for url, day in [("velto-player://youtube?v=abcdefghijk", 3), (page, 2), (older, 1)]]
    (velto.home / "data" / "Velto").mkdir(parents=True)
    (velto.home / "data" / "Velto" / "History.json").write_text(json.dumps(entries))
    window = velto.window_from("velto")
    window.wait_until_shows(COLOUR)
    assert (site.count("/newest"), site.count("/older")) == (1, 0)
    assert velto.windows() == [window]


def test_a_page_asked_for_keeps_the_history_closed(velto, site):
    entries = [{"url": site.page("/unwanted", COLOUR), "title": "", "timestamp": "2024-01-01T00:00:00Z"}]
    (velto.home / "data" / "Velto").mkdir(parents=True)
    (velto.home / "data" / "Velto" / "History.json").write_text(json.dumps(entries))
    velto.open(site.page("/wanted", COLOUR)).wait_until_shows(COLOUR)
    assert len(velto.windows()) == 1
    assert site.count("/unwanted") == 0


def test_with_an_empty_home_it_waits_and_sleeps(velto, site):
    velto.succeed("velto")
    pid = velto.pid()
    wait_until(velto.web_processes, "the spare page's process runs")
    wait_until(lambda: settled(pid), "it comes to rest")
    before = processes.wake_ups(pid)
    time.sleep(2)  # what is measured
    assert processes.wake_ups(pid) - before <= 2
    assert velto.windows() == []
    velto.open(site.page("/page", COLOUR)).wait_until_shows(COLOUR)
    assert velto.pid() == pid


def settled(pid):
    before = processes.wake_ups(pid)
    time.sleep(0.5)
    return processes.wake_ups(pid) == before


def test_closing_the_last_window_keeps_it_running(velto, site):
    velto.open(site.page("/page", COLOUR)).close()
    pid = velto.pid()
    velto.open(site.page("/page", COLOUR)).wait_until_shows(COLOUR)
    assert velto.pid() == pid
