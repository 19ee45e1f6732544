"""What is staged of Safari's data: asked about, brought over, and removed in the end."""

import json
import signal
import stat
import time

import pytest

from support.alerts import wait_for_alert
from support.layouts import read_json
from support.safari import CREATED, REFERENCE_DATE, Cookie, Visit, snapshot, write_files
from support.waiting import wait_until

COOKIES = [Cookie("127.0.0.1", "session", "from-safari"), Cookie(".elsewhere.example", "other", "1")]
VISITS = [Visit(f"https://a.example/{number}", f"Page {number}", 1700000000.75 + number)
          for number in range(1234)]


def imported(application):
    return read_json(application.home / "data" / "Velto" / "SafariHistory.json") or []


def wait_until_removed(application):
    wait_until(lambda: not snapshot(application).exists(), "the staged copy is removed")


def test_import(velto, site):
    backup = velto.home / "backup"
    write_files(backup, COOKIES, VISITS)
    velto.succeed("velto", "import-safari", "--from", str(backup))
    took_at = time.strftime("%-I:%M\u202f%p", time.localtime(snapshot(velto).stat().st_mtime))
    wait_for_alert(
        velto, "Import from Safari",
        "Sign-ins: 2 cookies for every site. 2 missing in Velto, 0 changed since the last import.\n"
        "History: 1,234 visits, 1,234 not imported yet.\n"
        f"Read from the snapshot `velto import-safari` took at {took_at}.", "Import", "Cancel")
    velto.desktop.input.press("Return")
    wait_until(velto.desktop.screen.toasts, "a toast tells what was imported")
    wait_until_removed(velto)
    assert [entry["url"] for entry in imported(velto)] == [visit.url for visit in reversed(VISITS)]

    velto.open(site.page("/page", "#30a030"))
    site.wait_for("/page")
    assert site.headers_of("/page").get("Cookie") == "session=from-safari"
    dates = velto.home / "data" / "Velto" / "WebKit" / "cookie-dates.json"
    wait_until(dates.exists, "the dates of the cookies are kept")
    created = {cookie["created"] for cookie in json.loads(dates.read_text())["cookies"]}
    assert created == {CREATED + REFERENCE_DATE}
    assert stat.S_IMODE(dates.stat().st_mode) == 0o600


@pytest.mark.parametrize("how", [signal.SIGTERM, signal.SIGKILL])
def test_copies_do_not_outlive_the_application(velto, how):
    write_files(snapshot(velto), COOKIES, VISITS)
    velto.succeed("velto-open", "velto://import-safari")
    wait_until(velto.desktop.screen.alerts, "the alert appears")
    velto.end(how)
    if how == signal.SIGKILL:
        assert snapshot(velto).exists()
        velto.socket.unlink(missing_ok=True)
        velto.start()
    wait_until_removed(velto)
    assert imported(velto) == []
