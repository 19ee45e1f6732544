"""The history page with a million visits, in a copy of the program whose page times itself."""

import http.server
import json
import os
import re
import shutil
import threading
import time
from urllib.parse import parse_qs, urlsplit

from .desk import NotMeasured

VISITS = 1_000_000
PATIENCE = 180  # seconds
KEYSTROKES = ["r", "re", "rep", "repo", "report", "report 7", "report 77", "report 777", "x", "xylophone", "zzz"]
_POLICY = re.compile(r'<meta http-equiv="Content-Security-Policy"[^>]*>')
# A time is taken when the frame that shows the change has been made.
_PROBE = """<script>
(async () => {
  const painted = () => new Promise(resume => requestAnimationFrame(() => setTimeout(() => resume(performance.now()))))
  const until = async condition => { while (!condition()) await new Promise(resume => setTimeout(resume, 5)) }
  const seen = () => document.querySelector(".row:not([hidden])")
  await until(seen)
  const first = await painted()
  const field = document.querySelector("#search")
  const settled = () => document.querySelector("#progress").hidden
  const type = async text => {
    field.value = text
    const since = performance.now()
    field.dispatchEvent(new Event("input"))
    let time = await painted()
    while (!seen() && !settled()) time = await painted()
    return time - since
  }
  await until(settled)
  const loaded = performance.now()
  const keys = []
  for (const text of %s) {
    keys.push(await type(text))
    await until(settled)
  }
  location.href = "%s?" + new URLSearchParams({ first, loaded, keys: JSON.stringify(keys) })
})()
</script>"""


def write_visits(folder):
    os.makedirs(folder, mode=0o700, exist_ok=True)
    now = time.time()
    with open(os.path.join(folder, "History.json"), "w", encoding="utf-8") as file:
        for at in range(VISITS):
            stamp = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(now - 97 * at))
            title = "Xylophone" if at == VISITS - 1 else f"Article “{at}” – a report on things"
            file.write(_entry(at, title, stamp))
        file.write("\n]")


def _entry(at, title, stamp):
    return ((",\n" if at else "[\n") +
            f'  {{\n    "url" : "https://www.example{at % 5000}.com/articles/2024/{at}",\n'
            f'    "title" : "{title}",\n    "timestamp" : "{stamp}"\n  }}')


class TimedHistory:
    def __init__(self):
        self._reports, self._come = [], threading.Semaphore(0)
        site = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                asked = urlsplit(self.path)
                if asked.path == "/took":
                    site._reports.append({name: values[0] for name, values in parse_qs(asked.query).items()})
                    site._come.release()
                self.send_response(200)
                self.send_header("Content-Length", "0")
                self.end_headers()

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def copy(self, programs, folder):
        """The programs with a page that reports here. Gives the new folder of programs."""
        shutil.copytree(programs, os.path.join(folder, "bin"))
        shutil.copytree(os.path.join(programs, "..", "share"), os.path.join(folder, "share"))
        page = os.path.join(folder, "share", "velto", "HistoryPage.html")
        with open(page, encoding="utf-8") as file:
            html = _POLICY.sub("", file.read())
        probe = _PROBE % (json.dumps(KEYSTROKES), f"http://127.0.0.1:{self._server.server_port}/took")
        with open(page, "w", encoding="utf-8") as file:
            file.write(html.replace("</body>", probe + "</body>"))
        return os.path.join(folder, "bin")

    def wait(self):
        """Milliseconds until the first rows and until all were there, and those of each keystroke."""
        if not self._come.acquire(timeout=PATIENCE):
            raise NotMeasured("the history page did not report")
        report = self._reports[-1]
        return float(report["first"]), float(report["loaded"]), json.loads(report["keys"])
