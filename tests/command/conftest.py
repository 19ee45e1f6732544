"""A copy of the command with a hand-off program that only writes down how it was called."""

import os
import re
import shutil
import subprocess
from pathlib import Path

import pytest

RESOURCES = Path(__file__).resolve().parents[2] / "resources"
SHELLS = {"dash": ["dash"], "bash": ["bash", "--posix"], "busybox": ["busybox", "sh"]}

HAND_OFF = """#!/bin/sh
printf '%s\\0' "${LC_ALL-unset}" "$@" > '{record}'
{then}
exit {status}
"""


class Command:
    def __init__(self, root, shell):
        self.root = root
        self.shell = shell
        self.record = root / "record"
        self.folder = root / "programs here"
        self.folder.mkdir()
        self.path = self.folder / "velto"
        shutil.copy(RESOURCES / "velto", self.path)
        (root / "share").mkdir()
        (root / "share" / "velto").symlink_to(RESOURCES)
        self.install_hand_off()

    def install_hand_off(self, status=0, then=""):
        program = self.folder / "velto-open"
        program.write_text(HAND_OFF.replace("{record}", str(self.record)).replace("{status}", str(status))
                           .replace("{then}", then))
        program.chmod(0o755)

    def __call__(self, *arguments, cwd=None, **environment):
        return self.launch([*self.shell, self.path], *arguments, cwd=cwd, **environment)

    def launch(self, program, *arguments, cwd=None, **environment):
        return subprocess.run(
            [*program, *arguments], cwd=cwd or self.root, env=self.environment(**environment),
            capture_output=True, stdin=subprocess.DEVNULL, timeout=20)

    def without_other_programs(self, *arguments):
        """No process can be started but the shell itself."""
        shell = [shutil.which(self.shell[0]), *self.shell[1:]]
        return self.launch([*shell, self.path], *arguments, PATH="/nonexistent")

    def environment(self, **more):
        inherited = {name: value for name, value in os.environ.items() if name != "LC_ALL"}
        return inherited | {"XDG_DATA_HOME": str(self.root / "data")} | more

    def write_index(self, *layouts):
        """The list that the application keeps; a layout is a tuple of its fields."""
        index = self.root / "data" / "Velto" / "Layouts" / "index.txt"
        index.parent.mkdir(parents=True, exist_ok=True)
        index.write_text("".join("\t".join(layout) + "\n" for layout in layouts), newline="")
        return index

    def printed(self, *arguments, **environment):
        result = self(*arguments, **environment)
        assert (result.returncode, result.stderr) == (0, b""), arguments
        return os.fsdecode(result.stdout)

    def refused(self, *arguments, status=2, **environment):
        """The one line that tells why."""
        result = self(*arguments, **environment)
        assert (result.returncode, result.stdout) == (status, b""), arguments
        assert re.fullmatch(rb"velto: [^\n]+\n", result.stderr)
        assert self.handed_over() is None
        return os.fsdecode(result.stderr)

    def completed(self, *words):
        """What bash offers for the last word."""
        quoted = " ".join(f"'{word}'" for word in words)
        script = f"""set -u; source /dev/stdin
          COMP_WORDS=(velto {quoted}); COMP_CWORD={len(words)}
          _velto; complete -p velto >/dev/null && echo "${{COMPREPLY[*]-}}" """
        environment = self.environment(PATH=f"{self.folder}:{os.environ['PATH']}")
        result = subprocess.run(["bash", "-c", script], input=self("completion", "bash").stdout,
                                capture_output=True, env=environment)
        assert result.stderr == b""
        return result.stdout.decode().strip()

    def handed_over(self):
        """The locale and the arguments of the hand-off, or None when nothing was handed over."""
        if not self.record.exists():
            return None
        return self.record.read_bytes().decode().split("\0")[:-1]


@pytest.fixture(params=SHELLS)
def velto(request, tmp_path):
    if not shutil.which(SHELLS[request.param][0]):
        pytest.skip(f"no {request.param} here")
    return Command(tmp_path, SHELLS[request.param])
