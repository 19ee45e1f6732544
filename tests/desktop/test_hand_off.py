"""Anything may write to the socket: it goes on serving, and opens nothing that was not asked for."""

import itertools
import random
import socket
import struct

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


MESSAGES = {
    "random": random.Random(7).randbytes(5000),
    "an endless message": struct.pack(">I", 0xFFFFFFFF) + b"x" * 4096,
    "something behind it": frame(b"velto://open") + b"more",
    "no UTF-8": frame(b"velto://open?url=http%3A%2F%2F\xff\xfe/", b"\xc3\x28", b"http://\x80/"),
    "many arguments": frame(*[b"x"] * 65),
    "long argument": frame(b"velto://open?url=" + b"a" * 500_000),
}


def test_any_bytes(running, site):
    """From one that hangs up, from one that stays, and from others that say nothing."""
    pid = running.pid()
    peers = [connect(running) for _ in range(50)]
    for message, ends in itertools.product(MESSAGES.values(), [True, False]):
        peer = connect(running)
        peers.append(peer)
        try:
            peer.sendall(message)
        except OSError:
            pass  # it was dropped before it had said everything
        if ends:
            peer.close()
    window = running.hand_over(launch_url(site.page("/page", COLOUR)))
    window.wait_until_shows(COLOUR)
    assert running.windows() == [window]
    assert running.pid() == pid
    for peer in peers:
        peer.close()
