"""Anything may write to the socket: it goes on serving, and opens nothing that was not asked for."""

import random
import socket
import struct

import pytest

from support.application import launch_url

COLOUR = "#2060c0"


def connect(application):
    peer = socket.socket(socket.AF_UNIX)
    peer.settimeout(10)
    peer.connect(str(application.socket))
    return peer


def frame(*arguments):
    payload = b"".join(argument + b"\0" for argument in arguments)
    return struct.pack(">I", len(payload)) + payload


def still_serves(application, site, pid):
    window = application.hand_over(launch_url(site.page("/page", COLOUR)))
    window.wait_until_shows(COLOUR)
    assert application.windows() == [window]
    assert application.pid() == pid


MESSAGES = {
    "random": random.Random(7).randbytes(5000),
    "half a header": b"\0\0",
    "an endless message": struct.pack(">I", 0xFFFFFFFF) + b"x" * 4096,
    "too long by one": struct.pack(">I", (1 << 20) + 1) + b"x" * 4096,
    "not ended": struct.pack(">I", 5) + b"velto",
    "something behind it": frame(b"velto://open") + b"more",
    "web request": b"GET / HTTP/1.1\r\nHost: localhost\r\n\r\n",
    "no UTF-8": frame(b"velto://open?url=http%3A%2F%2F\xff\xfe/", b"\xc3\x28", b"http://\x80/"),
    "many arguments": frame(*[b"x"] * 65),
    "long argument": frame(b"velto://open?url=" + b"a" * 500_000),
}


@pytest.mark.parametrize("ends", [True, False], ids=["ends", "stays"])
def test_any_bytes(running, site, ends):
    pid = running.pid()
    peers = []
    for message in MESSAGES.values():
        peer = connect(running)
        peers.append(peer)
        try:
            peer.sendall(message)
        except OSError:
            pass  # it was dropped before it had said everything
        if ends:
            peer.close()
    still_serves(running, site, pid)
    for peer in peers:
        peer.close()


def test_silent_peers(running, site):
    pid = running.pid()
    peers = [connect(running) for _ in range(50)]
    still_serves(running, site, pid)
    for peer in peers:
        peer.close()
