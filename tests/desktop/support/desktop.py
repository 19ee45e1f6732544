"""X servers of our own, with or without a window manager."""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from Xlib import display, error

from .pointer_and_keys import PointerAndKeys
from .waiting import wait_until
from .windows import Screen

TWO_DISPLAYS = Path(__file__).with_name("two-displays.conf")


class Desktop:
    """One X server and its folder. `screen` looks at it, `input` is its pointer and keyboard."""

    def __init__(self, server, manager=True):
        self.folder = Path(tempfile.mkdtemp(prefix="velto-desktop-"))
        self.log = open(self.folder / "log", "w+b")
        self.clients = []
        try:
            self.name = self._start_server(server)
            self.x = wait_until(self._connect, "the X server answers")
            self.screen = Screen(self.x)
            self.input = PointerAndKeys(self.x)
            if manager:
                self._start_manager()
        except BaseException:
            self.stop()
            raise

    @classmethod
    def single(cls, manager=True):
        return cls(["Xvfb", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"], manager)

    def environment(self, home):
        """What a program needs to run on this desktop, at home in that folder."""
        inherited = {name: os.environ[name] for name in ("PATH", "LANG", "LC_ALL") if name in os.environ}
        return inherited | {
            "DISPLAY": self.name,
            "GDK_BACKEND": "x11",
            "NO_AT_BRIDGE": "1",
            "HOME": str(home),
            "XDG_RUNTIME_DIR": str(home / "runtime"),
            "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_DATA_HOME": str(home / "data"),
            "XDG_CACHE_HOME": str(home / "cache"),
            "TMPDIR": str(home / "tmp"),
        }

    def is_up(self):
        return bool(self.clients) and self.clients[0].poll() is None

    def stop(self):
        if hasattr(self, "x"):
            try:
                self.x.close()
            except error.ConnectionClosedError:
                pass
        for client in self.clients:
            client.terminate()
        for client in self.clients:
            try:
                client.wait(5)
            except subprocess.TimeoutExpired:
                client.kill()
                client.wait()
        self.clients = []
        self.log.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _start_server(self, server):
        reader, writer = os.pipe()
        with open(reader, "rb") as numbers:
            self._start([*server, "-displayfd", str(writer)], pass_fds=[writer])
            os.close(writer)
            number = numbers.readline().strip()
        if not number:
            raise AssertionError(f"{server[0]} did not start: {self._said()}")
        return f":{number.decode()}"

    def _start_manager(self):
        (self.folder / "home").mkdir()
        environment = os.environ | {"DISPLAY": self.name, "HOME": str(self.folder / "home")}
        for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            environment.pop(name, None)
        ready = self.folder / "ready"
        # It says early that it is there, and drops windows that are mapped before it is.
        self._start(["openbox", "--sm-disable", "--startup", f"touch {ready}"], env=environment)
        wait_until(ready.exists, lambda: f"the window manager starts: {self._said()}")

    def _start(self, command, **options):
        self.clients.append(subprocess.Popen(
            command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log, **options))

    def _said(self):
        return (self.folder / "log").read_text(errors="replace")[-2000:]

    def _connect(self):
        try:
            return display.Display(self.name)
        except error.DisplayConnectionError:
            return None


class TwoDisplays(Desktop):
    """Two monitors, each of which can be moved, made the primary one, unplugged and plugged in again."""

    MODES = {
        "DUMMY0": ("1280x1024_left", "109.00 1280 1368 1496 1712 1024 1027 1034 1063"),
        "DUMMY1": ("1024x768_right", "63.50 1024 1072 1176 1328 768 771 775 798"),
    }

    def __init__(self):
        installed = "/usr/lib/xorg/Xorg"
        program = installed if os.access(installed, os.X_OK) else "Xorg"
        super().__init__([program, "-config", str(TWO_DISPLAYS), "-logfile", "xorg.log", "-noreset",
                          "-novtswitch", "-sharevts", "-nolisten", "tcp"])
        for output, (mode, timing) in self.MODES.items():
            self.xrandr("--newmode", mode, *timing.split())
            self.xrandr("--addmode", output, mode)
        self.arrange()

    def arrange(self, left="DUMMY0", right="DUMMY1", primary="DUMMY0"):
        """Side by side, both at the top."""
        width = self.MODES[left][0].split("x")[0]
        self.xrandr(*self._on(left, "0x0", primary), *self._on(right, f"{width}x0", primary))

    def unplug(self, output):
        self.xrandr("--output", output, "--off")

    def xrandr(self, *arguments):
        # The driver notices only at the next question that a mode makes an output a connected one.
        for command in (arguments, ["--query"]):
            subprocess.run(["xrandr", "-d", self.name, *command], check=True, capture_output=True, timeout=20)

    def _on(self, output, position, primary):
        mode = ["--output", output, "--mode", self.MODES[output][0], "--pos", position]
        return [*mode, "--primary"] if output == primary else mode
