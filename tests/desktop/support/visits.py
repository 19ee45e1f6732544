"""Histories that the tests make up, and the history page with something of the tests inside."""

import json
import re
import shutil
from datetime import datetime, timedelta, timezone

from .application import PROGRAMS, Application

POLICY = re.compile(r'<meta http-equiv="Content-Security-Policy"[^>]*>')


def write_visits(application, visits, name="History.json"):
    """Each visit is an address, a title and how many days ago it was; newest first."""
    noon = datetime.now().astimezone().replace(hour=12, minute=0, second=0, microsecond=0)
    entries = [{"url": url, "title": title,
                "timestamp": f"{(noon - timedelta(days=days)).astimezone(timezone.utc):%Y-%m-%dT%H:%M:%SZ}"}
               for url, title, days in visits]
    folder = application.home / "data" / "Velto"
    folder.mkdir(mode=0o700, parents=True, exist_ok=True)
    (folder / name).write_text(json.dumps(entries, ensure_ascii=False))


def page_with_script(desktop, folder, script, change=lambda page: page):
    """An application whose history page lets the script of a test run in it, which its own page does not."""
    shutil.copytree(PROGRAMS, folder / "bin")
    shutil.copytree(PROGRAMS.parent / "share", folder / "share")
    page = folder / "share" / "velto" / "HistoryPage.html"
    html, removed = POLICY.subn("", page.read_text())
    assert removed == 1
    page.write_text(change(html).replace("</body>", f"<script>{script}</script></body>"))
    return Application(desktop, folder / "bin")
