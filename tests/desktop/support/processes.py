"""Processes as /proc shows them. Those of one home have its runtime directory in their environment."""

import os
import signal
from pathlib import Path

from .waiting import wait_until


def environment_of(pid):
    try:
        return Path(f"/proc/{pid}/environ").read_bytes().split(b"\0")
    except OSError:
        return []


def is_alive(pid):
    """Neither gone nor a zombie that nobody has collected yet."""
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] not in "ZX"
    except OSError:
        return False


def name_of(pid):
    """The name of its program: the kernel's own short one is cut off."""
    try:
        return os.path.basename(os.readlink(f"/proc/{pid}/exe")).removesuffix(" (deleted)")
    except OSError:
        return ""


def of_runtime_directory(runtime, name=None):
    """The processes of a home, oldest first, all or those of one program."""
    mark = f"XDG_RUNTIME_DIR={runtime}".encode()
    found = [int(entry) for entry in os.listdir("/proc") if entry.isdigit() and mark in environment_of(entry)]
    return sorted(pid for pid in found if is_alive(pid) and name in (None, name_of(pid)))


def parent_of(pid):
    try:
        return int(Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[1])
    except OSError:
        return 0


def kill(pids, by=signal.SIGKILL):
    for pid in pids:
        try:
            os.kill(pid, by)
        except ProcessLookupError:
            pass
    wait_until(lambda: not any(is_alive(pid) for pid in pids), f"{pids} end at signal {by}")


def processor_time(pid):
    """Clock ticks that it has used."""
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def wake_ups(pid):
    """How often the main thread has gone to sleep so far."""
    for line in Path(f"/proc/{pid}/task/{pid}/status").read_text().splitlines():
        if line.startswith("voluntary_ctxt_switches"):
            return int(line.split()[1])
    raise AssertionError("the kernel does not count context switches")
