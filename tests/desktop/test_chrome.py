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


@pytest.fixture
def window(running, site):
    shown = running.show(site.page("/page", COLOUR, CLICKS), COLOUR, *PLACE)
    assert shown.frame() == FRAME
    return shown


@pytest.fixture
def pointer(desktop):
    return desktop.input


def in_root(window, at):
    frame = window.frame()
    return frame.x + at[0], frame.y + at[1]


def drag(pointer, window, start, dx, dy):
    x, y = in_root(window, start)
    pointer.drag((x, y), *((x + dx * part // 4, y + dy * part // 4) for part in (1, 2, 3, 4)))


def test_the_edges_move_the_window(window, pointer):
    for edge in [(250, 5), (250, 395), (5, 200), (495, 200), (22, 0), (0, 22)]:
        drag(pointer, window, edge, 37, -23)
        window.wait_for_frame(337, 177, 500, 400)
        drag(pointer, window, edge, -37, 23)
        window.wait_for_frame(*FRAME)


@pytest.mark.parametrize("corner, travel, frame", [
    ((3, 3), (40, 30), (340, 230, 460, 370)),
    ((497, 397), (40, 30), (300, 200, 540, 430)),
    ((497, 397), (-490, -390), (300, 200, 25, 25)),
    ((3, 3), (490, 390), (775, 575, 25, 25)),
])
def test_a_corner_sizes_the_window_and_the_opposite_one_stays(window, pointer, corner, travel, frame):
    drag(pointer, window, corner, *travel)
    window.wait_for_frame(*frame)


def test_a_player_keeps_its_shape(running, pointer):
    player = running.hand_over("velto-player://youtube?v=abcdefghijk")
    player.wait_for_frame(160, 87, 960, 540)
    wait_until(player.has_focus, "the player has the keyboard")
    wait_until(lambda: player.colour(15, 14) != "#000000", "its dots are drawn")
    drag(pointer, player, (957, 3), -10, 180)
    player.wait_for_frame(160, 267, 640, 360)
    drag(pointer, player, (3, 3), 600, 400)
    player.wait_for_frame(480, 447, 320, 180)


def test_where_the_page_begins(window, pointer, site):
    for y in (5, 15):
        pointer.click(*in_root(window, (250, y)))
    assert site.wait_for("/clicked") == {"y": "15"}
    assert window.frame() == FRAME


def grown(window, pointer):
    pointer.move(*in_root(window, ROW))
    wait_until(lambda: all(window.colour(x, y) == colour for x, y, colour in BESIDE_ITS_SIGN.values()),
               lambda: f"the dots grow: {[window.colour(x, y) for x, y, _ in BESIDE_ITS_SIGN.values()]}")


def press(window, pointer, dot):
    grown(window, pointer)
    pointer.click(*in_root(window, DOTS[dot]))


def test_the_dots(running, site, pointer):
    window = running.show(site.page("/page", COLOUR, ASKS), COLOUR, *PLACE)
    pointer.move(*window.centre())
    at_rest = window.picture()
    grown(window, pointer)
    pointer.move(*window.centre())
    wait_until(lambda: window.picture().tobytes() == at_rest.tobytes(), "the dots are as before")

    press(window, pointer, "zoom")
    window.wait_for_frame(0, 0, 1280, 800)
    pointer.move(600, 400)
    press(window, pointer, "zoom")
    window.wait_for_frame(*FRAME)

    press(window, pointer, "minimise")
    window.wait_until_gone()
    assert "_NET_WM_STATE_HIDDEN" in window.states()
    window.activate()
    window.wait_until_shows(COLOUR)
    assert window.frame() == FRAME

    pointer.click(*window.centre())
    site.wait_for("/clicked")
    press(window, pointer, "close")
    dialog = wait_until(lambda: window.screen.dialogs_of(window), "the page asks before it is left")[0]
    wait_until(dialog.has_focus, "the question has the keyboard")
    pointer.press("Return")
    window.wait_until_gone()


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
    window = running.show(site.page("/page", COLOUR), COLOUR, "--size", "500x400", "--x", "600", "--no-focus")
    neighbour.activate()
    grown(window, pointer)
    assert neighbour.has_focus()


def test_a_toast(running, site, desktop, pointer):
    """It lies above for a moment, and takes neither the keyboard nor the pointer."""
    page = site.page("/page", COLOUR, CLICKS)
    url = launch_url(page, incognito="true", cookieTicket="expired", y="0", height="400")
    running.succeed("velto-open", url)
    toast = wait_until(lambda: desktop.screen.toasts(), "the toast appears")[0]
    window = wait_until(lambda: [w for w in running.windows() if w != toast], "the page's window appears")[0]
    window.wait_until_shows(COLOUR)
    assert toast.frame().y == 48
    assert desktop.screen.is_above(toast, window)
    wait_until(window.has_focus, "the page has the keyboard")
    pointer.click(*toast.centre())
    site.wait_for("/clicked")
    assert window.has_focus() and not toast.has_focus()
    toast.wait_until_gone(4)
