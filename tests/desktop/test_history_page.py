"""The page that shows the whole history."""

import re
from pathlib import Path
from urllib.parse import parse_qs, urlsplit

import pytest

from support.application import PROGRAMS
from support.clipboard import Clipboard
from support.visits import page_with_script, write_visits
from support.waiting import wait_until

COLOUR = "#2060c0"
AXE = Path(__file__).parent / "third_party" / "axe-core" / "axe.min.js"
PAGE = PROGRAMS.parent / "share" / "velto" / "HistoryPage.html"
MARKUP = "<b>bold</b><img src=x onerror=\"document.title='run'\">"


class History:
    """A window with the page, and the keyboard that works in it."""

    def __init__(self, application, url="velto://history"):
        self.keyboard = application.desktop.input
        self.window = application.hand_over(url)
        self.clipboard = Clipboard(self.window.screen.x)

    def press(self, *keys):
        for key in keys:
            self.keyboard.press(*key.split("+"))

    def text(self):
        """All that it shows, or nothing while it does not answer. The keyboard leaves the field for it."""
        self.press("Escape", "Escape")
        return self.text_around_the_field()

    def text_around_the_field(self):
        self.clipboard.clear()
        self.press("Control_L+a", "Control_L+c")
        return self.clipboard.text() if self.is_copied() else ""

    def is_copied(self, patience=1):
        try:
            return wait_until(self.clipboard.is_filled, "it is copied", patience)
        except AssertionError:
            return False

    def wait_for(self, *texts):
        """All of them. Returns all that it shows."""
        shown = []
        wait_until(lambda: shown.append(self.text()) or all(text in shown[-1] for text in texts),
                   lambda: f"{texts} in {shown[-1]!r}")
        return shown[-1]

    def leave_search(self):
        """With the field empty. The next key may come at once."""
        wait_until(self.text, "the page answers")

    def search(self, text):
        self.leave_search()
        self.press("slash")
        self.keyboard.type(text)

    def copied(self, *keys, patience=20):
        """The address that is copied after these keys; none when nothing is chosen."""
        self.clipboard.clear()
        self.press(*keys, "c")
        return self.clipboard.text() if self.is_copied(patience) else None

    def wait_until_copied(self, address, *keys):
        """Until the keys lead to the address, because what is searched comes by and by."""
        found = []
        wait_until(lambda: found.append(self.copied(*keys, patience=1)) or found[-1] == address,
                   lambda: f"{address}, not {found[-1]}")


@pytest.fixture
def visited(running, site):
    """Some days of visits of two sites and from Safari."""
    write_visits(running, [(site.url("/first"), "First page", 0), ("https://docs.example.org/b", MARKUP, 0),
                           ("https://www.example.com/Z%C3%BCrich", "Züricher Wetter – heute", 1),
                           ("javascript:alert(1)", "No page", 1),
                           ("https://notexample.com/old", "", 800)])
    write_visits(running, [("https://news.example.com/s", "Naïve café", 0)], "SafariHistory.json")
    return running


def test_what_was_visited_is_grouped_by_day(visited):
    text = History(visited).wait_for("6 visits")
    lines = text.split("\n")
    days = [line for line in lines if re.fullmatch(r"Today|Yesterday|\w+day, .*\d{4}", line)]
    # The first one may stand there twice.
    assert days[-3:-1] == ["Today", "Yesterday"] and len(days) in (3, 4), text
    assert MARKUP in lines and "example.com/Zürich" in lines and "notexample.com/old" in lines
    assert (lines.count("Velto"), lines.count("Safari")) == (5, 1)


def test_a_search_is_answered_while_one_types(visited, site):
    history = History(visited)
    history.wait_for("6 visits")
    for typed, address in [("ZURICHER wetter", "https://www.example.com/Z%C3%BCrich"),
                           ("cafe naive", "https://news.example.com/s"),
                           ("docs.exam", "https://docs.example.org/b"),
                           ("notexample", "https://notexample.com/old")]:
        history.search(typed)
        history.wait_until_copied(address, "Down", "Home")
    history.search("nowhere")
    history.press("Tab", "Tab")
    wait_until(lambda: "No Matches" in history.text_around_the_field(), "it says that nothing was found")
    history.press("Escape")
    history.wait_for("6 visits")
    history.search("first")
    history.press("Down", "Return")
    site.wait_for("/first")


def test_the_keyboard_goes_everywhere(visited):
    history = History(visited)
    history.wait_for("6 visits")
    addresses = [history.copied("Down") for _ in range(6)]
    assert len(set(addresses)) == 6 and addresses[-1] == "https://notexample.com/old"
    assert history.copied("Down") == addresses[-1]
    assert history.copied("Home") == addresses[0]
    assert history.copied("End") == addresses[-1]
    assert history.copied("Prior") == addresses[0]
    assert history.copied("Next") == addresses[-1]
    assert history.copied("Up", "Up") == addresses[-3]
    history.press("Home", "Up")
    history.keyboard.type("zur")
    history.wait_until_copied("https://www.example.com/Z%C3%BCrich", "Down")


def test_one_site_and_then_all(visited):
    history = History(visited, "velto://history?domain=www.Example.com")
    text = history.wait_for("2 visits", "news.example.com/s")
    assert "notexample" not in text and "docs" not in text
    history.press("slash", "Tab", "Return")
    history.wait_for("6 visits")
    nothing = History(visited, "velto://history?domain=other.example")
    nothing.wait_for("No History", "other.example")


def test_nothing_was_visited(velto):
    History(velto).wait_for("No History", "Pages that you visit appear here.")


def test_a_very_large_history(velto):
    count = 300_000
    write_visits(velto, ((f"https://site{at % 999}.example/page/{at}", f"Page {at} of many", at // 4000)
                         for at in range(count)))
    history = History(velto)
    wait_until(lambda: f"{count:,} visits" in history.text(), "all of it is there", 60)
    history.search("page/299999")
    history.wait_until_copied("https://site299.example/page/299999", "Down", "Home")
    history.leave_search()
    assert history.copied("End") == "https://site299.example/page/299999"
    assert history.copied("Prior", "Next") == "https://site299.example/page/299999"
    assert "Page 299998 of many" in history.text()
    assert history.copied("Home") == "https://site0.example/page/0"


def test_what_went_wrong_is_told(desktop, tmp_path):
    """The copy asks at the wrong place, and may not read what it gets."""
    velto = page_with_script(desktop, tmp_path, "",
                             lambda page: page.replace("`/data.json", "`//elsewhere/data.json"))
    try:
        write_visits(velto, [("https://a.example/", "A page", 0)])
        History(velto).wait_for("The history could not be loaded", "Try Again")
    finally:
        velto.remove()


CHECK = """
addEventListener("load", async () => {{
  const until = async condition => {{
    while (!condition()) await new Promise(resume => setTimeout(resume, 20))
  }}
  const told = []
  const check = async state => {{
    const {{ violations }} = await axe.run()
    told.push(...violations.map(each => `${{state}}: ${{each.id}}: ${{each.nodes[0].html}}`))
  }}
  await until(() => document.querySelector("#count").textContent === "2 visits")
  await check("list")
  document.querySelector(".row").click()
  await until(() => document.querySelector(".chosen"))
  await check("chosen")
  search.value = "xyz"
  search.dispatchEvent(new Event("input"))
  await until(() => !notice.hidden)
  await check("no match")
  const {{ matches: dark }} = matchMedia("(prefers-color-scheme: dark)")
  location.href = "{report}?" + new URLSearchParams({{ told: JSON.stringify(told), dark }})
}})"""


@pytest.mark.parametrize("theme, width, height", [
    ("", 300, 600), ("Adwaita:dark", 300, 600), ("", 1100, 700)])
def test_everybody_can_use_it(desktop, site, tmp_path, theme, width, height):
    velto = page_with_script(desktop, tmp_path, AXE.read_text() + CHECK.format(report=site.url("/report")))
    try:
        if theme:
            velto.environment["GTK_THEME"] = theme
        write_visits(velto, [("https://a.example/", "A page", 0), ("https://b.example/", MARKUP, 3)])
        velto.hand_over(f"velto://open?url=velto-history%3A%2F%2Fhistory%2F&width={width}&height={height}")
        assert site.wait_for("/report") == {"told": "[]", "dark": str(bool(theme)).lower()}
    finally:
        velto.remove()


def test_its_policy_lets_its_own_style_and_script_in_and_nothing_else():
    policy = re.search(r'Content-Security-Policy" content="([^"]*)"', PAGE.read_text())[1]
    rules = dict(rule.strip().split(" ", 1) for rule in policy.split(";"))
    assert rules["default-src"] == rules["base-uri"] == rules["form-action"] == "'none'"
    assert rules["connect-src"] == "'self'"
    for kind in ("style-src", "script-src"):
        assert re.fullmatch(r"'sha256-[\w+/]{43}='", rules[kind])


# ---- Pages of the web

SECRET = "zebra"
DATA = "velto-history://history/data.json"
ATTEMPTS = """<script>
const data = "%(data)s"
const attempts = {
  fetch: async from => (await fetch(from)).text(),
  opaque: async from => (await fetch(from, { mode: "no-cors" })).text(),
  xhr: from => new Promise((resolve, reject) => {
    const request = new XMLHttpRequest()
    request.onload = () => resolve(request.responseText)
    request.onerror = reject
    request.open("GET", from)
    request.send()
  }),
  frame: from => new Promise(resolve => {
    const frame = document.createElement("iframe")
    frame.onload = () => resolve(frame.contentDocument?.documentElement.outerHTML ?? "")
    frame.src = from
    document.body.append(frame)
    setTimeout(resolve, 3000, "")
  }),
  framedPage: () => attempts.frame("velto-history://history/"),
  image: from => new Promise((resolve, reject) => {
    const image = new Image()
    image.onload = () => resolve("%(secret)s")
    image.onerror = reject
    image.src = from
  }),
  script: from => new Promise((resolve, reject) => {
    let seen = ""
    Object.defineProperty(Object.prototype, "t", { set(value) { seen += value }, configurable: true })
    const script = document.createElement("script")
    script.onload = () => resolve(seen)
    script.onerror = reject
    script.src = from
    document.body.append(script)
  }),
  module: async from => JSON.stringify((await import(from)).default),
  style: from => new Promise((resolve, reject) => {
    const link = document.createElement("link")
    link.rel = "stylesheet"
    link.onload = () => resolve([...link.sheet.cssRules].map(each => each.cssText).join())
    link.onerror = reject
    link.href = from
    document.head.append(link)
  }),
  worker: from => new Promise((resolve, reject) => {
    const inside = `fetch("${from}").then(it => it.text()).then(postMessage, () => postMessage(""))`
    const worker = new Worker(URL.createObjectURL(new Blob([inside])))
    worker.onmessage = message => resolve(message.data)
    worker.onerror = reject
  }),
  window: async from => { const opened = open(from); return opened ? opened.document.body.textContent : "" },
}
const tryAll = async (where, from) => {
  for (const [name, attempt] of Object.entries(attempts)) {
    const tooLate = new Promise(end => setTimeout(end, 5000, ""))
    const result = await Promise.race([attempt(from).catch(() => ""), tooLate])
    const told = { how: `${name} ${where}`, read: String(result).includes("%(secret)s") }
    await fetch(`/tried?${new URLSearchParams(told)}`)
  }
}
(async () => {
  await tryAll("of its own", new URL("/own", location).href)
  await tryAll("directly", data)
  await tryAll("by a redirect", "/redirect")
  fetch("/done")
})()
</script>"""


@pytest.fixture
def secretive(velto):
    write_visits(velto, [("https://zebra.example/", SECRET, 0)])
    return velto


def tried(site):
    queries = [parse_qs(urlsplit(asked).query) for asked, _ in site.requests if asked.startswith("/tried?")]
    return {query["how"][0]: query["read"][0] for query in queries}


def test_pages_of_the_web_cannot_read_it(secretive, site):
    site.redirect("/redirect", DATA)
    site.page("/own", COLOUR, SECRET, {"Content-Type": "text/plain"})
    secretive.open(site.page("/attacker", COLOUR, ATTEMPTS % {"data": DATA, "secret": SECRET}))
    wait_until(lambda: site.count("/done"), lambda: f"all was tried: {tried(site)}", 90)
    assert len(tried(site)) == 33
    # What they try works with what they may read.
    assert {how for how, read in tried(site).items() if read != "false"} == {
        f"{how} of its own" for how in ("fetch", "opaque", "xhr", "frame", "worker")}


NOTE = """<script>
const note = text => navigator.sendBeacon("/tried?" + new URLSearchParams({
  how: "race", read: text.includes("%(secret)s") }))
"""
RACE = NOTE + """
const ask = () => fetch("%(data)s").then(it => it.text()).then(note, () => 0)
addEventListener("pagehide", () => navigator.sendBeacon("/over"))
ask()
for (let at = 0; at < 50; ++at) setTimeout(ask, at)
location.href = "%(target)s"
for (let at = 0; at < 50; ++at) ask()
</script>"""
# The engine hands even a refusal to one who waits for the answer.
PATIENT_RACE = NOTE + """
const ask = () => {
  const request = new XMLHttpRequest()
  request.open("GET", "%(data)s", false)
  try { request.send() } catch { return }
  note(request.responseText)
  if (request.status !== 200) return
  stop()
  navigator.sendBeacon("/over")
}
setTimeout(() => {
  location.href = "%(target)s"
  const end = Date.now() + 1500
  const again = () => { ask(); if (Date.now() < end) setTimeout(again); else navigator.sendBeacon("/over") }
  addEventListener("pagehide", () => navigator.sendBeacon("/over"))
  again()
}, 100)
</script>"""


@pytest.mark.parametrize("race", [RACE, PATIENT_RACE], ids=["many at once", "one that waits"])
@pytest.mark.parametrize("target", ["velto-history://history/", DATA, DATA + "?x", "/redirect"])
def test_a_page_that_leaves_for_it_cannot_read_it_on_its_way(secretive, site, target, race):
    site.redirect("/redirect", DATA)
    attack = race % {"data": DATA, "secret": SECRET, "target": target}
    window = secretive.open(site.page("/attacker", COLOUR, attack))
    wait_until(lambda: site.count("/over"), "it is over")
    secretive.show(site.page("/later", COLOUR), COLOUR)
    assert window.is_open()
    assert not [asked for asked, _ in site.requests if asked.startswith("/tried?") and "read=true" in asked]
