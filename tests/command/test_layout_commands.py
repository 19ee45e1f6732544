"""The commands of layouts: what they list, hand over and refuse, from the application's index alone."""

import json
import os
import pty
import select
import subprocess
from pathlib import Path

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
    (["layouts", "save", "\\n%00"], "velto://layout?action=save&name=%5Cn%2500"),
    (["layouts", "save", "a" * 1000], "velto://layout?action=save&name=" + "a" * 1000),
    (["layouts", "save", "--", "--copy"], "velto://layout?action=save&name=--copy"),
    (["layouts", "rename", "Focus", "100% new"], "velto://layout?action=rename&slug=focus&to=100%25%20new"),
]


@pytest.mark.parametrize("arguments,url", HANDED_OVER, ids=range(len(HANDED_OVER)))
def test_hands_over(velto, arguments, url):
    velto.write_index(*LAYOUTS)
    at = 2 if len(arguments) > 1 else len(arguments)
    assert velto.printed(*arguments[:at], "--print-url", *arguments[at:]) == url + "\n"
    assert velto.handed_over() is None
    assert velto.printed(*arguments) == ""
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
    assert part in velto.refused(*arguments)


def test_without_layouts(velto):
    for prepare in (lambda: None, velto.write_index):
        prepare()
        assert velto.printed("layouts", "list") == velto.printed("layouts", "names") == ""
        assert json.loads(velto.printed("layouts", "list", "--json")) == []
        assert "no port, address, command or layout" in velto.refused("focus")
        assert "there are none yet" in velto.refused("layouts", "open", "focus")
        assert "there are none yet" in velto.refused("layouts", "open", "über")
        assert velto.printed("layouts", "save", "A", "--print-url") == "velto://layout?action=save&name=A\n"


def test_the_word_for_a_page_that_is_none_of_ours_starts_no_process(velto):
    result = velto.without_other_programs("focus")
    assert (result.returncode, result.stderr.count(b"\n")) == (2, 1)


def test_lists_names_and_json(velto):
    nasty = ("8", "é\0\x1b[31m\x7f\x9b\"", "e", "junk", "-5", "\\\x01")
    velto.write_index(*LAYOUTS, nasty)
    rows = [*LAYOUTS, nasty]
    assert velto.printed("layouts", "names").split("\n") == [row[2] for row in rows] + [""]
    assert velto.printed("layouts", "list", LANG="C.UTF-8").split("\n") == [row[1] for row in rows] + [""]
    listed = json.loads(velto.printed("layouts", "list", "--json", LANG="C.UTF-8"))
    keys = ("id", "name", "shortName", "windows", "updatedAt", "displays")
    rows[-1] = (*nasty[:3], "0", *nasty[4:])
    assert [tuple(str(row[key]) for key in keys) for row in listed] == rows
    assert {type(row[key]) for row in listed for key in ("windows", "updatedAt")} == {int}


@pytest.mark.parametrize("data,home,place", [
    ("{root}/d", "/x", "d"), ("", "{root}", ".local/share"), ("relative", "{root}", ".local/share")])
def test_where_the_index_lies(velto, data, home, place):
    index = velto.write_index(LAYOUTS[1])
    target = velto.root / place / "Velto" / "Layouts"
    target.parent.mkdir(parents=True)
    index.parent.rename(target)
    environment = {"XDG_DATA_HOME": data.format(root=velto.root), "HOME": home.format(root=velto.root)}
    assert velto.printed("layouts", "list", **environment) == "Focus\n"


def test_index_that_is_no_file(velto):
    index = velto.write_index(LAYOUTS[1])
    index.unlink()
    for make, unmake in ((os.mkfifo, os.unlink), (os.mkdir, os.rmdir)):
        make(index)
        for command in (["layouts", "list"], ["focus"]):
            assert "cannot be read" in velto.refused(*command, status=1)
        unmake(index)


def test_next_command_finds_what_was_saved(velto):
    """The application writes the index a moment after it was asked."""
    index = velto.write_index(LAYOUTS[1])
    later = index.with_name("later")
    index.rename(later)
    velto.install_hand_off(then=f"(sleep 0.2; mv '{later}' '{index}') >'{velto.root}/null' 2>&1 &")
    assert velto.printed("layouts", "save", "Focus") == ""
    assert velto.printed("layouts", "list") == "Focus\n"


def test_ten_thousand_layouts(velto):
    velto.write_index(*[(str(number), f"Layout number {number}", f"layout-number-{number}", "3", "0", "A")
                        for number in range(10_000)])
    assert velto.printed("layout-number-9999", "--print-url") == OPEN + "layout-number-9999\n"
    assert "layout-number-" in velto.refused("layuot-number-77")


def on_terminal(velto, *arguments, answer=b""):
    """What a person sees who types this and, when asked, the answer."""
    parent, child = pty.openpty()
    with subprocess.Popen([*velto.shell, velto.path, *arguments], stdin=child, stdout=child, stderr=child,
                          env=velto.environment(LC_ALL=os.environ.get("LC_ALL", ""))) as process:
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
    assert velto.completed(*words) == expected
    assert not (velto.root / "ran").exists() and not Path("ran").exists()
