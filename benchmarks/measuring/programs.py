"""The programs that are measured: how each is started, and how it is asked for a page."""

import os
import shutil

from . import desk

SIZE = (800, 600)  # what surf opens with; the others are asked for it


class Velto:
    name = "velto"
    process = "velto-app"

    def __init__(self, folder):
        self.folder = folder

    def command(self, url):
        return [os.path.join(self.folder, "velto"), url, "--size", "{}x{}".format(*SIZE)]

    def missing(self):
        absent = [name for name in ("velto", "velto-open", "velto-app")
                  if not os.access(os.path.join(self.folder, name), os.X_OK)]
        return f"{', '.join(absent)} not built" if absent else None


class Chromium:
    name = "chromium --app"
    process = "chromium"
    # What it does on the side is switched off, to its advantage.
    flags = ["--no-first-run", "--no-default-browser-check", "--disable-background-networking",
             "--disable-component-update", "--disable-sync", "--disable-gpu", "--disable-quic",
             "--window-size={},{}".format(*SIZE), "--window-position=0,0"]

    def __init__(self, profile):
        self._flags = [f"--user-data-dir={profile}", *self.flags]
        if os.geteuid() == 0:
            self._flags.append("--no-sandbox")

    def command(self, url):
        return ["chromium", *self._flags, f"--app={url}"]

    def missing(self):
        return None if shutil.which("chromium") else "chromium is not installed"


class Surf:
    name = "surf"
    process = "surf"

    def command(self, url):
        return ["surf", url]

    def missing(self):
        return None if shutil.which("surf") else "surf is not installed"


class BareWindow:
    name = "bare window"
    process = "barewindow"

    def __init__(self, program, fifo):
        self._program = program
        self._fifo = fifo

    def start(self):
        if not os.path.exists(self._fifo):
            os.mkfifo(self._fifo)
        desk.spawn([self._program, self._fifo])

    def command(self, url):
        return ["sh", "-c", 'printf "%s\\n" "$1" >"$2"', "ask", url, self._fifo]

    def missing(self):
        return None if os.access(self._program, os.X_OK) else "barewindow is not built"
