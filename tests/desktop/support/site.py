"""A web site on the loopback interface, whose pages the tests write themselves."""

import socket
import ssl
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, urlsplit

from .waiting import wait_until

PLAIN = "<!doctype html><title>{title}</title><body style='margin:0;background:{colour}'>{body}"


class Server(ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, address, port, handler):
        self.address_family = socket.AF_INET6 if ":" in address else socket.AF_INET
        super().__init__((address, port), handler)

    def server_bind(self):
        if self.address_family == socket.AF_INET6:
            both = self.server_address[0] == "::"
            self.socket.setsockopt(socket.IPPROTO_IPV6, socket.IPV6_V6ONLY, int(not both))
        super().server_bind()

    def handle_error(self, *_):
        """A browser may hang up at any time."""


class Site:
    """Every request is noted. A path that no test has given a page answers with an empty page.

    It listens at one address; at "::" on both families. It hangs up on whoever names a host in `deaf_to`.
    """

    def __init__(self, address="127.0.0.1", port=0, deaf_to=(), certificate=None):
        self.requests = []
        self.deaf_to = deaf_to
        self._pages = {}
        self._answers = {}
        self._server = Server(address, port, self._handler())
        self._scheme = "http"
        if certificate:
            self._scheme = "https"
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            self._server.socket = context.wrap_socket(self._server.socket, server_side=True)
        threading.Thread(target=self._server.serve_forever, args=(0.05,), daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        self._server.shutdown()
        self._server.server_close()

    @property
    def port(self):
        return self._server.server_address[1]

    def url(self, path, host="127.0.0.1"):
        return f"{self._scheme}://{host}:{self.port}{path}"

    def page(self, path, colour, body="", headers=(), gate=None):
        """Puts a page of one colour there and returns its URL. It comes when the gate (an Event) is set."""
        html = PLAIN.format(title=path.strip("/"), colour=colour, body=body)
        self._pages[path] = (html.encode(), dict(headers), gate)
        return self.url(path)

    def answer(self, path, how):
        """Lets a function, called with the request's handler, answer instead of a page. Returns the URL."""
        self._answers[path] = how
        return self.url(path)

    def redirect(self, path, to):
        def how(handler):
            handler.send_response(302)
            handler.send_header("Location", to)
            handler.send_header("Content-Length", "0")
            handler.end_headers()
        return self.answer(path, how)

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
                if self._named_host() in site.deaf_to:
                    self.close_connection = True
                    return
                site.requests.append((self.path, dict(self.headers)))
                if how := site._answers.get(urlsplit(self.path).path):
                    self._let(how)
                    return
                body, headers, gate = site._pages.get(urlsplit(self.path).path, (b"", {}, None))
                if gate is not None:
                    gate.wait(60)
                try:
                    self._answer(body, headers)
                except OSError:
                    pass  # the page was closed before it came

            do_POST = do_GET  # beacons, which have no body here

            def _answer(self, body, headers):
                self.send_response(200)
                for name, value in {"Content-Type": "text/html; charset=utf-8", **headers}.items():
                    self.send_header(name, value)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def _named_host(self):
                return urlsplit("//" + self.headers.get("Host", "")).hostname

            def _let(self, how):
                self.close_connection = True
                try:
                    how(self)
                except OSError:
                    pass  # the page was closed before it came

            def log_message(self, *_):
                pass

        return Handler


def free_port():
    """Nothing listens there, at least for the moment, on either family."""
    with socket.create_server(("::", 0), family=socket.AF_INET6, dualstack_ipv6=True) as trial:
        return trial.getsockname()[1]
