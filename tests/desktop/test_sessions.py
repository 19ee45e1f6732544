"""The windows are back after the application has ended, however it did."""

import signal

import pytest

from support.layouts import arrangement, history_file, read_json, session_file, words_below
from support.waiting import wait_until
from support.windows import Frame

WINDOWS = {"first": Frame(40, 60, 400, 500), "second": Frame(640, 30, 300, 200)}
COLOURS = {"first": "#2060c0", "second": "#a03030"}
OTHER = "#30a030"
PRIVATE = "walrus"
TALL = "<div style='height:5000px'></div>"
SCROLLS = TALL + "<script>onload = () => scrollTo(0, 700); onscroll = () => fetch('/scrolled')</script>"
TELLS = TALL + """<script>
onscroll = () => { if (scrollY === 700) fetch(`/back?zoom=${Math.round(100 * 300 / innerWidth)}`) }
</script>"""


def options(title):
    x, y, width, height = WINDOWS[title]
    return ["--size", f"{width}x{height}", "--x", str(x), "--y", str(y)]


def arrange(application, site):
    """An ordinary window, a private one, and one that is zoomed, scrolled and on top."""
    application.show(site.page("/first", COLOURS["first"]), COLOURS["first"], *options("first"))
    private = ["--incognito", "--size", "200x200", "--x", "1000"]
    application.show(site.page(f"/{PRIVATE}", OTHER), OTHER, *private)
    second = site.page("/second", COLOURS["second"], SCROLLS)
    application.show(second, COLOURS["second"], *options("second"), "--zoom", "150%", "--on-top")
    site.wait_for("/scrolled")
    site.page("/second", COLOURS["second"], TELLS)


def recorded(application):
    """The windows on record by their titles."""
    session = read_json(session_file(application)) or {"windows": []}
    return {window["title"]: window for window in session["windows"]}


def what_is_seen(application):
    return {title: (window["rect"], window["zoom"], window["pinned"])
            for title, window in recorded(application).items()}


def is_recorded(application):
    windows = recorded(application)
    places = {title: Frame(*(window["rect"][key] for key in "xywh")) for title, window in windows.items()}
    return places == WINDOWS and windows["second"]["scroll"] == {"x": 0, "y": 700}


def wait_for_arrangement(application, frames):
    wait_until(lambda: arrangement(application) == frames,
               lambda: f"the windows {frames} instead of {arrangement(application)}")


@pytest.mark.parametrize("by", [signal.SIGTERM, signal.SIGKILL])
def test_windows_are_back(velto, site, by):
    arrange(velto, site)
    if by == signal.SIGKILL:  # the record follows the last change after a while
        wait_until(lambda: is_recorded(velto), lambda: f"the windows are recorded: {recorded(velto)}")
    velto.end(by)
    assert is_recorded(velto), recorded(velto)
    assert words_below(velto.home, PRIVATE) == []
    asked = site.count(f"/{PRIVATE}")

    velto.succeed("velto")
    wait_for_arrangement(velto, WINDOWS)
    for window in velto.windows():
        window.wait_until_shows(COLOURS[window.title()])
        assert ("_NET_WM_STATE_ABOVE" in window.states()) == (window.title() == "second")
    assert site.wait_for("/back") == {"zoom": "150"}
    assert site.count(f"/{PRIVATE}") == asked


def test_again_and_again_without_drift(velto, site):
    arrange(velto, site)
    velto.end()
    first = what_is_seen(velto)
    for by in (signal.SIGTERM, signal.SIGKILL, signal.SIGTERM):
        velto.succeed("velto")
        wait_for_arrangement(velto, WINDOWS)
        velto.end(by)
        assert what_is_seen(velto) == first


def test_a_page_that_is_asked_for_keeps_the_session_closed(velto, site):
    arrange(velto, site)
    velto.end()
    window = velto.show(site.page("/wanted", OTHER), OTHER)
    assert velto.windows() == [window]


def test_windows_that_the_person_closed_stay_closed(velto, site):
    arrange(velto, site)
    velto.window_at(WINDOWS["second"]).close()
    velto.end()
    velto.succeed("velto")
    wait_for_arrangement(velto, {"first": WINDOWS["first"]})
    velto.close_windows()
    velto.end()
    assert recorded(velto) == {}
    velto.succeed("velto")
    # Requests are carried out in their order, so that what this one shows is all there is to come.
    window = velto.show(site.page("/later", OTHER), OTHER)
    assert velto.windows() == [window]


def test_only_private_windows_leave_no_file(velto, site):
    velto.show(site.page(f"/{PRIVATE}", OTHER), OTHER, "--incognito")
    velto.succeed("velto", "layouts", "save", "Private")
    alert = wait_until(velto.desktop.screen.alerts, "the alert says that there is nothing to save")[0]
    velto.desktop.input.press("Return")
    alert.wait_until_gone()
    velto.end()
    assert not session_file(velto).exists()
    assert words_below(velto.home, PRIVATE) == []


def newer(path):
    path.write_text('{"schemaVersion": 2, "windows": "of a later time"}')


def half(path):
    path.write_bytes(path.read_bytes()[:path.stat().st_size // 2])


def no_page(path):
    path.write_text(path.read_text().replace('"url" : "http', '"url" : "\\u0000 nothing'))


@pytest.mark.parametrize("spoil", [newer, half, no_page])
def test_a_damaged_session_stays_until_there_is_another(velto, site, spoil):
    arrange(velto, site)
    velto.end()
    history_file(velto).unlink()  # else the newest page of it would be opened instead
    spoil(session_file(velto))
    before = session_file(velto).read_bytes()
    velto.start()
    velto.succeed("velto")
    velto.end()
    assert session_file(velto).read_bytes() == before
    velto.show(site.page("/later", OTHER), OTHER)
    velto.end()
    assert recorded(velto).keys() == {"later"}


def test_a_folder_in_place_of_the_session(velto, site):
    session_file(velto).mkdir(parents=True)
    velto.show(site.page("/page", OTHER), OTHER)
    velto.end()
    velto.show(site.page("/page", OTHER), OTHER)
    velto.end()
    assert session_file(velto).is_dir()
    assert list(session_file(velto).parent.glob(".velto-*")) == []
