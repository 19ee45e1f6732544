"""Pages that cannot be loaded: the way round by the loopback addresses, and what the person is told."""

import subprocess
import threading
import time

import pytest

from support.clipboard import text_of
from support.site import Site, free_port
from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "600x420", "--top-left"]
BUTTON = (0xFF, 0xFD, 0xF7)
FALLBACK = "loopback fallback: trying http://{}:{}/"


def button_in(window):
    return wait_until(lambda: window.middle_of(BUTTON), "the window offers to try again")


def told(application, window):
    """The heading and the body."""
    button_in(window)
    heading, body, retry = text_of(window, application.desktop.input).split("\n")
    assert retry == "Try Again"
    return heading, body


@pytest.mark.parametrize("address", ["127.0.0.1", "::1"])
def test_a_server_on_one_family_only(running, address):
    with Site(address) as site:
        site.page("/", COLOUR)
        running.open(str(site.port), *PLACE).wait_until_shows(COLOUR)


@pytest.mark.parametrize("deaf_to, arrives_at", [
    (["localhost"], ["127.0.0.1"]), (["localhost", "127.0.0.1"], ["127.0.0.1", "[::1]"])])
def test_the_way_round(running, deaf_to, arrives_at):
    logged = len(running.log())
    with Site("::", deaf_to=deaf_to) as site:
        site.page("/", COLOUR)
        running.open(str(site.port), *PLACE).wait_until_shows(COLOUR)
        running.wait_until_logged(f"didFinish: http://{arrives_at[-1]}:{site.port}/", logged)
        log = running.log()[logged:]
        assert [FALLBACK.format(host, site.port) in log for host in ("127.0.0.1", "[::1]")] == \
            [host in arrives_at for host in ("127.0.0.1", "[::1]")]
        assert site.headers_of("/")["Host"] == f"{arrives_at[-1]}:{site.port}"


def test_a_server_that_is_started_later(running):
    port, logged = free_port(), len(running.log())
    window = running.open(f"http://localhost:{port}/page#part", *PLACE)
    heading, body = told(running, window)
    assert heading == "Velto can’t connect to the server"
    assert body == (f"Velto can’t open the page “localhost:{port}/page#part” because Velto can’t connect "
                    "to the server “localhost”.")
    assert window.title() == "localhost"
    for host in ("127.0.0.1", "[::1]"):
        assert f"loopback fallback: trying http://{host}:{port}/page" in running.log()[logged:]

    with Site(port=port) as site:
        site.page("/page", COLOUR)
        running.desktop.input.click(*button_in(window))
        window.wait_until_shows(COLOUR)
        wait_until(lambda: window.title() == "page", lambda: f"the page's title, not {window.title()}")


@pytest.mark.parametrize("address, heading, body", [
    ("http://nowhere.invalid/", "Velto can’t find the server",
     "“nowhere.invalid/” because Velto can’t find the server “nowhere.invalid”."),
    ("file:///nowhere/at-all.html", "Velto can’t open that file",
     "Velto runs in the macOS sandbox and can’t read “file:///nowhere/at-all.html”. "
     "Serve the folder over http and open the port instead."),
    ("gopher://nowhere.invalid/", "Velto can’t open the page",
     "“gopher://nowhere.invalid/” isn’t an address Velto can open."),
], ids=["unknown name", "no file", "unknown scheme"])
def test_what_the_person_is_told(running, address, heading, body):
    said = told(running, running.open(address, *PLACE))
    assert said[0] == heading
    assert body in said[1]


def test_a_certificate_that_nobody_vouches_for(running, tmp_path):
    file = tmp_path / "both.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                    "-subj", "/CN=localhost", "-keyout", file, "-out", file], check=True, capture_output=True)
    with Site(certificate=file) as site:
        said = told(running, running.open(site.url("/page", "localhost"), *PLACE))
        assert said[0] == "Velto can’t establish a secure connection"
        assert "because Velto can’t verify the identity of the server “localhost”." in said[1]
        assert site.requests == []


def test_a_silent_server_is_given_time(silent_page):
    assert silent_page.window.middle_of(BUTTON) is None


@pytest.mark.at_the_end
def test_a_silent_server_is_given_up_in_the_end(silent_page):
    window = silent_page.window
    wait_until(lambda: window.middle_of(BUTTON), "the window gives up", 70)
    assert time.monotonic() - silent_page.since > 59
    heading, body = told(silent_page.application, window)
    assert heading == "The server stopped responding"
    assert "because the server “127.0.0.1” stopped responding." in body


def test_a_slow_server_keeps_nothing_else_waiting(running, site):
    """It sends one byte a second."""
    ended = threading.Event()

    def drip(handler):
        handler.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n")
        while not ended.wait(1):
            handler.wfile.write(b"x")

    slow = running.open(site.answer("/slow", drip), *PLACE)
    site.wait_for("/slow")
    running.show(site.page("/other", OTHER), OTHER, "--size", "300x300", "--x", "900").close(patience=5)
    slow.close(patience=5)
    ended.set()
