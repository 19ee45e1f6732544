"""Who has the keyboard, and what is on top."""

import pytest
from Xlib import X

from support.neighbours import Neighbour
from support.waiting import wait_until

COLOUR = "#2060c0"
PLACE = ["--size", "600x500", "--top-left"]
REPORTS_KEYS = "<script>onkeydown = event => fetch('/key?is=' + event.key)</script>"


def test_a_window_takes_the_keyboard(running, site, neighbour):
    window = running.open(site.page("/page", COLOUR, REPORTS_KEYS), *PLACE)
    window.wait_until_shows(COLOUR)
    wait_until(window.has_focus, "the new window has the keyboard")
    assert window.screen.is_above(window, neighbour)
    running.desktop.input.press("v")
    assert site.wait_for("/key") == {"is": "v"}


@pytest.mark.parametrize("options", ["--background", "--no-focus", "--background --no-focus --on-top"])
@pytest.mark.parametrize("application", ["running", "velto"])
def test_the_keyboard_stays_where_it_is(request, site, neighbour, options, application):
    application = request.getfixturevalue(application)
    page = site.page("/page", COLOUR, REPORTS_KEYS)
    window = application.open(page, *PLACE, *options.split())
    window.wait_until_shows(COLOUR)
    application.desktop.input.press("v")
    wait_until(lambda: neighbour.events(X.KeyPress) or not neighbour.has_focus(), "the key arrives somewhere")
    assert neighbour.has_focus()
    assert not window.has_focus()
    assert window.screen.is_above(window, neighbour), "it is shown in front of the others"
    assert site.count("/key") == 0


@pytest.mark.parametrize("option", ["--background", "--no-focus"])
def test_not_even_for_a_moment(running, site, neighbour, option):
    running.open(site.page("/page", COLOUR), *PLACE, option).wait_until_shows(COLOUR)
    assert neighbour.events(X.FocusOut) == []


@pytest.mark.parametrize("option", ["--background", "--no-focus"])
def test_a_click_brings_the_keyboard(running, site, neighbour, option):
    window = running.open(site.page("/page", COLOUR, REPORTS_KEYS), *PLACE, option)
    window.wait_until_shows(COLOUR)
    running.desktop.input.click(*window.centre())
    wait_until(window.has_focus, "the clicked window has the keyboard")
    running.desktop.input.press("v")
    assert site.wait_for("/key") == {"is": "v"}


def test_on_top_as_granted(running, site, neighbour):
    window = running.open(site.page("/page", COLOUR), *PLACE, "--on-top")
    window.wait_until_shows(COLOUR)
    wait_until(lambda: "_NET_WM_STATE_ABOVE" in window.states(), "it is kept above")
    wait_until(window.is_on_all_desktops, "it is on all desktops")
    neighbour.activate()
    late = Neighbour(running.desktop)
    late.activate()
    for other in (neighbour, late):
        assert window.screen.is_above(window, other)
    assert window.shows(COLOUR)
    late.remove()


def test_an_ordinary_window_goes_below(running, site, neighbour):
    window = running.open(site.page("/page", COLOUR), *PLACE)
    window.wait_until_shows(COLOUR)
    neighbour.activate()
    wait_until(lambda: window.screen.is_above(neighbour, window), "the neighbour is in front")
    assert "_NET_WM_STATE_ABOVE" not in window.states()


def test_the_page_gets_the_keys_of_its_window_only(running, site):
    first = running.open(site.page("/first", COLOUR, REPORTS_KEYS.replace("/key", "/first-key")), "--size",
                         "300x200", "--top-left")
    first.wait_until_shows(COLOUR)
    second = running.open(site.page("/second", COLOUR, REPORTS_KEYS.replace("/key", "/second-key")), "--size",
                          "300x200", "--x", "400")
    second.wait_until_shows(COLOUR)
    wait_until(second.has_focus, "the second window has the keyboard")
    running.desktop.input.press("b")
    assert site.wait_for("/second-key") == {"is": "b"}
    running.desktop.input.click(*first.centre())
    wait_until(first.has_focus, "the first window has the keyboard")
    running.desktop.input.press("a")
    assert site.wait_for("/first-key") == {"is": "a"}
    assert site.count("/second-key") == 1
