"""Safari's data, as the tests write it themselves."""

import sqlite3
import struct
from collections import namedtuple

Cookie = namedtuple("Cookie", "domain name value")
Visit = namedtuple("Visit", "url title seconds")

REFERENCE_DATE = 978307200
CREATED = 600000000.125
EXPIRES = 2000000000.0


def snapshot(application):
    """The folder in which copies are staged."""
    return application.home / "data" / "Velto" / "SafariImport"


def write_files(folder, cookies, visits):
    folder.mkdir(0o700, parents=True)
    (folder / "Cookies.binarycookies").write_bytes(cookie_file(cookies))
    write_history(folder / "History.db", visits)


def cookie_file(cookies):
    records = [record(cookie) for cookie in cookies]
    start = 12 + 4 * len(records)
    offsets = [start + sum(map(len, records[:place])) for place in range(len(records))]
    page = struct.pack(">I", 0x100) + struct.pack(f"<I{len(records)}II", len(records), *offsets, 0)
    page += b"".join(records)
    return b"cook" + struct.pack(">II", 1, len(page)) + page + bytes(4) + bytes.fromhex("071720050000004b")


def record(cookie):
    texts = [text.encode() + b"\0" for text in (cookie.domain, cookie.name, "/", cookie.value)]
    places = [56 + sum(map(len, texts[:place])) for place in range(4)]
    size = 56 + sum(map(len, texts))
    head = struct.pack("<10I", size, 0, 0, 0, *places, 0, 0)
    return head + struct.pack("<dd", EXPIRES, CREATED) + b"".join(texts)


def write_history(path, visits):
    with sqlite3.connect(path) as database:
        database.execute("CREATE TABLE history_items (id INTEGER PRIMARY KEY, url TEXT)")
        database.execute("CREATE TABLE history_visits (id INTEGER PRIMARY KEY, history_item INTEGER,"
                         " title TEXT, visit_time REAL, load_successful BOOLEAN,"
                         " redirect_destination INTEGER)")
        for number, visit in enumerate(visits):
            database.execute("INSERT INTO history_items VALUES (?, ?)", (number, visit.url))
            database.execute("INSERT INTO history_visits VALUES (?, ?, ?, ?, 1, NULL)",
                             (number, number, visit.title, visit.seconds - REFERENCE_DATE))
    database.close()
