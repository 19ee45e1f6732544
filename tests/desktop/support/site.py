"""A web site on the loopback interface, whose pages the tests write themselves."""

import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

from .waiting import wait_until

PLAIN = "<!doctype html><title>{title}</title><body style='margin:0;background:{colour}'>{body}"


class Site:
    """Every request is noted. A path that no test has given a page answers with an empty page."""

    def __init__(self):
        self.requests = []
        self._pages = {}
        self._server = ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._server.daemon_threads = True
        threading.Thread(target=self._server.serve_forever, args=(0.05,), daemon=True).start()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()

    @property
    def port(self):
        return self._server.server_address[1]

    def url(self, path):
        return f"http://127.0.0.1:{self.port}{path}"

    def page(self, path, colour, body="", headers=(), gate=None):
        """Puts a page of one colour there and returns its URL. It comes when the gate (an Event) is set."""
        html = PLAIN.format(title=path.strip("/"), colour=colour, body=body)
        self._pages[path] = (html.encode(), dict(headers), gate)
        return self.url(path)

    def count(self, path):
        return sum(urlsplit(asked).path == path for asked, _ in list(self.requests))

    def wait_for(self, path, times=1):
        """Returns the query of the request for that path, as {name: value}."""
        wait_until(lambda: self.count(path) >= times,
                   lambda: f"request {times} for {path}, after {[asked for asked, _ in self.requests]}")
        asked = [asked for asked, _ in self.requests if urlsplit(asked).path == path][times - 1]
        return {name: values[0] for name, values in parse_qs(urlsplit(asked).query).items()}

    def headers_of(self, path):
        """Those of the last request for it."""
        return [headers for asked, headers in self.requests if urlsplit(asked).path == path][-1]

    def _handler(site):
        class Handler(BaseHTTPRequestHandler):
            protocol_version = "HTTP/1.1"

            def do_GET(self):
                site.requests.append((self.path, dict(self.headers)))
                body, headers, gate = site._pages.get(urlsplit(self.path).path, (b"", {}, None))
                if gate is not None:
                    gate.wait(60)
                try:
                    self._answer(body, headers)
                except OSError:
                    pass  # the page was closed before it came

            def _answer(self, body, headers):
                self.send_response(200)
                for name, value in {"Content-Type": "text/html; charset=utf-8", **headers}.items():
                    self.send_header(name, value)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        return Handler
