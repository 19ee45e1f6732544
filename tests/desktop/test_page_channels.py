"""What pages may say to the application, and what not."""

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "500x400", "--x", "100", "--y", "100"]
TELL = """
const say = (name, body) => webkit.messageHandlers[name].postMessage(body)
const report = (path, values) => fetch(path + "?" + new URLSearchParams(values))
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


def clicked(application, site, script):
    """A window whose page has this script, and a click on it."""
    window = application.show(site.page("/page", COLOUR, f"<script>{TELL}{script}</script>"), COLOUR, *PLACE)
    wait_until(window.has_focus, "the window has the keyboard")
    application.desktop.input.click(*window.centre())
    return window


def test_a_page_asks_for_a_window(running, site):
    site.page("/child", OTHER)
    window = clicked(running, site, "onclick = () => say('velto', { url: new URL('/child', location).href })")
    child = wait_until(lambda: set(running.windows()) - {window}, "the window comes").pop()
    child.wait_until_shows(OTHER)
    wait_until(child.has_focus, "it has the keyboard")


def test_what_is_no_message_does_nothing(running, site):
    """Neither it nor what comes with it; what follows is heard."""
    window = clicked(running, site, """onclick = () => {
      const bodies = [null, "x", [1], { deltaX: 5 }, { deltaX: NaN, deltaY: 5 }, { deltaX: 5, deltaY: 1 / 0 }]
      for (const body of bodies)
        for (const name of ["velto", "windowDrag", "windowResize", "veltoScroll"]) say(name, body)
      say("windowDrag", { action: "move", deltaX: 10.0, deltaY: -7 })
      say("windowResize", { width: 1, height: 350 })
    }""")
    window.wait_for_frame(110, 93, 25, 350)
    assert running.windows() == [window]


def test_a_page_pins_its_window(running, site):
    window = clicked(running, site, """
      addEventListener("veltowindow", event => report("/event", { is: event.detail.onTop }))
      const steps = [{ onTop: true }, {}, { onTop: 1 }, { onTop: false }, null]
      onclick = () => pin("/step", steps.shift())""")
    above = "_NET_WM_STATE_ABOVE"
    for step, pinned in enumerate([True, True, True, False, False], start=1):
        if step > 1:
            running.desktop.input.click(*window.centre())
        assert site.wait_for("/step", times=step) == {"is": f'{{"onTop":{str(pinned).lower()}}}'}
        wait_until(lambda: (above in window.states()) == pinned, lambda: f"{pinned}: {window.states()}")
    assert [site.wait_for("/event", times=times)["is"] for times in (1, 2)] == ["true", "false"]


def test_a_frame_cannot_pin_the_window(running, site):
    site.page("/inside", OTHER, f"<script>{TELL}pin('/frame', {{ onTop: true }})</script>")
    frame = "<iframe src='/inside' style='position:fixed;right:0;bottom:0;width:50px;height:50px'></iframe>"
    window = running.show(site.page("/page", COLOUR, frame), COLOUR, *PLACE)
    assert site.wait_for("/frame") == {"error": "Only a Velto window's own page can pin it"}
    assert "_NET_WM_STATE_ABOVE" not in window.states()
