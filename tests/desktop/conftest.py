"""Fixtures: desktops for a module, an application and a site for a test."""

import signal
import socket
import time
from types import SimpleNamespace

import pytest

from support.application import Application
from support.desktop import Desktop, TwoDisplays
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
        shared.socket.unlink(missing_ok=True)  # or the next start would seem to be done before it is
        raise


@pytest.fixture(scope="module")
def displays():
    started = TwoDisplays()
    yield started
    started.stop()


@pytest.fixture
def beside(displays):
    """An application on two displays, DUMMY0 on the left."""
    displays.arrange()
    installed = Application(displays)
    yield installed
    installed.remove()


@pytest.fixture
def neighbour(desktop):
    """Another program's window, which has the keyboard."""
    window = Neighbour(desktop)
    window.activate()
    window.forget_events()
    yield window
    window.remove()


@pytest.fixture(scope="session")
def silent_page():
    """A window that waits for a silent server, on a desktop of its own. It gives up after a minute, while the
    other tests run.
    """
    desktop = Desktop.single()
    application = Application(desktop)
    with socket.create_server(("127.0.0.1", 0)) as server:
        since = time.monotonic()
        window = application.open(f"http://127.0.0.1:{server.getsockname()[1]}/", "--size", "600x420")
        yield SimpleNamespace(application=application, window=window, since=since)
        application.remove()
    desktop.stop()


def pytest_configure(config):
    config.addinivalue_line("markers", "at_the_end: waits for something that takes long and began earlier")


def pytest_collection_modifyitems(items):
    items.sort(key=lambda item: item.get_closest_marker("at_the_end") is not None)
