"""What the velto command prints, hands over and refuses."""

import os
import random
import re
import shutil
import subprocess
from pathlib import Path
from urllib.parse import parse_qsl, quote, urlsplit

import pytest

REPOSITORY = Path(__file__).resolve().parents[2]
LOCAL = "http://localhost:3000"
OPEN = "velto://open?url="


TARGETS = {
    "3000": LOCAL,
    "+3000": LOCAL,
    "003000": LOCAL,
    " 3000 ": LOCAL,
    "1": "http://localhost:1",
    "65535": "http://localhost:65535",
    "https://example.com": "https://example.com",
    "HTTP://Example.com/A?b#c": "HTTP://Example.com/A?b#c",
    "custom+x.y-1://host": "custom+x.y-1://host",
    "http://user:p@ss@h:8/": "http://user:p@ss@h:8/",
    "http://a:/": "http://a:/",
    "http://[::1%en0]:8080/x": "http://[::1%en0]:8080/x",
    "http://bücher.de/ü": "http://bücher.de/ü",
    "file:///srv/a.html": "file:///srv/a.html",
    "example.com": "https://example.com",
    "example.com:8443/a?b=c": "https://example.com:8443/a?b=c",
    "devbox:8080": "https://devbox:8080",
    "example.com?q=1": "https://example.com?q=1",
    "localhost": "http://localhost",
    "LocalHost:3000/x": "http://LocalHost:3000/x",
    "127.0.0.1:8000": "http://127.0.0.1:8000",
    "0.0.0.0/x": "http://0.0.0.0/x",
    "127.0.0.2": "https://127.0.0.2",
    "printer.LOCAL/a": "http://printer.LOCAL/a",
    "printer.local.example.com": "https://printer.local.example.com",
    "[::1]:3000": "https://[::1]:3000",
    "/srv/a b/ü#1?.html": "file:///srv/a%20b/%C3%BC%231%3F.html",
    "//etc": "file:///etc",
}


@pytest.mark.parametrize("text", TARGETS)
def test_target(velto, text):
    assert velto.printed(text, "--print-url") == OPEN + quote(TARGETS[text], safe="") + "\n"


OPTIONS = [
    ("--size 420x760 --top-left", "&width=420&height=760&x=0&y=0"),
    ("--size=420X760", "&width=420&height=760"),
    ("--size 0x5 --x 1", "&width=0&height=5&x=1"),
    ("--width -5", "&width=-5"),
    ("--width 500 --height=800", "&width=500&height=800"),
    ("--size 1x2 --width 3", "&width=3&height=2"),
    ("--width 3 --size 1x2", "&width=1&height=2"),
    ("--x 1 --top-left --y -7", "&x=0&y=-7"),
    ("--x +40 --y=-0", "&x=40&y=0"),
    ("--x 99999 --y 007", "&x=99999&y=7"),
    ("--x 9223372036854775807 --y -9223372036854775808", "&x=9223372036854775807&y=-9223372036854775808"),
    ("--zoom 150", "&zoom=150"),
    ("--zoom=1.5", "&zoom=1.5"),
    ("--zoom .5%", "&zoom=.5%25"),
    ("--zoom 500", "&zoom=500"),
    ("--zoom 0", "&zoom=0"),
    ("--zoom 50 --zoom 75", "&zoom=75"),
    ("--incognito --no-focus --on-top --background --reuse --collapsed-controls"
     " --zoom 2 --top-left --size 1x1",
     "&width=1&height=1&x=0&y=0&zoom=2"
     "&hide=true&reuse=true&background=true&onTop=true&noFocus=true&incognito=true"),
    ("--reuse --reuse", "&reuse=true"),
]


@pytest.mark.parametrize("options,items", OPTIONS)
def test_options_before_and_after_the_target(velto, options, items):
    expected = f"{OPEN}http%3A%2F%2Flocalhost%3A3000{items}\n"
    words = options.split()
    assert velto.printed("3000", *words, "--print-url") == expected
    assert velto.printed("--print-url", *words, "--", "3000") == expected
    assert velto.printed(*words, "--port", "80", "--print-url", "--port=3000") == expected
    assert velto.handed_over() is None


def test_zoom_with_blanks_is_trimmed(velto):
    assert velto.printed("3000", "--zoom", " 150 % ", "--print-url").endswith("&zoom=150%25\n")


@pytest.mark.parametrize("sites, query", [
    ([], ""),
    (["example.com"], "?domain=example.com"),
    (["a.example", "bücher.de"], "?domain=a.example%2Cb%C3%BCcher.de"),
])
def test_history(velto, sites, query):
    assert velto.printed("history", *sites, "--print-url") == f"velto://history{query}\n"


WRONG_USES = [
    # options
    ["3000", "--widht", "5"], ["3000", "--bogus=1"], ["-3000"], ["3000", "--reuse=true"], ["3000", "--size"],
    ["3000", "--x", "--y", "5"], ["3000", "--x", "--x=5"], ["3000", "--width="],
    # how many targets
    ["3000", "3001"], ["--port", "3000", "example.com"], ["3000", "--", "--reuse"], ["--size", "1x1"],
    ["--print-url"], ["--"], [""], ["  "],
    # ports
    ["0"], ["65536"], ["9" * 30], ["--", "-5"], ["--port", "70000"], ["--port", "http"],
    # numbers
    ["3000", "--size", "420"], ["3000", "--size", "1x2x3"], ["3000", "--size", "1.5x3"],
    ["3000", "--size", "x3"], ["3000", "--x", "1.5"], ["3000", "--x", " 1"], ["3000", "--x", "+-1"],
    ["3000", "--x", "9223372036854775808"], ["3000", "--y", "-9223372036854775809"], ["3000", "--x", "٣"],
    ["3000", "--zoom", "big"], ["3000", "--zoom", "-1"], ["3000", "--zoom", "1e2"],
    ["3000", "--zoom", "1.2.3"], ["3000", "--zoom", "."], ["3000", "--zoom", "%"], ["3000", "--zoom", "1 50"],
    ["3000", "--zoom", "1\x1b"],
    # words that are no addresses
    ["my site"], ["http://a/b c"], ["frobnicate"], ["*"], ["-"], ["."], [".."], ["a@example.com"], ["3000\n"],
    # addresses that are no good
    ["://x"], ["1http://a"], ["localhost:3000/?next=http://a"], ["http:///x"], ["http://u@/x"],
    ["//example.com"], ["http://a{b}/"], ["http://a%2/"], ["http://[::1/x"], ["http://[::1]x/"], ["::1"],
    ["http://a:b/"], ["localhost:65536"], ["localhost:"], ["mailto:a@example.com"], ["javascript:alert(1)"],
    ["http://a/\nb"],
    # commands
    ["completion"], ["completion", "fish"], ["completion", "bash", "zsh"], ["history", "--bogus"],
    ["history", ""], ["import-safari", "--bogus"], ["import-safari", ""], ["import-safari", "--from"],
    ["import-safari", "--from="], ["import-safari", "--sync", "example.com"], ["--reuse", "import-safari"],
]


@pytest.mark.parametrize("arguments", WRONG_USES, ids=" ".join)
def test_wrong_use(velto, arguments):
    velto.refused(*arguments)


MARKS = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"
NASTY = [
    "http://h/" + MARKS,
    "http://h/%41%zz%",
    "http://h/?a=1&b=2+3#x%26;$HOME`id`$(id)'\"\\n",
    "http://h/ü/日本/🙂?é",
    "http://h/\udcff\udc81\udc88",  # bytes that are no UTF-8, among them some that shells use for themselves
    "http://h/" + MARKS * 20,
    "http://h/" + "a" * 247,
    "http://h/" + "a" * 248,
    # The most that the kernel lets through in one argument; nothing of this may take time in its square.
    "http://h/" + "a" * 130900,
    "http://h/" + "&" * 130900,
    "http://h/" + "é" * 65000,
]


@pytest.mark.parametrize("target", NASTY, ids=range(len(NASTY)))
def test_every_byte_survives(velto, target):
    assert velto.printed(target, "--print-url") == OPEN + quote(os.fsencode(target), safe="") + "\n"


def test_random_targets_survive(velto):
    source = random.Random(7)
    alphabet = MARKS * 2 + "abcXYZ019" * 6 + "é日🙂"
    for length in [*range(0, 40, 3), 240, 250, 260]:
        target = "http://h/" + "".join(source.choices(alphabet, k=length))
        assert parse_qsl(urlsplit(velto.printed(target, "--print-url").rstrip("\n")).query,
                         strict_parsing=True) == [("url", target)]


def test_target_of_200_kilobytes(velto):
    """Larger than any argument, so the script is read by a shell that has the text already."""
    target = "http://h/?" + "a&" * 100_000
    run = ["-c", 'read -r target; set -- "$target" --print-url; . "$0"', velto.path]
    result = subprocess.run(
        [*velto.shell, *run], input=target.encode() + b"\n", capture_output=True, timeout=20)
    assert (result.returncode, result.stdout.decode()) == (0, OPEN + quote(target, safe="") + "\n")


@pytest.mark.parametrize("argument", [
    "x" * 131000, " " * 131000, "0" * 131000, "--" + "a" * 131000, "--zoom=" + "1 " * 65000,
    "http://" + "a@" * 65000, "--size=" + "1" * 130000 + "x1", "a" * 130000 + "://x", "./" * 65000,
    "http://h/" + "&" * 60000,
], ids=lambda text: text[:10])
def test_long_nonsense_is_refused_in_time(velto, argument):
    velto.refused(argument)


def test_files(velto):
    folder = velto.root / "my site"
    (folder / "sub").mkdir(parents=True)
    (folder / "sub" / "a+b.html").touch()
    (folder / "index").touch()
    (velto.root / "link").symlink_to(folder / "sub")

    def page(text, cwd=folder):
        return parse_qsl(urlsplit(velto.printed(text, "--print-url", cwd=cwd).rstrip("\n")).query)[0][1]

    below = "file://" + quote(str(folder))
    assert page("./index.html") == below + "/index.html"
    assert page("././missing/x.html") == below + "/missing/x.html"
    assert page("sub/a+b.html") == below + "/sub/a%2Bb.html"
    assert page("sub/none.html") == "https://sub/none.html"
    assert page("../my site/index") == below + "/index"
    assert page(str(velto.root / "link" / ".." / "index")) == below + "/index"
    velto.refused("index", cwd=folder)
    (velto.root / "a\nb").mkdir()
    velto.refused("./x.html", cwd=velto.root / "a\nb")


@pytest.mark.parametrize("status", [0, 1])
def test_hands_over_and_passes_the_status_on(velto, status):
    velto.install_hand_off(status)
    result = velto("3000", "--on-top")
    assert (result.returncode, result.stdout, result.stderr) == (status, b"", b"")
    assert velto.handed_over() == ["unset", "velto://open?url=http%3A%2F%2Flocalhost%3A3000&onTop=true"]


def test_without_arguments_hands_over_no_url(velto):
    assert velto().returncode == 0
    assert velto.handed_over() == ["unset"]


def test_environment_is_neither_read_nor_changed(velto):
    names = ["url", "page", "port", "x", "zoom", "hide", "printUrl", "target", "IFS"]
    variables = dict.fromkeys(names, "true")
    result = velto("3000", LC_ALL="C.UTF-8", **variables)
    assert result.returncode == 0
    assert velto.handed_over() == ["C.UTF-8", "velto://open?url=http%3A%2F%2Flocalhost%3A3000"]


def test_found_through_links(velto):
    path = velto.path
    for depth in range(12):
        folder = velto.root / f"links {depth}" / "bin"
        folder.mkdir(parents=True)
        link = folder / f"velto{depth}"
        link.symlink_to(os.path.relpath(path, folder) if depth % 2 else path)
        path = link
    assert velto.launch([path], "3000").returncode == 0
    assert len(velto.handed_over()) == 2


@pytest.mark.parametrize("place", ["here", "relative", "path", "path and link"])
def test_found_however_it_was_called(velto, place):
    bin_folder = velto.root / "bin"
    bin_folder.mkdir()
    (bin_folder / "v").symlink_to("../programs here/velto")
    path = os.environ["PATH"]
    result = {
        "here": lambda: velto.launch([*velto.shell, "velto"], "3000", cwd=velto.folder),
        "relative": lambda: velto.launch([*velto.shell, "bin/v"], "3000"),
        "path": lambda: velto.launch(["env", "velto"], "3000", PATH=f"{velto.folder}:{path}"),
        "path and link": lambda: velto.launch(["env", "v"], "3000", PATH=f"bin:{path}"),
    }[place]()
    assert (result.returncode, result.stderr) == (0, b"")
    assert len(velto.handed_over()) == 2


def test_hand_off_program_missing(velto):
    (velto.folder / "velto-open").unlink()
    result = velto("3000")
    assert result.returncode == 1
    assert re.fullmatch(rb"velto: velto-open is missing from .*programs here'[^\n]*\n", result.stderr)


@pytest.mark.parametrize("arguments", [["http://h/?a=b&c#d", "--zoom", "5%", "--print-url"], ["--version"],
                                       ["import-safari", "--print-url"], ["./a b.html", "--print-url"]])
def test_short_answers_start_no_process(velto, arguments):
    result = velto.without_other_programs(*arguments)
    assert (result.returncode, result.stderr) == (0, b"")


def test_failed_output_is_reported(velto):
    with open("/dev/full", "w") as full:
        result = subprocess.run(
            [*velto.shell, velto.path, "3000", "--print-url"], stdout=full, stderr=subprocess.PIPE)
    assert result.returncode != 0


def test_version_and_help(velto):
    assert re.fullmatch(r"velto \d+\.\d+\.\d+\n", velto.printed("--version"))
    for arguments in [
            "--help", "-h", "3000 --help", "history --help", "import-safari --help", "completion --help"]:
        text = velto.printed(*arguments.split())
        assert text.startswith("Usage: velto ")
        assert max(map(len, text.splitlines())) <= 80
    assert velto.handed_over() is None


def test_every_text_tells_the_same_options(velto):
    def options(text):
        return set(re.findall(r"--[a-z][a-z-]*", text))

    listed = options(velto("--help").stdout.decode())
    assert len(listed) == 22
    for shell in ["bash", "zsh"]:
        assert options(velto("completion", shell).stdout.decode()) == listed
    page = re.sub(r"(Fl|Ar) (-[a-z-]+)", r"-\2", (REPOSITORY / "docs" / "velto.1").read_text())
    assert options(page) == listed


COMPLETIONS = [
    (["--si"], "--size"),
    (["3000", "--on"], "--on-top"),
    (["c"], "completion"),
    (["im"], "import-safari"),
    (["3000", "im"], ""),
    (["completion", ""], "bash zsh"),
    (["completion", "z"], "zsh"),
    (["completion", "zsh", ""], ""),
    (["import-safari", "--s"], "--sync"),
    (["import-safari", "--f"], "--from"),
    (["3000", "--zoom", "1"], "100 125 150"),
    (["3000", "--size", ""], ""),
    (["3000", "--zoom", "=", ""], ""),
]


@pytest.mark.parametrize("words,expected", COMPLETIONS)
def test_bash_completion(velto, words, expected):
    assert velto.completed(*words) == expected


@pytest.mark.skipif(not shutil.which("zsh"), reason="no zsh here")
def test_zsh_completion_parses(velto):
    script = velto("completion", "zsh").stdout
    subprocess.run(["zsh", "-n"], input=script, check=True)


@pytest.mark.skipif(not shutil.which("shellcheck"), reason="no shellcheck here")
def test_shellcheck(velto):
    parts = sorted((REPOSITORY / "resources").glob("velto-*"))
    subprocess.run(["shellcheck", "-s", "sh", velto.path, *parts], check=True)
    completion = velto("completion", "bash").stdout
    subprocess.run(["shellcheck", "-s", "bash", "-"], input=completion, check=True)


@pytest.mark.skipif(not shutil.which("mandoc"), reason="no mandoc here")
def test_manual_page_is_clean():
    subprocess.run(["mandoc", "-Tlint", "-Wstyle", REPOSITORY / "docs" / "velto.1"], check=True)
