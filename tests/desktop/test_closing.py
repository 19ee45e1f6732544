"""Closing a window, and the page's say in it."""

import threading

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
ASKS = """<script>
onbeforeunload = event => { event.preventDefault(); event.returnValue = "x"; return "x" }
onclick = () => fetch("/clicked")
</script>"""
HANGS = """<script>
onclick = async () => { await fetch("/hanging"); while (true); }
</script>"""
PLACE = ["--size", "600x500", "--top-left"]


def test_an_untouched_page_has_no_say(running, site):
    running.show(site.page("/page", COLOUR, ASKS), COLOUR, *PLACE).close(patience=5)


def test_a_page_that_has_not_come_yet(running, site):
    gate = threading.Event()
    window = running.open(site.page("/page", COLOUR, gate=gate), *PLACE)
    site.wait_for("/page")
    window.close(patience=5)
    gate.set()


def touched(application, site, page):
    window = application.show(site.page("/page", COLOUR, page), COLOUR, *PLACE)
    wait_until(window.has_focus, "the window has the keyboard")
    application.desktop.input.click(*window.centre())
    return window


def dialog_of(window):
    return wait_until(lambda: window.screen.dialogs_of(window), "the page's question appears")[0]


def test_a_page_that_asks(running, site):
    controls = running.desktop.input
    window = touched(running, site, ASKS)
    site.wait_for("/clicked")

    def asked():
        window.ask_to_close()
        dialog = dialog_of(window)
        wait_until(dialog.has_focus, "the question has the keyboard")
        return dialog

    def click(dialog, part):
        """On one of the two buttons, which share the width of the dialog's lower edge."""
        frame = dialog.frame()
        controls.click(frame.x + int(frame.width * part), frame.y + frame.height - 20)

    for stay in (lambda dialog: controls.press("Escape"), lambda dialog: click(dialog, 0.75),
                 lambda dialog: dialog.ask_to_close()):
        dialog = asked()
        stay(dialog)
        dialog.wait_until_gone()
        window.wait_until_shows(COLOUR)
    controls.click(*window.centre())
    site.wait_for("/clicked", times=2)
    click(asked(), 0.25)
    window.wait_until_gone()
    assert running.windows() == []


def test_a_hanging_page(running, site):
    other = running.open(site.page("/other", OTHER), "--size", "300x300", "--x", "900")
    window = touched(running, site, HANGS)
    site.wait_for("/hanging")
    window.close(patience=15)
    assert other.shows(OTHER)
    other.close(patience=5)
