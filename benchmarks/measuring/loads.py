"""Pages that time how long they take to load, and load again and again."""

import http.server
import os
import shutil
import threading
from urllib.parse import parse_qs, urlsplit

from .desk import NotMeasured

PATIENCE = 60  # seconds
SCRIPTS = ("video-button-style.js", "video-button.js", "scroll-reporter.js")
_PAGE = """<!doctype html><html lang="en"><head><meta charset="utf-8"><title>Load</title></head><body>{body}<script>
onload = () => setTimeout(async () => {{
  const timing = performance.timing
  const more = await (await fetch("/took?ms=" + (performance.getEntriesByType("navigation")[0]?.duration ??
    timing.loadEventEnd - timing.navigationStart))).text()
  if (more) location.reload()
}})
</script></body></html>
"""
_PARAGRAPH = "<p>Some words of a page with <a href='#'>a link</a>, <b>emphasis</b> and a little more.</p>\n"


class _Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):
        """A program that is ended hangs up."""


class TimedSite:
    def __init__(self):
        site = self

        class Handler(http.server.BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self):
                asked = urlsplit(self.path)
                if asked.path == "/took":
                    self._answer("more" if site._took(float(parse_qs(asked.query)["ms"][0])) else "")
                else:
                    self._answer(_PAGE.format(body=_PARAGRAPH * 300))

            def _answer(self, text):
                body = text.encode()
                self.send_response(200)
                self.send_header("Content-Type", "text/html; charset=utf-8")
                self.send_header("Cache-Control", "no-store")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self._server = _Server(("127.0.0.1", 0), Handler)
        self.url = f"http://127.0.0.1:{self._server.server_port}/"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def expect(self, loads):
        """The next page loads so many times."""
        self._times, self._wanted, self._done = [], loads, threading.Event()

    def times(self):
        """Milliseconds of each load but the first, when all are done."""
        if not self._done.wait(PATIENCE):
            raise NotMeasured("a page did not load")
        return self._times[1:]

    def _took(self, milliseconds):
        """Whether the page is to load once more."""
        self._times.append(milliseconds)
        if len(self._times) < self._wanted:
            return True
        self._done.set()
        return False


def copy_without_scripts(programs, folder):
    """The same programs with none of the scripts that every page gets. Gives the new folder of programs."""
    shutil.copytree(programs, os.path.join(folder, "bin"))
    shutil.copytree(os.path.join(programs, "..", "share"), os.path.join(folder, "share"))
    for name in SCRIPTS:
        os.remove(os.path.join(folder, "share", "velto", "scripts", name))
    return os.path.join(folder, "bin")
