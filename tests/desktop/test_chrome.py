"""Moving, sizing and closing a window by hand."""

import pytest
from Xlib.ext import xfixes

from support.application import launch_url
from support.waiting import wait_until
from support.windows import Frame

COLOUR = "#2060c0"
FRAME = Frame(300, 200, 500, 400)
PLACE = ["--size", "500x400", "--x", "300", "--y", "200"]
CLICKS = "<script>onclick = event => fetch('/clicked?y=' + event.clientY)</script>"
ASKS = CLICKS + "<script>onbeforeunload = event => { event.preventDefault(); return 'x' }</script>"
# From the window's upper left corner.
ROW = (15, 14)
DOTS = {"close": (18, 14), "minimise": (40, 14), "zoom": (62, 14)}
BESIDE_ITS_SIGN = {"close": (18, 10, "#ff5e57"), "minimise": (40, 10, "#ffbd2e"), "zoom": (59, 11, "#28cc40")}


def opened(application, site, body=CLICKS):
    window = application.open(site.page("/page", COLOUR, body), *PLACE)
    window.wait_until_shows(COLOUR)
    assert window.frame() == FRAME
    return window


@pytest.fixture
def window(running, site):
    return opened(running, site)


@pytest.fixture
def pointer(desktop):
    return desktop.input


def in_root(window, at):
    frame = window.frame()
    return frame.x + at[0], frame.y + at[1]


def drag(pointer, window, start, dx, dy):
    x, y = in_root(window, start)
    pointer.drag((x, y), *((x + dx * part // 4, y + dy * part // 4) for part in (1, 2, 3, 4)))


@pytest.mark.parametrize("edge", [(250, 5), (250, 395), (5, 200), (495, 200), (22, 0), (0, 22)])
def test_an_edge_moves_the_window(window, pointer, edge):
    drag(pointer, window, edge, 37, -23)
    window.wait_for_frame(337, 177, 500, 400)
    drag(pointer, window, edge, -120, 81)
    window.wait_for_frame(217, 258, 500, 400)


@pytest.mark.parametrize("corner, frame", [
    ((3, 3), (340, 230, 460, 370)), ((497, 3), (300, 230, 540, 370)),
    ((3, 397), (340, 200, 460, 430)), ((497, 397), (300, 200, 540, 430)),
])
def test_a_corner_sizes_the_window_and_the_other_stays(window, pointer, corner, frame):
    drag(pointer, window, corner, 40, 30)
    window.wait_for_frame(*frame)


@pytest.mark.parametrize("corner, frame", [
    ((497, 397), (300, 200, 25, 25)), ((3, 3), (775, 575, 25, 25)), ((497, 3), (300, 575, 25, 25))])
def test_the_smallest_window(window, pointer, corner, frame):
    """The corner opposite stays however far the pointer goes."""
    across = -490 if corner[0] > 250 else 490
    down = -390 if corner[1] > 200 else 390
    drag(pointer, window, corner, across, down)
    window.wait_for_frame(*frame)


@pytest.mark.parametrize("corner, travel, frame", [
    ((957, 537), (-320, -30), (160, 87, 640, 360)),  # mostly sideways: the width leads
    ((957, 3), (-10, 180), (160, 267, 640, 360)),  # mostly upright: the height leads
    ((3, 3), (900, 500), (800, 447, 320, 180)),
], ids=["width", "height", "smallest"])
def test_a_player_keeps_its_shape(running, pointer, corner, travel, frame):
    player = running.hand_over("velto-player://youtube?v=abcdefghijk")
    player.wait_for_frame(160, 87, 960, 540)
    wait_until(player.has_focus, "the player has the keyboard")
    wait_until(lambda: player.colour(15, 14) != "#000000", "its dots are drawn")
    drag(pointer, player, corner, *travel)
    player.wait_for_frame(*frame)


def test_where_the_page_begins(window, pointer, site):
    for y in (5, 15):
        pointer.click(*in_root(window, (250, y)))
    assert site.wait_for("/clicked") == {"y": "15"}
    assert window.frame() == FRAME


def grown(window, pointer):
    pointer.move(*in_root(window, ROW))
    wait_until(lambda: all(window.colour(x, y) == colour for x, y, colour in BESIDE_ITS_SIGN.values()),
               lambda: f"the dots grow: {[window.colour(x, y) for x, y, _ in BESIDE_ITS_SIGN.values()]}")


def test_the_dots_grow_and_shrink(window, pointer):
    pointer.move(*window.centre())
    at_rest = window.picture()
    grown(window, pointer)
    pointer.move(*window.centre())
    wait_until(lambda: window.picture().tobytes() == at_rest.tobytes(), "the dots are as before")


def press(window, pointer, dot):
    grown(window, pointer)
    pointer.click(*in_root(window, DOTS[dot]))


def test_the_dot_that_closes(window, pointer):
    press(window, pointer, "close")
    window.wait_until_gone()


def test_closing_a_page_with_unsaved_work(running, site, pointer):
    window = opened(running, site, ASKS)
    pointer.click(*window.centre())
    site.wait_for("/clicked")
    press(window, pointer, "close")
    dialog = wait_until(lambda: window.screen.dialogs_of(window), "the page's question appears")[0]
    wait_until(dialog.has_focus, "the question has the keyboard")
    pointer.press("Escape")
    dialog.wait_until_gone()
    assert window.is_open()
    pointer.move(*window.centre())
    press(window, pointer, "close")
    wait_until(lambda: window.screen.dialogs_of(window), "it asks again")[0].activate()
    pointer.press("Return")
    window.wait_until_gone()


def test_the_dot_that_minimises(window, pointer):
    press(window, pointer, "minimise")
    window.wait_until_gone()
    assert "_NET_WM_STATE_HIDDEN" in window.states()
    window.activate()
    window.wait_until_shows(COLOUR)
    assert window.frame() == FRAME


def test_the_dot_that_zooms(window, pointer):
    press(window, pointer, "zoom")
    window.wait_for_frame(0, 0, 1280, 800)
    pointer.move(600, 400)
    press(window, pointer, "zoom")
    window.wait_for_frame(*FRAME)


def cursor_at(window, pointer, at):
    pointer.move(*in_root(window, at))
    window.screen.x.xfixes_query_version()
    image = xfixes.get_cursor_image(window.screen.x, window.screen.root)
    return image.width, image.height, image.xhot, image.yhot, tuple(image.cursor_image)


def test_the_pointer_tells_what_a_place_is_for(window, pointer):
    """Opposite corners share a form, which neither the others nor the edges and the page have."""
    places = {"page": [(250, 200)], "edge": [(250, 4), (4, 200), (495, 200), (250, 396)],
              "falling": [(5, 5), (495, 395)], "rising": [(495, 5), (5, 395)]}

    def forms():
        seen = {name: {cursor_at(window, pointer, at) for at in group} for name, group in places.items()}
        alone = all(len(found) == 1 for found in seen.values())
        return alone and len(set.union(*seen.values())) == len(places)

    wait_until(forms, "each kind of place has its own form of the pointer", 5)


def test_the_keyboard_stays_where_it_is(running, site, neighbour, pointer):
    """Over the dots of a window in the background, which grow all the same."""
    window = running.open(site.page("/page", COLOUR), "--size", "500x400", "--x", "600", "--no-focus")
    window.wait_until_shows(COLOUR)
    neighbour.activate()
    grown(window, pointer)
    assert neighbour.has_focus()


def badge(window):
    """Whether the page's lower right corner is covered."""
    frame = window.frame()
    return window.colour(frame.width - 16, frame.height - 26) != COLOUR


def test_the_zoom_is_shown_for_a_while(running, site, pointer):
    window = running.open(site.page("/page", COLOUR), *PLACE, "--zoom", "1.25")
    window.wait_until_shows(COLOUR)
    wait_until(lambda: badge(window), "the badge appears", 5)
    wait_until(lambda: not badge(window), "and goes", 5)


def test_a_toast(running, site, desktop, pointer):
    """It lies above for a moment, and takes neither the keyboard nor the pointer."""
    page = site.page("/page", COLOUR, CLICKS)
    running.succeed("velto-open", launch_url(page, incognito="true", cookieTicket="expired", y="0", height="400"))
    toast = wait_until(lambda: desktop.screen.toasts(), "the toast appears")[0]
    window = wait_until(lambda: [w for w in running.windows() if w != toast], "the page's window appears")[0]
    window.wait_until_shows(COLOUR)
    frame = toast.frame()
    assert (frame.y, frame.height, 160 <= frame.width <= 520) == (48, 40, True)
    assert abs(2 * frame.x + frame.width - 1280) <= 1
    assert desktop.screen.is_above(toast, window)
    wait_until(window.has_focus, "the page has the keyboard")
    pointer.click(*toast.centre())
    site.wait_for("/clicked")
    assert window.has_focus() and not toast.has_focus()
    toast.wait_until_gone(4)
