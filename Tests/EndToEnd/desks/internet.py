"""An Internet of a test's own, with one web site in it.

The programs under test ask hosts on the public Internet only, and there is no switch for that. So
in a network namespace a public address belongs to the loopback interface, and a list of hosts leads
a few names to it or to private addresses. Nothing leaves the namespace, and the program under test
is the one that users have.
"""

import http.server
import os
import pathlib
import struct
import subprocess
import sys
import threading
import zlib

INSIDE = "TAVRIN_INSIDE_NAMESPACE"
# What tells the test runner so.
SKIPPED = 77
PUBLIC = "93.184.216.34"
HOSTS = {"tides.com": PUBLIC, "printer.com": "192.168.7.7", "here.com": "127.0.0.1"}
COLOUR = (230, 0, 120)

PAGE = """<!doctype html><html><head><meta charset=iso-8859-1><title>Plain</title>
<meta property="og:title" content="Tides of the F\xe6r\xf6er">
<meta property="og:description" content="Twice a day">
<meta property="og:image" content="/picture.png"></head>""".encode("latin-1")


def png(side, colour):
    def chunk(name, data):
        body = name + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))
    rows = (b"\0" + bytes(colour) * side) * side
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Site(http.server.BaseHTTPRequestHandler):
    asked = []
    headers_seen = []

    def do_GET(self):
        Site.asked.append((self.headers["Host"], self.path))
        Site.headers_seen.append(dict(self.headers))
        answers = {"/march": ("text/html", PAGE), "/picture.png": ("image/png", png(300, COLOUR))}
        if self.path.startswith("/to/"):
            self.send_response(302)
            self.send_header("Location", f"http://{self.path[4:]}")
            self.end_headers()
            return
        kind, body = answers.get(self.path, ("text/html", b"<title>Not public</title>"))
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Set-Cookie", "seen=1")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def start_site():
    """The server, to be shut down and closed."""
    server = http.server.ThreadingHTTPServer(("", 80), Site)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server


def enter(main):
    """Runs `main` in namespaces of its own, where it may name hosts and addresses: by way of this
    program started again. SKIPPED, and a line that says so, where the machine does not allow it."""
    if os.environ.get(INSIDE):
        return main()
    setup = (f"ip link set lo up && ip address add {PUBLIC}/32 dev lo && "
             "mount --bind \"$1\" /etc/hosts && shift && exec \"$@\"")
    hosts = pathlib.Path(f"/tmp/tavrin-hosts-{os.getpid()}")
    hosts.write_text("127.0.0.1 localhost\n"
                     + "".join(f"{address} {name}\n" for name, address in HOSTS.items()))
    try:
        inside = ["unshare", "--user", "--map-root-user", "--net", "--mount"]
        if subprocess.run([*inside, "true"], stderr=subprocess.DEVNULL).returncode != 0:
            print("skipped: this machine lets nobody make a network of his own")
            return SKIPPED
        return subprocess.run([*inside, "sh", "-c", setup, "sh", str(hosts), sys.executable,
                               *sys.argv], env={**os.environ, INSIDE: "1"}).returncode
    finally:
        hosts.unlink()
