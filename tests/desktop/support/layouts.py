"""Layouts and sessions as they lie on disk, and arrangements of windows on the screen."""

import json
import os
from pathlib import Path


def layouts_folder(application):
    return application.home / "data" / "Velto" / "Layouts"


def session_file(application):
    return application.home / "data" / "Velto" / "Session.json"


def history_file(application):
    return application.home / "data" / "Velto" / "History.json"


def read_json(path):
    """None while there is no such file. Half a file is a failure."""
    return json.loads(path.read_text()) if path.is_file() else None


def stored_layout(application, name):
    """None while it is not there."""
    for path in layouts_folder(application).glob("*.veltolayout.json"):
        layout = read_json(path)
        if layout and layout["name"] == name:
            return layout
    return None


def arrangement(application):
    """The frames of the windows by their pages' titles."""
    return {window.title(): window.frame() for window in application.windows()}


def touching(frames):
    """Which pairs have a piece of an edge in common, and whether it is an upright one."""
    pairs = set()
    for one, a in frames.items():
        for other, b in frames.items():
            beside = a.y < b.y + b.height and b.y < a.y + a.height
            below = a.x < b.x + b.width and b.x < a.x + a.width
            if a.x + a.width == b.x and beside:
                pairs.add((one, other, "upright"))
            if a.y + a.height == b.y and below:
                pairs.add((one, other, "level"))
    return pairs


def words_below(folder, word):
    """The files below a folder whose name or content has the word, in either of the engine's encodings."""
    texts = (word.encode(), word.encode("utf-16-le"))
    found = []
    for parent, folders, files in os.walk(folder):
        for path in (Path(parent, name) for name in folders + files):
            try:
                content = path.read_bytes() if path.is_file() and not path.is_symlink() else b""
            except FileNotFoundError:
                continue  # it went away in between
            if any(text in content or text in path.name.encode() for text in texts):
                found.append(path)
    return found
