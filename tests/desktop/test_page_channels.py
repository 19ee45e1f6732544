"""What pages may say to the application, and what not."""

import time

import pytest

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "500x400", "--x", "100", "--y", "100"]
FRAME = (100, 100, 500, 400)
TELL = """
const say = (name, body) => webkit.messageHandlers[name].postMessage(body)
const report = (path, values) => fetch(path + "?" + new URLSearchParams(values))
"""
PIN = """
const pin = async (path, body) => {
  let values
  try {
    values = { is: JSON.stringify(await say("veltoWindow", body)) }
  } catch (error) {
    values = { error: error.message ?? error }
  }
  return report(path, values)
}
"""
REFUSED = "Only a Velto window's own page can pin it"


def script(*parts):
    return f"<script>{TELL}{''.join(parts)}</script>"


def opened(application, site, *parts, place=PLACE):
    window = application.open(site.page("/page", COLOUR, script(*parts)), *place)
    window.wait_until_shows(COLOUR)
    wait_until(window.has_focus, "the window has the keyboard")
    return window


def clicks(application, window):
    application.desktop.input.click(*window.centre())


def test_a_page_asks_for_a_window(running, site):
    window = opened(running, site, "onclick = () => say('velto', { url: new URL('/child', location).href })")
    site.page("/child", OTHER)
    clicks(running, window)
    child = wait_until(lambda: set(running.windows()) - {window}, "the window comes").pop()
    child.wait_until_shows(OTHER)
    wait_until(child.has_focus, "it has the keyboard")


@pytest.mark.parametrize("name, body, frame", [
    ("windowDrag", "{ deltaX: 30, deltaY: -20 }", (130, 80, 500, 400)),
    ("windowDrag", "{ action: 'move', deltaX: -7.0, deltaY: 11 }", (93, 111, 500, 400)),
    ("windowResize", "{ width: 450, height: 350 }", (100, 100, 450, 350)),
    ("windowResize", "{ width: 1, height: 350 }", (100, 100, 25, 350)),
])
def test_a_page_moves_and_sizes_its_window(running, site, name, body, frame):
    window = opened(running, site, f"onclick = () => say('{name}', {body})")
    clicks(running, window)
    window.wait_for_frame(*frame)


@pytest.mark.parametrize("body", [
    "null", "7", "'x'", "[1, 2]", "{}", "{ deltaX: 5 }", "{ deltaX: 5, deltaY: '5' }", "{ deltaX: true, deltaY: 5 }",
    "{ deltaX: NaN, deltaY: 5 }", "{ deltaX: 1, deltaY: Infinity }", "{ width: 5, deltaX: 5 }"])
def test_what_is_no_message_does_nothing(running, site, body):
    """Neither it nor what comes with it; what follows is heard."""
    window = opened(running, site, f"""onclick = () => {{
      for (const name of ["velto", "windowDrag", "windowResize", "veltoScroll"]) say(name, {body})
      say("windowDrag", {{ deltaX: 10, deltaY: 0 }})
    }}""")
    clicks(running, window)
    window.wait_for_frame(110, 100, 500, 400)
    assert running.windows() == [window]


def test_a_page_pins_its_window(running, site):
    window = opened(running, site, PIN, """
      addEventListener("veltowindow", event => report("/event", { is: event.detail.onTop }))
      const steps = [{ onTop: true }, {}, { onTop: 1 }, { onTop: false }, null]
      onclick = () => pin("/step", steps.shift())""")
    above = "_NET_WM_STATE_ABOVE"
    for step, pinned in enumerate([True, True, True, False, False], start=1):
        clicks(running, window)
        assert site.wait_for("/step", times=step) == {"is": f'{{"onTop":{str(pinned).lower()}}}'}
        wait_until(lambda: (above in window.states()) == pinned, lambda: f"pinned {pinned}: {window.states()}")
    assert [site.wait_for("/event", times=times)["is"] for times in (1, 2)] == ["true", "false"]


@pytest.mark.parametrize("frame", [
    "src='/inside'", "src='{other}'", "srcdoc=\"<script src='/hostile.js'></script>\"",
    "src='about:blank' id=blank", "src='/inside' sandbox='allow-scripts'"],
    ids=["same origin", "other origin", "srcdoc", "written", "sandboxed"])
def test_a_frame_cannot_pin_the_window(running, site, frame):
    """Neither in its own name nor with what it finds in the page around it."""
    hostile = TELL + PIN + f"pin('{site.url('/frame')}', {{ onTop: true }})"
    site.page("/inside", OTHER, f"<script>{hostile}</script>")
    site.answer("/hostile.js", lambda handler: handler.wfile.write(
        b"HTTP/1.1 200 OK\r\nContent-Type: text/javascript\r\n\r\n" + hostile.encode()))
    frame = frame.format(other=site.url("/inside", "localhost"))
    writes = "blank.contentDocument.write(`<script src='/hostile.js'></${'script'}>`)" if "blank" in frame else ""
    body = f"<iframe {frame} style='position:fixed;right:0;bottom:0;width:50px;height:50px'></iframe>{script(writes)}"
    window = running.open(site.page("/page", COLOUR, body), *PLACE)
    window.wait_until_shows(COLOUR)
    assert site.wait_for("/frame") == {"error": REFUSED}
    assert "_NET_WM_STATE_ABOVE" not in window.states()


def test_a_page_that_is_gone_cannot_pin_the_window(running, site):
    """It asks while the next one is on its way."""
    site.page("/next", OTHER, script(PIN, "pin('/now', {})"))
    window = opened(running, site, PIN, """
      onpagehide = () => { say("veltoWindow", { onTop: true }).catch(() => {}) }
      onclick = () => location = '/next'""")
    clicks(running, window)
    window.wait_until_shows(OTHER)
    assert site.wait_for("/now")["is"] in ('{"onTop":false}', '{"onTop":true}')


def test_a_flood_of_messages_is_its_own_pages_trouble(running, site):
    """Ten thousand a second; another window answers a click as fast as ever."""
    answers = "<script>onclick = () => fetch('/clicked')</script>"
    other = running.open(site.page("/other", OTHER, answers), "--size", "300x300", "--x", "900")
    other.wait_until_shows(OTHER)
    flooding = opened(running, site, """
      onclick = () => setInterval(() => {
        for (let i = 0; i < 50; i++) {
          say("windowDrag", "no")
          say("veltoScroll", { x: "no" })
          say("velto", [i])
          say("veltoWindow", { onTop: i }).catch(() => {})
        }
        fetch("/flood")
      }, 20)""")
    clicks(running, flooding)
    site.wait_for("/flood", times=5)
    taken = []
    for times in range(1, 10):
        began = time.monotonic()
        running.desktop.input.click(*other.centre())
        site.wait_for("/clicked", times=times)
        taken.append(time.monotonic() - began)
    assert sorted(taken)[len(taken) // 2] < 0.1, taken
    other.close(patience=5)


def test_a_page_that_is_scrolled_reports_it(running, site):
    """The report goes the same way as all others, and nothing else comes of it."""
    window = opened(running, site, """
      document.write("<div style='height:5000px'></div>")
      onclick = () => { scrollTo(0, 900); setTimeout(() => report("/at", { y: scrollY }), 400) }""")
    clicks(running, window)
    assert site.wait_for("/at") == {"y": "900"}
    window.close(patience=5)
