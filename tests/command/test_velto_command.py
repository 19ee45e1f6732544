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


def printed(result):
    assert (result.returncode, result.stderr) == (0, b"")
    assert result.stdout.count(b"\n") == 1
    return os.fsdecode(result.stdout).rstrip("\n")


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


@pytest.mark.parametrize("sites, query", [
    ([], ""),
    (["example.com"], "?domain=example.com"),
    (["a.example", "bücher.de"], "?domain=a.example%2Cb%C3%BCcher.de"),
])
def test_history(velto, sites, query):
    assert printed(velto("history", *sites, "--print-url")) == "velto://history" + query


@pytest.mark.parametrize("text", TARGETS)
def test_target(velto, text):
    url = printed(velto(text, "--print-url"))
    assert url == "velto://open?url=" + quote(TARGETS[text], safe="")


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
    expected = "velto://open?url=http%3A%2F%2Flocalhost%3A3000" + items
    words = options.split()
    assert printed(velto("3000", *words, "--print-url")) == expected
    assert printed(velto("--print-url", *words, "--", "3000")) == expected
    assert printed(velto(*words, "--port", "80", "--print-url", "--port=3000")) == expected
    assert velto.handed_over() is None


def test_zoom_with_blanks_is_trimmed(velto):
    assert printed(velto("3000", "--zoom", " 150 % ", "--print-url")).endswith("&zoom=150%25")


WRONG_USES = {
    "unknown option": ["3000", "--widht", "5"],
    "unknown option with a value": ["3000", "--bogus=1"],
    "short option": ["-3000"],
    "flag with a value": ["3000", "--reuse=true"],
    "missing value": ["3000", "--size"],
    "option in place of a value": ["3000", "--x", "--y", "5"],
    "option with its name in the value": ["3000", "--x", "--x=5"],
    "empty value": ["3000", "--width="],
    "two targets": ["3000", "3001"],
    "port and target": ["--port", "3000", "example.com"],
    "target after the end of options": ["3000", "--", "--reuse"],
    "no target": ["--size", "1x1"],
    "only a print": ["--print-url"],
    "nothing after --": ["--"],
    "empty target": [""],
    "blank target": ["  "],
    "port 0": ["0"],
    "port too large": ["65536"],
    "digits": ["9" * 30],
    "negative port": ["--", "-5"],
    "port option too large": ["--port", "70000"],
    "port option no number": ["--port", "http"],
    "size one number": ["3000", "--size", "420"],
    "size three numbers": ["3000", "--size", "1x2x3"],
    "size with a fraction": ["3000", "--size", "1.5x3"],
    "size half empty": ["3000", "--size", "x3"],
    "x fraction": ["3000", "--x", "1.5"],
    "x with a blank": ["3000", "--x", " 1"],
    "x two signs": ["3000", "--x", "+-1"],
    "x too large": ["3000", "--x", "9223372036854775808"],
    "y too small": ["3000", "--y", "-9223372036854775809"],
    "other digits": ["3000", "--x", "٣"],
    "zoom word": ["3000", "--zoom", "big"],
    "zoom sign": ["3000", "--zoom", "-1"],
    "zoom exponent": ["3000", "--zoom", "1e2"],
    "zoom two dots": ["3000", "--zoom", "1.2.3"],
    "zoom dot": ["3000", "--zoom", "."],
    "zoom percent only": ["3000", "--zoom", "%"],
    "zoom inner blank": ["3000", "--zoom", "1 50"],
    "blank": ["my site"],
    "blank in a URL": ["http://a/b c"],
    "word": ["frobnicate"],
    "unquoted glob": ["*"],
    "dash": ["-"],
    "dot": ["."],
    "two dots": [".."],
    "mail": ["a@example.com"],
    "no scheme": ["://x"],
    "bad scheme": ["1http://a"],
    "URL inside an address": ["localhost:3000/?next=http://a"],
    "no host": ["http:///x"],
    "no host but a user": ["http://u@/x"],
    "empty authority": ["//example.com"],
    "host of marks": ["http://a{b}/"],
    "host with a bad escape": ["http://a%2/"],
    "unclosed bracket": ["http://[::1/x"],
    "text after the bracket": ["http://[::1]x/"],
    "bare IPv6": ["::1"],
    "port in URL no number": ["http://a:b/"],
    "port in URL too large": ["localhost:65536"],
    "no port after the colon": ["localhost:"],
    "other scheme": ["mailto:a@example.com"],
    "script": ["javascript:alert(1)"],
    "line break": ["http://a/\nb"],
    "trailing line break": ["3000\n"],
    "control character in a value": ["3000", "--zoom", "1\x1b"],
    "completion without a shell": ["completion"],
    "completion of another shell": ["completion", "fish"],
    "completion of two shells": ["completion", "bash", "zsh"],
    "history option": ["history", "--bogus"],
    "history of no site": ["history", ""],
    "import option": ["import-safari", "--bogus"],
    "import of no site": ["import-safari", ""],
    "import from nowhere": ["import-safari", "--from"],
    "import from an empty word": ["import-safari", "--from="],
    "sync of a site": ["import-safari", "--sync", "example.com"],
    "import not first": ["--reuse", "import-safari"],
}


@pytest.mark.parametrize("arguments", WRONG_USES.values(), ids=WRONG_USES)
def test_wrong_use(velto, arguments):
    result = velto(*arguments)
    assert (result.returncode, result.stdout) == (2, b"")
    assert re.fullmatch(rb"velto: [^\n]+\n", result.stderr)
    assert velto.handed_over() is None


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
]


@pytest.mark.parametrize("target", NASTY, ids=range(len(NASTY)))
def test_every_byte_survives(velto, target):
    url = printed(velto(target, "--print-url"))
    assert url == "velto://open?url=" + quote(os.fsencode(target), safe="")


def test_random_targets_survive(velto):
    source = random.Random(7)
    alphabet = MARKS * 2 + "abcXYZ019" * 6 + "é日🙂"
    for length in [*range(0, 40, 3), 240, 250, 260]:
        target = "http://h/" + "".join(source.choices(alphabet, k=length))
        query = urlsplit(printed(velto(target, "--print-url"))).query
        assert parse_qsl(query, strict_parsing=True) == [("url", target)]


# The most that the kernel lets through in one argument; nothing of this may take time in its square.
LONGEST = 131000
LONG = ["http://h/" + "a" * 130900, "http://h/" + "&" * 130900, "http://h/" + "é" * 65000]


@pytest.mark.parametrize("target", LONG, ids=["plain", "marks", "other letters"])
def test_long_target_is_printed(velto, target):
    assert printed(velto(target, "--print-url")) == "velto://open?url=" + quote(target, safe="")


def test_target_of_200_kilobytes(velto):
    """Larger than any argument, so the script is read by a shell that has the text already."""
    target = "http://h/?" + "a&" * 100_000
    run = ["-c", 'read -r target; set -- "$target" --print-url; . "$0"', velto.path]
    result = subprocess.run(
        [*velto.shell, *run], input=target.encode() + b"\n", capture_output=True, timeout=20)
    assert printed(result) == "velto://open?url=" + quote(target, safe="")


@pytest.mark.parametrize("argument", [
    "x" * LONGEST, " " * LONGEST, "0" * LONGEST, "--" + "a" * LONGEST, "--zoom=" + "1 " * 65000,
    "http://" + "a@" * 65000, "--size=" + "1" * 130000 + "x1", "a" * 130000 + "://x", "./" * 65000,
    "http://h/" + "&" * 60000,
], ids=lambda text: text[:10])
def test_long_nonsense_is_refused_in_time(velto, argument):
    result = velto(argument)
    assert (result.returncode, result.stdout, result.stderr.count(b"\n")) == (2, b"", 1)
    assert velto.handed_over() is None


def test_files(velto):
    folder = velto.root / "my site"
    (folder / "sub").mkdir(parents=True)
    (folder / "sub" / "a+b.html").touch()
    (folder / "index").touch()
    (velto.root / "link").symlink_to(folder / "sub")

    def page(text, cwd=folder):
        return parse_qsl(urlsplit(printed(velto(text, "--print-url", cwd=cwd))).query)[0][1]

    below = "file://" + quote(str(folder))
    assert page("./index.html") == below + "/index.html"
    assert page("././missing/x.html") == below + "/missing/x.html"
    assert page("sub/a+b.html") == below + "/sub/a%2Bb.html"
    assert page("sub/none.html") == "https://sub/none.html"
    assert page("../my site/index") == below + "/index"
    assert page(str(velto.root / "link" / ".." / "index")) == below + "/index"
    assert velto("index", cwd=folder).returncode == 2, "a name without a slash is no file"


def test_folder_name_with_line_break_is_refused(velto):
    folder = velto.root / "a\nb"
    folder.mkdir()
    result = velto("./x.html", cwd=folder)
    assert (result.returncode, result.stderr.count(b"\n"), velto.handed_over()) == (2, 1, None)


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
    shell = [shutil.which(velto.shell[0]), *velto.shell[1:]]
    printed(velto.launch([*shell, velto.path], *arguments, PATH="/nonexistent"))


def test_failed_output_is_reported(velto):
    with open("/dev/full", "w") as full:
        result = subprocess.run(
            [*velto.shell, velto.path, "3000", "--print-url"], stdout=full, stderr=subprocess.PIPE)
    assert result.returncode != 0


def test_version_and_help(velto):
    assert re.fullmatch(r"velto \d+\.\d+\.\d+", printed(velto("--version")))
    for arguments in ["--help", "-h", "3000 --help", "history --help", "import-safari --help", "completion --help"]:
        result = velto(*arguments.split())
        assert (result.returncode, result.stderr) == (0, b"")
        assert result.stdout.startswith(b"Usage: velto ")
        assert max(map(len, result.stdout.splitlines())) <= 80
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
    quoted = " ".join(f"'{word}'" for word in words)
    script = f"""set -u; source /dev/stdin
      COMP_WORDS=(velto {quoted}); COMP_CWORD={len(words)}
      _velto && complete -p velto >/dev/null && echo "${{COMPREPLY[*]-}}" """
    completion = velto("completion", "bash").stdout
    result = subprocess.run(["bash", "-c", script], input=completion, capture_output=True)
    assert (result.stdout.decode().strip(), result.stderr) == (expected, b"")


@pytest.mark.skipif(not shutil.which("zsh"), reason="no zsh here")
def test_zsh_completion_parses(velto):
    script = velto("completion", "zsh").stdout
    result = subprocess.run(["zsh", "-n"], input=script, capture_output=True)
    assert (result.returncode, result.stderr) == (0, b"")


@pytest.mark.skipif(not shutil.which("shellcheck"), reason="no shellcheck here")
def test_shellcheck(velto):
    parts = sorted((REPOSITORY / "resources").glob("velto-*"))
    subprocess.run(["shellcheck", "-s", "sh", velto.path, *parts], check=True)
    completion = velto("completion", "bash").stdout
    subprocess.run(["shellcheck", "-s", "bash", "-"], input=completion, check=True)


@pytest.mark.skipif(not shutil.which("mandoc"), reason="no mandoc here")
def test_manual_page_is_clean():
    subprocess.run(["mandoc", "-Tlint", "-Wstyle", REPOSITORY / "docs" / "velto.1"], check=True)
