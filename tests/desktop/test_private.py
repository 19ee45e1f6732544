"""What is left on disk, and who may read it."""

import os

import pytest

from support.layouts import words_below
from support.waiting import wait_until

KEEPS = """<script>
document.cookie = "{mark}-cookie=1; max-age=9999"
localStorage.setItem("{mark}-item", "1")
const opening = indexedDB.open("{mark}-database")
opening.onupgradeneeded = () => opening.result.createObjectStore("things")
opening.onsuccess = () => {{
  const storing = opening.result.transaction("things", "readwrite")
  storing.objectStore("things").put("{mark}-thing", 1)
  storing.oncomplete = () => fetch("/{mark}-done?cookie=" + document.cookie)
}}
</script>"""
EVERYTHING = {"cookie", "item", "thing", "page"}
ORDINARY, PRIVATE = "zebra", "walrus"
COLOUR = "#2060c0"


def page_that_keeps(site, mark):
    return site.page(f"/{mark}-page", COLOUR, KEEPS.format(mark=mark), {"Cache-Control": "max-age=9999"})


def marks_below(folder, mark):
    return {kind for kind in EVERYTHING if words_below(folder, f"{mark}-{kind}")}


def test_incognito_leaves_nothing(velto, site):
    ordinary = velto.open(page_that_keeps(site, ORDINARY))
    private = velto.open(page_that_keeps(site, PRIVATE), "--incognito")
    for mark in (ORDINARY, PRIVATE):
        assert f"{mark}-cookie=1" in site.wait_for(f"/{mark}-done")["cookie"]
    assert ORDINARY not in site.wait_for(f"/{PRIVATE}-done")["cookie"], "it sees no stored cookies"
    wait_until(lambda: marks_below(velto.home, ORDINARY) == EVERYTHING,
               lambda: f"an ordinary window leaves its traces, not only {marks_below(velto.home, ORDINARY)}")
    assert marks_below(velto.home, PRIVATE) == set()
    ordinary.close()
    private.close()
    velto.end()
    wait_until(lambda: not velto.web_processes(), "the pages' processes end")
    assert marks_below(velto.home, ORDINARY) == EVERYTHING
    assert marks_below(velto.home, PRIVATE) == set()


def test_what_an_ordinary_window_keeps_is_there_again(velto, site):
    velto.open(page_that_keeps(site, ORDINARY))
    site.wait_for(f"/{ORDINARY}-done")
    velto.end()
    asks = f"<script>fetch('/kept?item=' + localStorage['{ORDINARY}-item'])</script>"
    velto.open(site.page("/later", COLOUR, asks))
    assert site.wait_for("/kept") == {"item": "1"}
    assert f"{ORDINARY}-cookie=1" in site.headers_of("/later")["Cookie"]


def test_private_windows_share_nothing(running, site):
    running.open(page_that_keeps(site, PRIVATE), "--incognito")
    site.wait_for(f"/{PRIVATE}-done")
    running.show(site.page("/other", COLOUR), COLOUR, "--incognito")
    assert "Cookie" not in site.headers_of("/other")


@pytest.fixture
def open_handed():
    """A person whose files everybody may read."""
    before = os.umask(0o022)
    yield
    os.umask(before)


def test_files_are_the_persons_own(open_handed, velto, site):
    velto.open(page_that_keeps(site, ORDINARY))
    site.wait_for(f"/{ORDINARY}-done")
    velto.end()
    velto.show(site.page("/again", COLOUR), COLOUR)
    seen, open_to_others = 0, []
    for base in ("data/Velto", "config/Velto", "cache/Velto", "runtime/velto"):
        for parent, folders, files in os.walk(velto.home / base):
            for path in [parent, *(os.path.join(parent, name) for name in files)]:
                seen += 1
                mode = os.lstat(path).st_mode
                if mode & 0o077 and not os.path.islink(path):
                    open_to_others.append((path, oct(mode)))
    assert seen > 10
    assert open_to_others == []
