"""Who has the keyboard, and what is on top."""

import pytest
from Xlib import X

from support.neighbours import Neighbour
from support.waiting import wait_until

COLOUR = "#2060c0"
PLACE = ["--size", "600x500", "--top-left"]
REPORTS_KEYS = "<script>onkeydown = event => fetch('/key?is=' + event.key)</script>"


def test_a_window_takes_the_keyboard(running, site, neighbour):
    """Until another one is clicked."""
    first, second = (
        running.show(site.page(path, COLOUR, REPORTS_KEYS.replace("/key", f"{path}-key")), COLOUR,
                     "--size", "300x200", "--x", x)
        for path, x in [("/first", "0"), ("/second", "400")])
    wait_until(second.has_focus, "the new window has the keyboard")
    assert second.screen.is_above(second, neighbour)
    running.desktop.input.press("b")
    assert site.wait_for("/second-key") == {"is": "b"}
    running.desktop.input.click(*first.centre())
    wait_until(first.has_focus, "the clicked window has the keyboard")
    running.desktop.input.press("a")
    assert site.wait_for("/first-key") == {"is": "a"}
    assert (site.count("/first-key"), site.count("/second-key")) == (1, 1)


def check_that_the_neighbour_keeps_the_keyboard(application, site, neighbour, window):
    application.desktop.input.press("v")
    wait_until(lambda: neighbour.events(X.KeyPress) or not neighbour.has_focus(), "the key arrives somewhere")
    assert neighbour.has_focus()
    assert not window.has_focus()
    assert window.screen.is_above(window, neighbour), "it is shown in front of the others"
    assert site.count("/key") == 0


@pytest.mark.parametrize("option", ["--background", "--no-focus"])
def test_the_keyboard_stays_where_it_is(running, site, neighbour, option):
    window = running.show(site.page("/page", COLOUR, REPORTS_KEYS), COLOUR, *PLACE, option)
    assert neighbour.events(X.FocusOut) == [], "not even for a moment"
    check_that_the_neighbour_keeps_the_keyboard(running, site, neighbour, window)
    running.desktop.input.click(*window.centre())
    wait_until(window.has_focus, "the clicked window has the keyboard")
    running.desktop.input.press("v")
    assert site.wait_for("/key") == {"is": "v"}


def test_the_keyboard_stays_when_the_application_starts(velto, site, neighbour):
    options = ["--background", "--no-focus", "--on-top"]
    window = velto.show(site.page("/page", COLOUR, REPORTS_KEYS), COLOUR, *PLACE, *options)
    check_that_the_neighbour_keeps_the_keyboard(velto, site, neighbour, window)


def test_on_top_as_granted(running, site, neighbour):
    window = running.show(site.page("/page", COLOUR), COLOUR, *PLACE, "--on-top")
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
    window = running.show(site.page("/page", COLOUR), COLOUR, *PLACE)
    neighbour.activate()
    wait_until(lambda: window.screen.is_above(neighbour, window), "the neighbour is in front")
    assert "_NET_WM_STATE_ABOVE" not in window.states()
