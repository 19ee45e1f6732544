"""Which pages are remembered, and that none is lost."""

import json
import signal

import pytest

from support.site import free_port
from support.waiting import wait_until

COLOUR = "#2060c0"


def visits(application):
    """The addresses of the history with their titles, newest first. Half a file is a failure."""
    path = application.home / "data" / "Velto" / "History.json"
    entries = json.loads(path.read_text()) if path.is_file() else []
    return [(entry["url"], entry["title"]) for entry in entries]


def wait_for_visits(application, *expected):
    wait_until(lambda: visits(application) == list(expected),
               lambda: f"the visits {list(expected)}, not {visits(application)}")


def wait_until_finished(application, page):
    application.wait_until_logged(f"didFinish: {page}")


def test_pages_are_remembered(velto, site):
    """One entry for each visit, the newest first; a reload replaces it and a redirect counts where it led."""
    page, other = site.page("/page", COLOUR), site.page("/other", COLOUR)
    untitled = site.answer("/untitled", lambda request: request._answer(b"<p>no title", {}))
    def redirects(request):
        request.send_response(302)
        request.send_header("Location", "/page?b=1/2")
        request.send_header("Content-Length", "0")
        request.end_headers()
    velto.open(page)
    wait_for_visits(velto, (page, "page"))
    velto.open(page)
    site.wait_for("/page", times=2)
    velto.open(other)
    wait_for_visits(velto, (other, "other"), (page, "page"))
    velto.open(untitled)
    wait_for_visits(velto, (untitled, "127.0.0.1"), (other, "other"), (page, "page"))
    velto.open(site.answer("/moved", redirects))
    wait_for_visits(velto, (f"{page}?b=1/2", "page"), (untitled, "127.0.0.1"), (other, "other"), (page, "page"))
    assert "\\/" not in (velto.home / "data" / "Velto" / "History.json").read_text()


def test_what_is_no_visit(velto, site, tmp_path):
    (tmp_path / "file.html").write_text("<title>file</title>")
    page, private = site.page("/page", COLOUR), site.page("/private", COLOUR)
    velto.open(private, "--incognito").wait_until_shows(COLOUR)
    logged = len(velto.log())
    for address in (f"http://127.0.0.1:{free_port()}/", (tmp_path / "file.html").as_uri()):
        velto.open(address)
        velto.wait_until_logged("didF", logged)
        logged = len(velto.log())
    velto.open(page)
    wait_for_visits(velto, (page, "page"))


def test_what_others_wrote_is_kept(velto, site):
    """Whoever edits the file is honoured; what cannot be read is replaced."""
    page, other = site.page("/page", COLOUR), site.page("/other", COLOUR)
    velto.open(page)
    wait_for_visits(velto, (page, "page"))
    path = velto.home / "data" / "Velto" / "History.json"
    path.write_text('[{"title":"T","url":"https://a/","timestamp":"2024-01-02T03:04:05+01:00","more":1}]')
    velto.open(other)
    wait_for_visits(velto, (other, "other"), ("https://a/", "T"))
    path.write_text(path.read_text()[:-1])
    velto.open(page)
    wait_until(lambda: "/page" in path.read_text(), "the page is remembered")
    wait_for_visits(velto, (page, "page"))


@pytest.mark.parametrize("by", [signal.SIGTERM, signal.SIGKILL])
def test_the_end_right_after_a_visit(velto, site, by):
    """An end in order loses nothing; after another one the file is whole."""
    path = velto.home / "data" / "Velto" / "History.json"
    path.parent.mkdir(parents=True)
    old = [{"url": f"https://example.com/{number}", "title": "T" * 60, "timestamp": "2024-01-02T03:04:05Z"}
           for number in range(200_000)]
    path.write_text(json.dumps(old))
    page = site.page("/page", COLOUR)
    velto.open(page)
    wait_until_finished(velto, page)
    velto.end(by)
    found = visits(velto)
    assert len(found) - len(old) in ([1] if by == signal.SIGTERM else [0, 1])
    assert found[-1] == ("https://example.com/199999", "T" * 60)
    if by == signal.SIGTERM:
        assert found[0] == (page, "page")
    assert [left.name for left in path.parent.glob(".velto-*")] == [] or by == signal.SIGKILL
