"""The commands of layouts: what they list, hand over and refuse, from the application's index alone."""

import json
import os
import pty
import re
import select
import shutil
import subprocess
from pathlib import Path
from urllib.parse import quote

import pytest

# id, name, short name, windows, updated, displays
LAYOUTS = [
    ("1", "Crème brûlée", "creme-brulee", "1", "100", "Display A"),
    ("2", "Focus", "focus", "2", "100", "Display A"),
    ("3", "focus", "focus-2", "3", "200", "Display A, Display B"),
    ("4", "Layouts", "layouts-layout", "0", "100", ""),
    ("5", "Morning dashboards", "morning-dashboards", "5", "100", "Display A"),
    ("6", "1e3", "1e3", "1", "100", "x"),
    ("7", 'q"uo\\te $(id) \'`|;* %s &=+', "q-uo-te-id-s", "1", "100", "a\\b"),
]
OPEN = "velto://layout?action=open&slug="


def refused(velto, *arguments):
    result = velto(*arguments)
    assert (result.returncode, result.stdout) == (2, b""), arguments
    assert re.fullmatch(rb"velto: [^\n]+\n", result.stderr)
    assert velto.handed_over() is None
    return result.stderr.decode()


def printed(velto, *arguments, **environment):
    result = velto(*arguments, **environment)
    assert (result.returncode, result.stderr) == (0, b""), arguments
    return result.stdout.decode()


HANDED_OVER = [
    (["layouts"], "velto://layout?action=show"),
    (["layout", "show"], "velto://layout?action=show"),
    (["morning-dashboards"], OPEN + "morning-dashboards"),
    (["Morning-Dashboards"], OPEN + "morning-dashboards"),
    ([" focus "], OPEN + "focus"),
    (["1e3"], OPEN + "1e3"),
    (["layout", "open", "focus"], OPEN + "focus"),
    (["layouts", "open", "Focus"], OPEN + "focus"),
    (["layouts", "open", " Morning DASHBOARDS"], OPEN + "morning-dashboards"),
    (["layouts", "open", "Crème brûlée"], OPEN + "creme-brulee"),
    (["layouts", "open", LAYOUTS[6][1]], OPEN + "q-uo-te-id-s"),
    (["layouts", "open", "layouts"], OPEN + "layouts-layout"),
    (["layouts", "open", "--exact", "focus-2", "--copy"], OPEN + "focus-2&copy=true&exact=true"),
    (["layouts", "open", "CRÈME BRÛLÉE"], "velto://layout?action=open&name=CR%C3%88ME%20BR%C3%9BL%C3%89E"),
    (["layouts", "rename", "über", "x"], "velto://layout?action=rename&name=%C3%BCber&to=x"),
    (["layouts", "save", "Ü & b=c"], "velto://layout?action=save&name=%C3%9C%20%26%20b%3Dc"),
    (["layouts", "save", "--", "--copy"], "velto://layout?action=save&name=--copy"),
    (["layouts", "rename", "Focus", "100% new"], "velto://layout?action=rename&slug=focus&to=100%25%20new"),
]


@pytest.mark.parametrize("arguments,url", HANDED_OVER)
def test_hands_over(velto, arguments, url):
    velto.write_index(*LAYOUTS)
    at = 2 if len(arguments) > 1 else len(arguments)
    assert printed(velto, *arguments[:at], "--print-url", *arguments[at:]) == url + "\n"
    assert velto.handed_over() is None
    assert printed(velto, *arguments) == ""
    assert velto.handed_over() == ["unset", url]


REFUSED = [
    (["focsu"], "no layout is called 'focsu'; the nearest are focus and focus-2"),
    (["dashboards"], "the nearest is morning-dashboards"),
    (["focus-3"], "the nearest are focus and focus-2"),
    (["layouts", "open", "Creme brule"], "creme-brulee"),
    (["layouts", "open", "1000"], "no layout is called '1000'"),
    (["frobnicate"], "velto layouts list"),
    (["layouts", "rename", "focsu", "x"], "the nearest are focus"),
    (["focus", "--on-top"], "takes no options of a window"),
    (["focus", "3000"], "one target"),
    (["--port", "3000", "focus"], "one target"),
    (["list"], "velto layouts list"),
    (["help"], "velto --help"),
    (["x" * 2000], "velto --help"),
    (["layouts", "frobnicate"], "no command 'frobnicate'"),
    (["layouts", "list", "focus"], "no name"),
    (["layouts", "list", "--copy"], "unknown option"),
    (["layouts", "--json"], "unknown option"),
    (["layouts", "open"], "layouts open NAME"),
    (["layouts", "open", ""], "empty"),
    (["layouts", "open", "Morning", "dashboards"], "quotes"),
    (["layouts", "save", "  "], "needs a name"),
    (["layouts", "save", "x" * 1001], "too long"),
    (["layouts", "rename", "focus"], "NEW-NAME"),
    (["layouts", "rename", "focus", " "], "needs a name"),
    (["layouts", "pick"], "terminal"),
]


@pytest.mark.parametrize("arguments,part", REFUSED, ids=range(len(REFUSED)))
def test_refuses(velto, arguments, part):
    velto.write_index(*LAYOUTS)
    assert part in refused(velto, *arguments)


def test_without_layouts(velto):
    for prepare in (lambda: None, velto.write_index):
        prepare()
        assert printed(velto, "layouts", "list") == printed(velto, "layouts", "names") == ""
        assert json.loads(printed(velto, "layouts", "list", "--json")) == []
        assert "no port, address, command or layout" in refused(velto, "focus")
        assert "there are none yet" in refused(velto, "layouts", "open", "focus")
        assert "there are none yet" in refused(velto, "layouts", "open", "über")
        assert printed(velto, "layouts", "save", "A", "--print-url") == "velto://layout?action=save&name=A\n"


def test_the_word_for_a_page_that_is_none_of_ours_starts_no_process(velto):
    shell = [shutil.which(velto.shell[0]), *velto.shell[1:]]
    result = velto.launch([*shell, velto.path], "focus", PATH="/nonexistent")
    assert (result.returncode, result.stderr.count(b"\n")) == (2, 1)


def test_lists_names_and_json(velto):
    nasty = ("8", "é\0\x1b[31m\x7f\x9b\"", "e", "junk", "-5", "\\\x01")
    velto.write_index(*LAYOUTS, nasty)
    rows = [*LAYOUTS, nasty]
    assert printed(velto, "layouts", "names").split("\n") == [row[2] for row in rows] + [""]
    assert printed(velto, "layouts", "list", LANG="C.UTF-8").split("\n") == [row[1] for row in rows] + [""]
    listed = json.loads(printed(velto, "layouts", "list", "--json", LANG="C.UTF-8"))
    expected = [{"id": row[0], "name": row[1], "shortName": row[2], "windows": int(row[3]) if row is not nasty else 0,
                 "updatedAt": int(row[4]), "displays": row[5]} for row in rows]
    assert listed == expected


@pytest.mark.parametrize("data,home,place", [
    ("{root}/d", "/x", "d"), ("", "{root}", ".local/share"), ("relative", "{root}", ".local/share")])
def test_where_the_index_lies(velto, data, home, place):
    index = velto.write_index(LAYOUTS[1])
    target = velto.root / place / "Velto" / "Layouts"
    target.parent.mkdir(parents=True)
    index.parent.rename(target)
    environment = {"XDG_DATA_HOME": data.format(root=velto.root), "HOME": home.format(root=velto.root)}
    assert printed(velto, "layouts", "list", **environment) == "Focus\n"


def test_index_that_is_no_file(velto):
    index = velto.write_index(LAYOUTS[1])
    index.unlink()
    for make, unmake in ((os.mkfifo, os.unlink), (os.mkdir, os.rmdir)):
        make(index)
        for command in (["layouts", "list"], ["focus"]):
            result = velto(*command)
            assert (result.returncode, result.stdout) == (1, b"") and b"cannot be read" in result.stderr
        unmake(index)


def test_next_command_finds_what_was_saved(velto):
    """The application writes the index a moment after it was asked."""
    index = velto.write_index(LAYOUTS[1])
    later = index.with_name("later")
    index.rename(later)
    velto.install_hand_off(then=f"(sleep 0.2; mv '{later}' '{index}') >'{velto.root}/null' 2>&1 &")
    assert printed(velto, "layouts", "save", "Focus") == ""
    assert printed(velto, "layouts", "list") == "Focus\n"


def test_ten_thousand_layouts(velto):
    velto.write_index(*[(str(i), f"Layout number {i}", f"layout-number-{i}", "3", "0", "A") for i in range(10_000)])
    assert printed(velto, "layout-number-9999", "--print-url") == OPEN + "layout-number-9999\n"
    assert "layout-number-" in refused(velto, "layuot-number-77")


def on_terminal(velto, *arguments, answer=b""):
    """What a person sees who types this and, when asked, the answer."""
    parent, child = pty.openpty()
    environment = os.environ | {"XDG_DATA_HOME": str(velto.root / "data")}
    with subprocess.Popen([*velto.shell, velto.path, *arguments], stdin=child, stdout=child, stderr=child,
                          env=environment) as process:
        os.close(child)
        os.write(parent, answer)
        seen = b""
        while select.select([parent], [], [], 10)[0]:
            try:
                seen += os.read(parent, 65536)
            except OSError:
                break
        os.close(parent)
    return process.returncode, seen.decode().replace("\r\n", "\n")


def test_table_on_a_terminal(velto):
    velto.write_index(LAYOUTS[2], ("9", "e\x1b[2J\u009bvil", "evil", "12", "0", "Ä"))
    status, text = on_terminal(velto, "layouts", "list")
    assert (status, text.splitlines()) == (0, [
        "SHORT NAME  WINDOWS  DISPLAYS              NAME",
        "focus-2           3  Display A, Display B  focus",
        "evil             12  Ä                     e?[2J?vil",
    ])
    velto.write_index()
    assert on_terminal(velto, "layouts", "list")[1].startswith("There are no layouts yet")


@pytest.mark.parametrize("answer,slug", [(b"2\n", "focus"), (b"morning-dashboards\n", "morning-dashboards"),
                                         (b"99\n", None), (b"\n", None), (b"\x04", None)])
def test_pick(velto, answer, slug):
    velto.write_index(*LAYOUTS)
    status, text = on_terminal(velto, "layouts", "pick", answer=answer)
    assert "  2  focus               Focus\n" in text
    assert status == (0 if slug else 2)
    assert velto.handed_over() == (["unset", OPEN + slug] if slug else None)


COMPLETIONS = [
    (["f"], "focus focus-2"),
    (["layouts", "r"], "rename"),
    (["layout", "open", "m"], "morning-dashboards"),
    (["layouts", "open", "focus", "--c"], "--copy"),
    (["layouts", "rename", "cr"], "creme-brulee"),
    (["layouts", "rename", "focus", ""], ""),
    (["layouts", "save", ""], ""),
    (["layouts", "list", "-"], "--json --print-url --help"),
]


@pytest.mark.parametrize("words,expected", COMPLETIONS)
def test_bash_completion(velto, words, expected):
    hostile = [f"x$(touch {velto.root}/ran)", "`touch${IFS}ran`", "é", "-~", ""]
    velto.write_index(*LAYOUTS, *[("8", "x", word, "1", "1", "") for word in hostile])
    quoted = " ".join(f"'{word}'" for word in words)
    script = f"""set -u; source /dev/stdin
      COMP_WORDS=(velto {quoted}); COMP_CWORD={len(words)}
      _velto; echo "${{COMPREPLY[*]-}}" """
    environment = os.environ | {
        "PATH": f"{velto.folder}:{os.environ['PATH']}", "XDG_DATA_HOME": str(velto.root / "data")}
    completion = velto("completion", "bash").stdout
    result = subprocess.run(["bash", "-c", script], input=completion, capture_output=True, env=environment)
    assert (result.stdout.decode().strip(), result.stderr) == (expected, b"")
    assert not (velto.root / "ran").exists() and not Path("ran").exists()


def test_urls_carry_what_was_typed(velto):
    velto.write_index(*LAYOUTS)
    for name in ["a" * 1000, "日本 & <b>", "\\n%00"]:
        url = printed(velto, "layouts", "save", name, "--print-url")
        assert url == "velto://layout?action=save&name=" + quote(name, safe="") + "\n"
