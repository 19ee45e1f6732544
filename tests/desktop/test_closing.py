"""Closing a window, and the page's say in it."""

import threading

import pytest

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


@pytest.mark.parametrize("page", ["", ASKS], ids=["plain", "untouched"])
def test_closes_at_once(running, site, page):
    """Also one that would ask, as long as nobody has touched it."""
    window = running.open(site.page("/page", COLOUR, page), *PLACE)
    window.wait_until_shows(COLOUR)
    window.close(patience=5)


def test_a_page_that_has_not_come_yet(running, site):
    gate = threading.Event()
    window = running.open(site.page("/page", COLOUR, gate=gate), *PLACE)
    site.wait_for("/page")
    window.close(patience=5)
    gate.set()


def touched(application, site, page):
    window = application.open(site.page("/page", COLOUR, page), *PLACE)
    window.wait_until_shows(COLOUR)
    wait_until(window.has_focus, "the window has the keyboard")
    application.desktop.input.click(*window.centre())
    return window


def dialog_of(window):
    return wait_until(lambda: window.screen.dialogs_of(window), "the page's question appears")[0]


def press(key):
    def answer(keyboard, dialog):
        wait_until(dialog.has_focus, "the question has the keyboard")
        keyboard.press(key)
    return answer


def click(part):
    """On one of the two buttons, which share the width of the dialog's lower edge."""
    def answer(pointer, dialog):
        frame = dialog.frame()
        pointer.click(frame.x + int(frame.width * part), frame.y + frame.height - 20)
    return answer


def close_box(_, dialog):
    dialog.ask_to_close()


@pytest.mark.parametrize("stay", [press("Escape"), click(0.75), close_box],
                         ids=["Escape", "click", "close box"])
@pytest.mark.parametrize("leave", [press("Return"), click(0.25)], ids=["Return", "click"])
def test_a_page_that_asks(running, site, stay, leave):
    window = touched(running, site, ASKS)
    site.wait_for("/clicked")
    for _ in range(2):
        window.ask_to_close()
        dialog = dialog_of(window)
        stay(running.desktop.input, dialog)
        dialog.wait_until_gone()
        window.wait_until_shows(COLOUR)
        assert window.is_open()
    running.desktop.input.click(*window.centre())
    site.wait_for("/clicked", times=2)

    window.ask_to_close()
    leave(running.desktop.input, dialog_of(window))
    window.wait_until_gone()
    assert running.windows() == []


def test_asking_again_while_the_question_is_open(running, site):
    window = touched(running, site, ASKS)
    site.wait_for("/clicked")
    window.ask_to_close()
    dialog = dialog_of(window)
    window.ask_to_close()
    window.ask_to_close()
    other = running.open(site.page("/other", OTHER), "--size", "300x300", "--x", "900")
    other.wait_until_shows(OTHER)
    other.close(patience=5)
    assert window.screen.dialogs_of(window) == [dialog]
    dialog.activate()
    running.desktop.input.press("Escape")
    dialog.wait_until_gone()
    running.desktop.input.click(*window.centre())
    site.wait_for("/clicked", times=2)
    assert window.screen.dialogs_of(window) == [], "once is enough"
    window.ask_to_close()
    dialog_of(window).activate()
    running.desktop.input.press("Return")
    window.wait_until_gone()


def test_a_hanging_page(running, site):
    other = running.open(site.page("/other", OTHER), "--size", "300x300", "--x", "900")
    window = touched(running, site, HANGS)
    site.wait_for("/hanging")
    window.close(patience=15)
    assert other.shows(OTHER)
    other.close(patience=5)
