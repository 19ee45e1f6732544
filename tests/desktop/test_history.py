"""Which pages are remembered, and that none is lost."""

import json
import signal

import pytest

from support.layouts import history_file, read_json
from support.site import free_port
from support.waiting import wait_until

COLOUR = "#2060c0"


def visits(application):
    """The addresses of the history with their titles, newest first. Half a file is a failure."""
    return [(entry["url"], entry["title"]) for entry in read_json(history_file(application)) or []]


def wait_for_visits(application, *expected):
    wait_until(lambda: visits(application) == list(expected),
               lambda: f"the visits {list(expected)}, not {visits(application)}")


def test_pages_are_remembered(velto, site):
    """One entry for each visit, the newest first; a reload replaces it and a redirect counts where it led."""
    page, other = site.page("/page", COLOUR), site.page("/other", COLOUR)
    untitled = site.answer("/untitled", lambda request: request._answer(b"<p>no title", {}))
    velto.open(page)
    wait_for_visits(velto, (page, "page"))
    velto.open(page)
    site.wait_for("/page", times=2)
    velto.open(other)
    wait_for_visits(velto, (other, "other"), (page, "page"))
    velto.open(untitled)
    wait_for_visits(velto, (untitled, "127.0.0.1"), (other, "other"), (page, "page"))
    velto.open(site.redirect("/moved", "/page?b=1/2"))
    wait_for_visits(velto, (f"{page}?b=1/2", "page"), (untitled, "127.0.0.1"), (other, "other"),
                    (page, "page"))
    assert "\\/" not in history_file(velto).read_text()


def test_what_is_no_visit(velto, site, tmp_path):
    (tmp_path / "file.html").write_text("<title>file</title>")
    page, private = site.page("/page", COLOUR), site.page("/private", COLOUR)
    velto.show(private, COLOUR, "--incognito")
    logged = len(velto.log())
    for address in (f"http://127.0.0.1:{free_port()}/", (tmp_path / "file.html").as_uri()):
        velto.open(address)
        velto.wait_until_logged("didF", logged)
        logged = len(velto.log())
    velto.open(page)
    wait_for_visits(velto, (page, "page"))


@pytest.mark.parametrize("by", [signal.SIGTERM, signal.SIGKILL])
def test_the_end_right_after_a_visit(velto, site, by):
    """An end in order loses nothing; after another one the file is whole."""
    path = history_file(velto)
    path.parent.mkdir(parents=True)
    old = [{"url": f"https://example.com/{number}", "title": "T" * 60, "timestamp": "2024-01-02T03:04:05Z"}
           for number in range(200_000)]
    path.write_text(json.dumps(old))
    page = site.page("/page", COLOUR)
    velto.open(page)
    velto.wait_until_logged(f"didFinish: {page}")
    velto.end(by)
    found = visits(velto)
    assert len(found) - len(old) in ([1] if by == signal.SIGTERM else [0, 1])
    assert found[-1] == ("https://example.com/199999", "T" * 60)
    if by == signal.SIGTERM:
        assert found[0] == (page, "page")
    assert [left.name for left in path.parent.glob(".velto-*")] == [] or by == signal.SIGKILL
