"""The programs under test, at home in a folder of their own."""

import os
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path
from urllib.parse import quote

from . import processes
from .waiting import wait_until

PROGRAMS = Path(os.environ.get("VELTO_PROGRAMS") or Path(__file__).resolve().parents[3] / "build" / "bin")


class Application:
    """The three programs with one home on one desktop. Nothing runs until something is started."""

    def __init__(self, desktop, programs=PROGRAMS):
        self.desktop = desktop
        self.programs = programs
        # Short, because the socket's address is.
        self.home = Path(tempfile.mkdtemp(prefix="velto-", dir="/tmp"))
        self.runtime = self.home / "runtime"
        self.socket = self.runtime / "velto" / "socket"
        self.runtime.mkdir(0o700)
        (self.home / "tmp").mkdir(0o700)
        self._make_documents()
        self.environment = desktop.environment(self.home)
        self._direct = []

    def remove(self):
        try:
            # Again, because one may have started another in the meantime.
            while running := processes.of_runtime_directory(self.runtime):
                processes.kill(running)
            for process in self._direct:
                process.communicate()
            if self.desktop.is_up():
                self.wait_until_windows_are_gone()
        finally:
            shutil.rmtree(self.home, ignore_errors=True)

    def run(self, *command, **environment):
        """Runs one of the programs to its end, perhaps with other values in its environment (None: none)."""
        program, *arguments = command
        variables = self.environment | environment
        variables = {name: value for name, value in variables.items() if value is not None}
        return subprocess.run([self.programs / program, *arguments], env=variables, timeout=60, cwd=self.home,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)

    def succeed(self, *command):
        done = self.run(*command)
        assert (done.returncode, done.stdout, done.stderr) == (0, "", ""), f"{command}: {done}"

    def begin(self, *command):
        """Starts one of the programs and goes on."""
        program, *arguments = command
        process = subprocess.Popen([self.programs / program, *arguments], env=self.environment, cwd=self.home,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._direct.append(process)
        return process

    def start(self):
        """The application with no window."""
        process = self.begin("velto-app")
        wait_until(lambda: self.socket.exists() or process.poll() is not None, "velto-app starts")
        assert process.poll() is None, process.communicate()
        return process

    def open(self, *arguments):
        """What `velto` with these arguments opens."""
        return self.window_from("velto", *arguments)

    def show(self, url, colour, *arguments):
        """The same, once its page is seen."""
        window = self.open(url, *arguments)
        window.wait_until_shows(colour)
        return window

    def hand_over(self, *arguments):
        return self.window_from("velto-open", *arguments)

    def window_from(self, *command):
        before = set(self.windows())
        self.succeed(*command)
        return wait_until(lambda: set(self.windows()) - before, f"{command} opens a window").pop()

    def window_at(self, frame):
        """The one that is there, or comes there."""
        def found():
            return [window for window in self.windows() if window.frame() == frame]
        return wait_until(found, lambda: f"a window at {frame} besides {self.windows()}")[0]

    def windows(self):
        return self.desktop.screen.windows()

    def close_windows(self):
        for window in self.windows():
            window.ask_to_close()
        self.wait_until_windows_are_gone()

    def wait_until_windows_are_gone(self):
        """The server may give the same names to the next one's."""
        wait_until(lambda: not self.windows(), lambda: f"all windows close: {self.windows()}")

    def pids(self):
        """Those of the application, without a child that has not become another program yet."""
        found = processes.of_runtime_directory(self.runtime, "velto-app")
        return [pid for pid in found if processes.parent_of(pid) not in found]

    def pid(self):
        only, = self.pids()
        return only

    def web_processes(self):
        return processes.of_runtime_directory(self.runtime, "WebKitWebProcess")

    def log(self):
        """What it has noted since it started."""
        noted = self.documents / "urlbar_debug.txt"
        return noted.read_text() if noted.exists() else ""

    def wait_until_logged(self, text, since=0):
        """Beyond that many characters of the log."""
        wait_until(lambda: text in self.log()[since:], lambda: f"{text!r} in the log: {self.log()[since:]}")

    def end(self, by=signal.SIGTERM):
        processes.kill(self.pids(), by)
        self.wait_until_windows_are_gone()

    def _make_documents(self):
        self.documents = self.home / "Documents"
        self.documents.mkdir(0o700)
        settings = self.home / "config"
        settings.mkdir(0o700)
        (settings / "user-dirs.dirs").write_text('XDG_DOCUMENTS_DIR="$HOME/Documents"\n')


def launch_url(page, scheme="velto", **keys):
    """The URL that asks for that page."""
    items = "".join(f"&{key}={value}" for key, value in keys.items())
    return f"{scheme}://open?url={quote(page, safe='')}{items}"
