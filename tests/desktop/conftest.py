"""Fixtures: desktops for a module, an application and a site for a test."""

import signal

import pytest

from support.application import Application
from support.desktop import Desktop
from support.neighbours import Neighbour
from support.site import Site


@pytest.fixture(scope="module")
def desktop():
    """One display of 1280 by 800 with a window manager."""
    started = Desktop.single()
    yield started
    started.stop()


@pytest.fixture
def site():
    started = Site()
    yield started
    started.stop()


@pytest.fixture
def velto(desktop):
    """An application with an empty home, which does not run yet."""
    installed = Application(desktop)
    yield installed
    installed.remove()


@pytest.fixture(scope="module")
def shared(desktop):
    installed = Application(desktop)
    yield installed
    installed.remove()


@pytest.fixture
def running(shared):
    """An application that runs for the whole module, with no window at the beginning of each test."""
    if not shared.pids():
        shared.start()
    pid = shared.pid()
    yield shared
    try:
        assert shared.pids() == [pid], "the application died"
        shared.close_windows()
    except BaseException:
        shared.end(signal.SIGKILL)
        raise


@pytest.fixture
def neighbour(desktop):
    """Another program's window, which has the keyboard."""
    window = Neighbour(desktop)
    window.activate()
    window.forget_events()
    yield window
    window.remove()
