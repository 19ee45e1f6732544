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


@pytest.mark.parametrize("fragment", ["", "#part"])
def test_a_server_that_is_started_later(running, fragment):
    port, logged = free_port(), len(running.log())
    window = running.open(f"http://localhost:{port}/page{fragment}", *PLACE)
    heading, body = told(running, window)
    assert heading == "Velto can’t connect to the server"
    assert body == (f"Velto can’t open the page “localhost:{port}/page{fragment}” because Velto can’t connect "
                    "to the server “localhost”.")
    assert window.title() == "localhost"
    for host in ("127.0.0.1", "[::1]"):
        assert f"loopback fallback: trying http://{host}:{port}/page" in running.log()[logged:]

    with Site(port=port) as site:
        site.page("/page", COLOUR)
        running.desktop.input.click(*button_in(window))
        window.wait_until_shows(COLOUR)
        wait_until(lambda: window.title() == "page", lambda: f"the page's title, not {window.title()}")


def test_trying_again_in_vain(running):
    """Each time all addresses are tried."""
    port = free_port()
    window = running.open(str(port), *PLACE)
    for _ in range(2):
        retry, logged = button_in(window), len(running.log())
        running.desktop.input.click(*retry)
        running.wait_until_logged(FALLBACK.format("[::1]", port), logged)
    assert "“localhost”" in told(running, window)[1]


@pytest.fixture(scope="module")
def certificate(tmp_path_factory):
    file = tmp_path_factory.mktemp("certificate") / "both.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=localhost",
                    "-keyout", file, "-out", file], check=True, capture_output=True)
    return file


@pytest.fixture
def untrusted(certificate):
    with Site(certificate=certificate) as site:
        yield site.url("/page", "localhost")


@pytest.fixture
def hanging_up():
    with Site(deaf_to=["127.0.0.1"]) as site:
        yield site.url("/page")


CONNECT, FIND = "Velto can’t connect to the server", "Velto can’t find the server"
SECURE, FILE = "Velto can’t establish a secure connection", "Velto can’t open that file"


@pytest.mark.parametrize("address, heading, body", [
    ("hanging_up", CONNECT, "because Velto can’t connect to the server “127.0.0.1”."),
    ("http://nowhere.invalid/", FIND, "“nowhere.invalid/” because Velto can’t find the server “nowhere.invalid”."),
    ("untrusted", SECURE, "because Velto can’t verify the identity of the server “localhost”."),
    ("file:///nowhere/at-all.html", FILE,
     "Velto runs in the macOS sandbox and can’t read “file:///nowhere/at-all.html”. "
     "Serve the folder over http and open the port instead."),
    ("gopher://nowhere.invalid/", "Velto can’t open the page",
     "“gopher://nowhere.invalid/” isn’t an address Velto can open."),
], ids=["hangs up", "unknown name", "certificate", "no file", "unknown scheme"])
def test_what_the_person_is_told(running, request, address, heading, body):
    url = address if ":" in address else request.getfixturevalue(address)
    said = told(running, running.open(url, *PLACE))
    assert said[0] == heading
    assert body in said[1]


def test_a_load_that_something_else_took_the_place_of(running, site):
    """It is cancelled, which nobody needs to be told."""
    gate, logged = threading.Event(), len(running.log())
    site.page("/slow", OTHER, gate=gate)
    site.page("/next", COLOUR)
    site.answer("/begun", lambda _: site.wait_for("/slow"))
    window = running.open(site.page("/first", OTHER, """<script>
        location = "/slow"; fetch("/begun").finally(() => location = "/next")</script>"""), *PLACE)
    window.wait_until_shows(COLOUR)
    running.wait_until_logged(f"didFinish: {site.url('/next')}", logged)
    gate.set()
    assert window.title() == "next"
    assert "didStartProvisionalNavigation: about" not in running.log()[logged:]


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
    other = running.open(site.page("/other", OTHER), "--size", "300x300", "--x", "900")
    other.wait_until_shows(OTHER)
    other.close(patience=5)
    slow.close(patience=5)
    ended.set()
