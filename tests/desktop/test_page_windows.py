"""Windows that pages open."""

import re

import pytest

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "500x400", "--top-left"]


def on_click(call):
    return f"<script>onclick = () => {{ {call} }}</script>"


def opened_by_a_click(application, site, body, *arguments):
    site.page("/child", OTHER)
    opener = application.open(site.page("/page", COLOUR, body), *PLACE, *arguments)
    opener.wait_until_shows(COLOUR)
    wait_until(opener.has_focus, "the page has the keyboard")
    application.desktop.input.click(*opener.centre())
    child = wait_until(lambda: set(application.windows()) - {opener}, "the page opens a window").pop()
    child.wait_until_shows(OTHER)
    return child


@pytest.mark.parametrize("features, size", [
    ("width=300,height=200", (300, 200)),
    ("popup,height=250,width=330,left=7,top=9", (330, 250)),
    ("width=1e9,height=200", None),
])
def test_window_open(running, site, features, size):
    child = opened_by_a_click(running, site, on_click(f"open('/child', '', '{features}')"))
    frame = child.frame()
    if size:
        assert frame[2:] == size
    assert frame.width <= 1280 and frame.height <= 800
    wait_until(child.has_focus, "the new window has the keyboard")


@pytest.mark.parametrize("body", [
    on_click("open('/child')"),
    "<a href=/child target=_blank style='position:fixed;inset:0'></a>",
    "<form action=/child target=_blank><button style='position:fixed;inset:0;opacity:0;width:100%'></button></form>",
], ids=["open", "link", "form"])
@pytest.mark.parametrize("options", [[], ["--incognito"]], ids=["ordinary", "private"])
def test_it_shares_the_cookies_of_its_opener(running, site, body, options):
    mark = f"of-{site.port}-{bool(options)}=1"
    opened_by_a_click(running, site, f"<script>document.cookie = '{mark}'</script>{body}", *options)
    assert mark in site.headers_of("/child")["Cookie"]
    assert len(running.windows()) == 2
    running.open(site.page("/stranger", COLOUR), "--size", "300x300", "--x", "900").wait_until_shows(COLOUR)
    assert (mark in site.headers_of("/stranger").get("Cookie", "")) == (not options)


def test_there_is_no_way_back_to_the_opener(running, site):
    body = "<script>fetch('/opener?is=' + (window.opener === null))</script>"
    site.page("/looks", OTHER, body)
    window = running.open(site.page("/page", COLOUR, on_click("open('/looks')")), *PLACE)
    window.wait_until_shows(COLOUR)
    running.desktop.input.click(*window.centre())
    assert site.wait_for("/opener") == {"is": "true"}


def test_a_page_that_opens_windows_without_end(running, site):
    """Without a click it gets a handful, and those get none; the refused ones are counted."""
    logged, tries = len(running.log()), 60
    site.page("/again", OTHER, "<script>for (let i = 0; i < 4; i++) open('/more'); fetch('/done')</script>")
    loop = f"<script>for (let i = 0; i < {tries}; i++) open('/again?' + i); fetch('/done')</script>"
    running.open(site.page("/page", COLOUR, loop), *PLACE)
    site.wait_for("/done", times=6)

    def refused():
        return sum(int(count) for count in re.findall(r"refused (\d+) windows", running.log()[logged:]))

    wait_until(lambda: refused() == tries - 5 + 5 * 4, lambda: f"all the others are refused, not {refused()}")
    assert (len(running.windows()), site.count("/again"), site.count("/more")) == (6, 5, 0)
