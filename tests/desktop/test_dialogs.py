"""What pages ask the person: dialogs and files."""

import pytest

from support.waiting import wait_until

COLOUR, OTHER = "#2060c0", "#208040"
PLACE = ["--size", "600x500", "--top-left"]
ASKS = """<script>
onclick = async () => fetch("/answer?" + new URLSearchParams({{ is: String({question}) }}))
</script>"""


def opened(application, site, body):
    window = application.show(site.page("/page", COLOUR, body), COLOUR, *PLACE)
    wait_until(window.has_focus, "the window has the keyboard")
    return window


def asked(application, site, question):
    """A click on the page leads to the question, in a dialog that has the keyboard."""
    window = opened(application, site, ASKS.format(question=question))
    application.desktop.input.click(*window.centre())
    return window, dialog_of(window)


def dialog_of(window):
    dialog = wait_until(lambda: window.screen.dialogs_of(window), "the page's question appears")[0]
    wait_until(dialog.has_focus, "the question has the keyboard")
    return dialog


@pytest.mark.parametrize("question, text, key, answer", [
    ("alert('x')", "", "Escape", "undefined"),
    ("confirm('x')", "", "Return", "true"),
    ("confirm('x')", "", "Escape", "false"),
    ("prompt('Name?', 'Ada')", "Grace H.", "Return", "Grace H."),
], ids=lambda value: value or "-")
def test_the_script_gets_the_answer(running, site, question, text, key, answer):
    window, dialog = asked(running, site, question)
    running.desktop.input.type(text)
    running.desktop.input.press(key)
    assert site.wait_for("/answer") == {"is": answer}
    dialog.wait_until_gone()
    wait_until(window.has_focus, "the page has the keyboard again")


def test_a_question_holds_up_its_own_page_only(running, site):
    ticks = "<script>setInterval(() => fetch('/tick'), 50)</script>"
    other = running.show(site.page("/other", OTHER, ticks), OTHER, "--size", "300x300", "--x", "900")
    window, dialog = asked(running, site, "confirm('x')")
    site.wait_for("/tick", times=site.count("/tick") + 5)
    assert (site.count("/answer"), dialog.is_open()) == (0, True)
    other.close(patience=5)
    window.close(patience=5)
    dialog.wait_until_gone()


def test_a_page_that_asks_without_end_can_be_closed(running, site):
    page = "<body onload=\"for (;;) document.body.title = prompt('again', 'x'.repeat(99999))\">"
    window = running.open(site.page("/page", COLOUR, page), *PLACE)
    for _ in range(3):
        dialog = dialog_of(window)
        running.desktop.input.press("Return")
        wait_until(lambda: window.screen.dialogs_of(window) != [dialog], "the next one comes")
    dialog_of(window)
    window.close(patience=5)
    wait_until(lambda: not window.screen.dialogs_of(window), "its question goes as well")


def test_nothing_is_left_of_it_when_the_person_stays(running, site):
    window = opened(running, site, """<script>
        onbeforeunload = event => { event.preventDefault(); return 'x' }
        onclick = () => alert('x')</script>""")
    running.desktop.input.click(*window.centre())
    first = dialog_of(window)
    window.ask_to_close()
    first.wait_until_gone()
    second = dialog_of(window)
    running.desktop.input.press("Escape")
    second.wait_until_gone()
    wait_until(window.has_focus, "the page has the keyboard again")
    window.wait_until_shows(COLOUR)
    assert window.screen.dialogs_of(window) == []
    window.ask_to_close()
    dialog_of(window)
    running.desktop.input.press("Return")
    window.wait_until_gone()


FILES = """<input type=file id=files style='position:fixed;inset:0;opacity:0;width:100%;height:100%'>
<script>
files.onchange = async () => fetch("/chosen?" + new URLSearchParams({
  name: files.files[0].name, text: await files.files[0].text() }))
onkeydown = () => fetch("/now?files=" + files.files.length)
</script>"""


def wait_until_still(panel):
    """It goes on painting for a while after it has come up: the list of files, the row that is chosen."""
    looks = []

    def is_still():
        looks.append(panel.picture().tobytes())
        return len(looks) > 10 and len(set(looks[-10:])) == 1

    wait_until(is_still, "the panel changes no more")
    return looks[-1]


def type_path(keyboard, panel, path):
    """The first slash brings up the field for it."""
    before = wait_until_still(panel)
    keyboard.type("/")
    wait_until(lambda: panel.picture().tobytes() != before, "the field for a path appears")
    wait_until_still(panel)
    keyboard.type(str(path)[1:])
    keyboard.press("Return")


def test_files(running, site):
    (running.home / "to-choose").mkdir()
    file = running.home / "to-choose" / "one.txt"
    file.write_text("text of one.txt")
    controls = running.desktop.input
    window = opened(running, site, FILES)
    controls.click(*window.centre())
    panel = dialog_of(window)
    controls.press("Escape")
    panel.wait_until_gone()
    wait_until(window.has_focus, "the page has the keyboard again")
    controls.press("v")
    assert site.wait_for("/now") == {"files": "0"}

    controls.click(*window.centre())
    panel = dialog_of(window)
    type_path(controls, panel, file)
    assert site.wait_for("/chosen") == {"name": "one.txt", "text": "text of one.txt"}
    panel.wait_until_gone()
