"""What a URL opens, and when it raises a window instead."""

import pytest
from Xlib import X

from support.application import launch_url
from support.waiting import wait_until

FIRST, SECOND, THIRD = "#a03030", "#30a030", "#3030a0"


@pytest.mark.parametrize("scheme, keys, frame", [
    ("hovrel", {"width": 420, "height": 300, "x": 0, "y": 0}, (0, 0, 420, 300)),
    ("velto", {"width": "500&width=900", "x": 5}, (5, 0, 500, 700)),
])
def test_launch_url(running, site, scheme, keys, frame):
    window = running.hand_over(launch_url(site.page("/page", FIRST), scheme, **keys))
    window.wait_for_frame(*frame)
    window.wait_until_shows(FIRST)


def test_plain_address(running, site):
    window = running.hand_over(site.page("/page", FIRST))
    window.wait_for_frame(190, 33, 900, 700)
    window.wait_until_shows(FIRST)
    wait_until(lambda: window.title() == "page", lambda: f"the page's title, not {window.title()}")


def test_local_file(running):
    file = running.home / "a page.html"
    file.write_text(f"<body style='background:{SECOND}'>")
    running.show("./a page.html", SECOND)


def test_several_urls_at_once(running, site):
    pages = [launch_url(site.page(f"/{i}", colour), width=200, height=150, x=i * 250, y=0)
             for i, colour in enumerate([FIRST, SECOND, THIRD])]
    running.succeed("velto-open", *pages)
    for i, colour in enumerate([FIRST, SECOND, THIRD]):
        running.window_at((i * 250, 0, 200, 150)).wait_until_shows(colour)


# Each with the page that it must not open.
USELESS = [
    "VELTO://open?url={page}",
    "velto://open?width=500",
    "velto://open?player=youtube&v=short&url={page}",
    "velto://import-safari?sync=true",
    "ftp://{address}",
    "no url",
    "",
]


def test_what_opens_nothing_hinders_nothing(running, site):
    for number, argument in enumerate(USELESS):
        page = site.page(f"/unwanted-{number}", FIRST)
        running.succeed("velto-open", argument.format(page=page, address=page.partition("://")[2]))
    # Requests are carried out in their order, so that what this one shows is all there is to come.
    later = running.hand_over(launch_url(site.page("/wanted", SECOND)))
    later.wait_until_shows(SECOND)
    assert running.windows() == [later]
    assert [path for path, _ in site.requests if path != "/wanted"] == []


def test_reuse(running, site):
    page = site.page("/page", FIRST)
    window = running.show(page, FIRST, "--size", "420x300", "--top-left")
    cover = running.show(site.page("/cover", SECOND), SECOND, "--size", "600x400", "--top-left")
    running.succeed("velto", page + "#section", "--reuse", "--size", "300x200", "--x", "9")
    window.wait_until_shows(FIRST)
    wait_until(window.has_focus, "the raised window has the keyboard")
    assert window.frame() == (0, 0, 420, 300)
    assert set(running.windows()) == {window, cover}
    private = running.show(page, FIRST, "--reuse", "--incognito")
    assert set(running.windows()) == {window, cover, private}


def test_reuse_brings_an_iconified_window_back(running, site):
    page = site.page("/page", FIRST)
    window = running.show(page, FIRST)
    window.screen.tell_manager(window.handle, "WM_CHANGE_STATE", 3)
    window.wait_until_gone()
    running.succeed("velto", page, "--reuse", "--on-top")
    wait_until(window.is_open, "the window is back")
    window.wait_until_shows(FIRST)
    wait_until(window.has_focus, "it has the keyboard")
    wait_until(lambda: "_NET_WM_STATE_ABOVE" in window.states(), "it is kept above")


def test_reuse_with_no_focus_raises_only(running, site, neighbour):
    page = site.page("/page", FIRST)
    window = running.show(page, FIRST, "--size", "600x500", "--top-left", "--background")
    neighbour.activate()
    wait_until(lambda: neighbour.screen.is_above(neighbour, window), "the neighbour is in front")
    neighbour.forget_events()
    running.succeed("velto", page, "--reuse", "--no-focus")
    wait_until(lambda: window.screen.is_above(window, neighbour), "the window is in front")
    assert neighbour.has_focus()
    assert neighbour.events(X.FocusOut) == []
