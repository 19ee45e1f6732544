"""What `velto import-safari` stages for the application, from where, and what it refuses."""

import os
import signal
import stat
import subprocess
import time

import pytest

COOKIES = "Cookies.binarycookies"
IN_HOME = {COOKIES: "Library/Containers/com.apple.Safari/Data/Library/Cookies",
           "History.db": "Library/Safari"}


def put(folder, *names):
    """Files that hold their own names."""
    for name in names:
        folder.mkdir(parents=True, exist_ok=True)
        (folder / name).write_text(name)
    return folder


def staged(velto, name="SafariImport"):
    """The names in the snapshot; nothing else may be left in the application's folder."""
    application = velto.root / "data" / "Velto"
    if not application.exists():
        return None
    assert os.listdir(application) in ([name], [])
    snapshot = application / name
    if not snapshot.exists():
        return None
    assert stat.S_IMODE(snapshot.stat().st_mode) == 0o700
    for file in snapshot.iterdir():
        assert file.read_text() == file.name
        assert (stat.S_IMODE(file.stat().st_mode), file.is_symlink()) == (0o600, False)
    return sorted(file.name for file in snapshot.iterdir())


URLS = [
    ([], ""),
    (["--sync"], "?sync=true"),
    (["example.com"], "?sites=example.com"),
    (["b.example", "--", "a&b", "-c"], "?sites=b.example%2Ca%26b%2C-c"),
]


@pytest.mark.parametrize("options,query", URLS)
def test_asks_the_application(velto, options, query):
    assert velto.printed("import-safari", "--print-url", *options) == f"velto://import-safari{query}\n"
    assert velto.handed_over() is None
    assert velto.printed("import-safari", *options, HOME=str(velto.root)) == ""
    assert velto.handed_over() == ["unset", "velto://import-safari" + query]
    assert staged(velto) is None, "there is nothing in this home folder"


@pytest.mark.parametrize("names", [
    [COOKIES], ["History.db"], [COOKIES, "History.db"],
    [COOKIES, "History.db", "History.db-shm", "History.db-wal"],
], ids=len)
def test_stages_what_is_there(velto, names):
    folder = put(velto.root / "a backup", *names)
    (folder / names[0]).chmod(0o444)
    put(folder, "Other.db")
    for _ in range(2):  # the second one replaces the first
        assert velto("import-safari", "--from", folder).returncode == 0
        assert staged(velto) == names
    assert velto.handed_over() == ["unset", "velto://import-safari"]


def test_stages_from_a_home_folder(velto):
    for name, place in IN_HOME.items():
        put(velto.root / "Mac" / place, name)
    assert velto("import-safari", "--from=Mac", "example.com").returncode == 0
    assert staged(velto) == [COOKIES, "History.db"]
    assert velto.handed_over()[1] == "velto://import-safari?sites=example.com"
    (velto.root / "data" / "Velto" / "SafariImport" / "History.db").unlink()
    assert velto("import-safari", HOME=str(velto.root / "Mac")).returncode == 0
    assert staged(velto) == [COOKIES, "History.db"]


def test_sync_stages_the_cookies_only(velto):
    folder = put(velto.root / "from", COOKIES, "History.db")
    assert velto("import-safari", "--sync", "--from", folder).returncode == 0
    assert staged(velto, "SafariSync") == [COOKIES]
    assert velto.handed_over()[1] == "velto://import-safari?sync=true"


def refused(velto, *arguments):
    return velto.refused("import-safari", *arguments, status=1)


def test_nothing_to_stage_is_told(velto):
    folder = put(velto.root / "from", "History.db")
    assert "no folder" in refused(velto, "--from", velto.root / "none")
    assert "no Cookies.binarycookies in" in refused(velto, "--sync", "--from", folder)
    (folder / "History.db").unlink()
    assert "no Cookies.binarycookies or History.db in" in refused(velto, "--from", folder)
    assert staged(velto) is None


@pytest.mark.parametrize("name", [COOKIES, "History.db", "History.db-wal"])
@pytest.mark.parametrize("kind", ["link", "pipe", "folder"])
def test_only_plain_files_are_copied(velto, name, kind):
    folder = put(velto.root / "from", COOKIES, "History.db", "History.db-wal")
    (folder / name).unlink()
    if kind == "link":
        (folder / name).symlink_to(put(velto.root / "other", "secret") / "secret")
    elif kind == "pipe":
        os.mkfifo(folder / name)
    else:
        (folder / name).mkdir()
    assert name in refused(velto, "--from", folder)
    assert staged(velto) is None


def test_a_link_in_place_of_the_snapshot_is_replaced(velto):
    kept = put(velto.root / "elsewhere", "kept")
    application = velto.root / "data" / "Velto"
    application.mkdir(parents=True)
    (application / "SafariImport").symlink_to(kept)
    assert velto("import-safari", "--from", put(velto.root / "from", COOKIES)).returncode == 0
    assert staged(velto) == [COOKIES]
    assert os.listdir(kept) == ["kept"]


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM])
def test_an_interrupted_copy_is_removed(velto, number):
    if "busybox" in velto.shell[0]:
        pytest.skip("it has its own cp")
    folder = put(velto.root / "from", COOKIES)
    slow = velto.root / "slow"
    slow.mkdir()
    started = velto.root / "started"
    (slow / "cp").write_text(f"#!/bin/sh\n: >'{started}'\nexec sleep 30\n")
    (slow / "cp").chmod(0o755)
    application = velto.root / "data" / "Velto"
    command = subprocess.Popen([*velto.shell, velto.path, "import-safari", "--from", folder], process_group=0,
                               env=velto.environment(PATH=f"{slow}:{os.environ['PATH']}"))
    while not started.exists():
        time.sleep(0.01)
    os.killpg(command.pid, number)
    assert command.wait(timeout=20) != 0
    while os.listdir(application):  # the part that copies may end a moment later
        time.sleep(0.01)
    assert velto.handed_over() is None
