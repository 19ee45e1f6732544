"""A web server on this machine whose pages are of one colour each, no two alike."""

import http.server
import socketserver
import threading
import time

_PAGE = """<!doctype html>
<html lang="en"><head><meta charset="utf-8"><title>{colour}</title>
<style>html {{ background: #{colour} }}</style></head><body></body></html>
"""


def _colours():
    """Colours that no program draws by chance, each once."""
    value = 0
    while True:
        value = (value + 0x9E3779) & 0xFFFFFF
        red, green, blue = value.to_bytes(3, "big")
        if max(red, green, blue) - min(red, green, blue) > 64:
            yield f"{value:06x}"


class _Server(socketserver.ThreadingMixIn, http.server.HTTPServer):
    daemon_threads = True
    request_queue_size = 64


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        colour = self.path.strip("/")
        known = self.server.asked_at
        if colour in known:
            known[colour] = known[colour] or time.monotonic()
            self._answer(200, _PAGE.format(colour=colour).encode())
        else:
            self._answer(404, b"")

    def _answer(self, status, body):
        self.send_response(status)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Site:
    def __init__(self):
        self._colours = _colours()
        self._server = _Server(("127.0.0.1", 0), _Handler)
        self._server.asked_at = {}
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def new_page(self):
        """The colour and the URL of a page that nobody has asked for yet."""
        colour = next(self._colours)
        self._server.asked_at[colour] = None
        return colour, f"http://localhost:{self._server.server_port}/{colour}"

    def asked_at(self, colour):
        """When the page was first asked for, in seconds of the monotonic clock; None when it was not."""
        return self._server.asked_at[colour]
