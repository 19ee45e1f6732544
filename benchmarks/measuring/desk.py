"""What runs on the screen that is measured on: the processes that we started, and their windows."""

import collections
import ctypes
import os
import signal
import time

from Xlib import X, display, error
from Xlib.protocol import event

_PR_SET_CHILD_SUBREAPER = 36
_TICK = 1 / os.sysconf("SC_CLK_TCK")

Switches = collections.namedtuple("Switches", "process thread voluntary involuntary")


class NotMeasured(Exception):
    """Something that should have been measured could not be; the text says what and why."""


def adopt_orphans():
    """From now on every process that we cause is our descendant, whatever it does to get away."""
    ctypes.CDLL(None, use_errno=True).prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def run(command, **how):
    """Runs a command to its end and gives its exit status."""
    return os.waitstatus_to_exitcode(os.waitpid(spawn(command, **how), 0)[1])


def spawn(command, **variables):
    """Starts a command that is silent, with these environment variables besides ours, and gives its process id."""
    null = os.open(os.devnull, os.O_RDWR)
    try:
        copies = [(os.POSIX_SPAWN_DUP2, null, stream) for stream in range(3)]
        return os.posix_spawnp(command[0], command, {**os.environ, **variables}, file_actions=copies, setsid=True)
    finally:
        os.close(null)


def _stat(pid):
    """The fields of a process's stat file that follow its name; None when it is gone."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rpartition(")")[2].split()
    except OSError:
        return None


def _name(folder):
    with open(f"{folder}/comm", encoding="utf-8", errors="replace") as file:
        return file.read().strip()


def descendants(root=None):
    """The living processes below `root`, or below this one."""
    children = collections.defaultdict(list)
    for pid in filter(str.isdigit, os.listdir("/proc")):
        stat = _stat(pid)
        if stat and stat[0] not in "ZX":
            children[int(stat[1])].append(int(pid))
    found, waiting = [], [root or os.getpid()]
    while waiting:
        below = children[waiting.pop()]
        found += below
        waiting += below
    return found


def reap():
    """Takes leave of the processes that ended."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def processes_named(name):
    """Ours whose program has this name."""
    def is_named(pid):
        try:
            return os.path.basename(os.readlink(f"/proc/{pid}/exe")) == name
        except OSError:
            return False
    return list(filter(is_named, descendants()))


def end_all(patience=10):
    """Ends every process that we started: asks first, and insists after a while."""
    deadline = time.monotonic() + patience
    asked = set()
    while pids := descendants():
        insist = time.monotonic() > deadline - patience / 2
        for pid in pids:
            if insist or pid not in asked:
                try:
                    os.kill(pid, signal.SIGKILL if insist else signal.SIGTERM)
                except ProcessLookupError:
                    pass
        asked.update(pids)
        if time.monotonic() > deadline:
            raise NotMeasured("processes of an earlier run cannot be ended")
        time.sleep(0.02)
        reap()
    reap()


def _processor_seconds():
    stats = filter(None, map(_stat, descendants()))
    return sum(int(stat[11]) + int(stat[12]) for stat in stats) * _TICK


def wait_until_quiet(calm=0.3, patience=5):
    """Waits until our processes have hardly used the processor for a while: what was asked of them is done."""
    deadline = time.monotonic() + patience
    since, used = time.monotonic(), _processor_seconds()
    while time.monotonic() < deadline:
        time.sleep(0.05)
        now, uses = time.monotonic(), _processor_seconds()
        if uses - used > 1.5 * _TICK:
            since, used = now, uses
        elif now - since >= calm:
            break
    reap()


def context_switches(pid):
    """The context switches of every thread of a process since it started, by thread id."""
    found = {}
    process = _name(f"/proc/{pid}")
    for thread in os.listdir(f"/proc/{pid}/task"):
        folder = f"/proc/{pid}/task/{thread}"
        try:
            with open(f"{folder}/status", encoding="utf-8", errors="replace") as file:
                fields = dict(line.split(":", 1) for line in file if "ctxt_switches" in line)
            found[int(thread)] = Switches(process, _name(folder), int(fields["voluntary_ctxt_switches"]),
                                          int(fields["nonvoluntary_ctxt_switches"]))
        except (OSError, KeyError):
            continue
    return found


def memory(pids):
    """Resident and proportional megabytes of some processes together."""
    total = collections.Counter()
    for pid in pids:
        try:
            with open(f"/proc/{pid}/smaps_rollup", encoding="utf-8") as file:
                for line in file:
                    label, _, value = line.partition(":")
                    if label in ("Rss", "Pss"):
                        total[label] += int(value.split()[0])
        except OSError:
            continue
    return total["Rss"] / 1024, total["Pss"] / 1024


class Windows:
    """The windows that the window manager knows."""

    def __init__(self):
        self._display = display.Display()
        self._root = self._display.screen().root
        self._list = self._display.intern_atom("_NET_CLIENT_LIST")
        self._close = self._display.intern_atom("_NET_CLOSE_WINDOW")

    def ids(self):
        listed = self._root.get_full_property(self._list, X.AnyPropertyType)
        return set(listed.value) if listed else set()

    def close(self, ids, patience=5):
        """Asks the windows to close, as a click on their close button does, and waits until they are gone."""
        for window in ids:
            message = event.ClientMessage(window=self._display.create_resource_object("window", window),
                                          client_type=self._close, data=(32, [X.CurrentTime, 2, 0, 0, 0]))
            mask = X.SubstructureRedirectMask | X.SubstructureNotifyMask
            self._root.send_event(message, event_mask=mask, onerror=error.CatchError(error.BadWindow))
        self._display.sync()
        deadline = time.monotonic() + patience
        while self.ids() & set(ids):
            if time.monotonic() > deadline:
                raise NotMeasured("a window did not close when it was asked to")
            time.sleep(0.02)
