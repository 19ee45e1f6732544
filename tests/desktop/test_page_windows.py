"""Windows that pages open."""

import pytest

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "500x400", "--top-left"]


def on_click(call):
    return f"<script>onclick = () => {{ {call} }}</script>"


def opened_by_a_click(application, site, body, *arguments):
    site.page("/child", OTHER)
    opener = application.show(site.page("/page", COLOUR, body), COLOUR, *PLACE, *arguments)
    wait_until(opener.has_focus, "the page has the keyboard")
    application.desktop.input.click(*opener.centre())
    child = wait_until(lambda: set(application.windows()) - {opener}, "the page opens a window").pop()
    child.wait_until_shows(OTHER)
    return child


def test_window_open(running, site):
    features = "height=250,width=330,left=7,top=9"
    child = opened_by_a_click(running, site, on_click(f"open('/child', '', '{features}')"))
    assert child.frame()[2:] == (330, 250)
    wait_until(child.has_focus, "the new window has the keyboard")


LINK = "<a href=/child target=_blank style='position:fixed;inset:0'></a>"
FORM = """<form action=/child target=_blank>
<button style='position:fixed;inset:0;opacity:0;width:100%'></button></form>"""


@pytest.mark.parametrize("body, options", [
    (on_click("open('/child')"), ["--incognito"]), (LINK, []), (FORM, ["--incognito"]),
], ids=["open", "link", "form"])
def test_it_shares_the_cookies_of_its_opener(running, site, body, options):
    mark = f"of-{site.port}-{bool(options)}=1"
    opened_by_a_click(running, site, f"<script>document.cookie = '{mark}'</script>{body}", *options)
    assert mark in site.headers_of("/child")["Cookie"]
    assert len(running.windows()) == 2
    running.show(site.page("/stranger", COLOUR), COLOUR, "--size", "300x300", "--x", "900")
    assert (mark in site.headers_of("/stranger").get("Cookie", "")) == (not options)


def test_there_is_no_way_back_to_the_opener(running, site):
    body = "<script>fetch('/opener?is=' + (window.opener === null))</script>"
    site.page("/looks", OTHER, body)
    window = running.show(site.page("/page", COLOUR, on_click("open('/looks')")), COLOUR, *PLACE)
    running.desktop.input.click(*window.centre())
    assert site.wait_for("/opener") == {"is": "true"}
