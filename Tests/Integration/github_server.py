#!/usr/bin/python3
"""Answers gh over a Unix socket: github_server.py SOCKET STATUS ANSWER-FILE; prints each query."""
import http.server
import socketserver
import sys


class Handler(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"] or 0))
        print(self.path, self.headers["Authorization"], body.decode(), flush=True)
        answer = open(sys.argv[3], "rb").read()
        self.send_response(int(sys.argv[2]))
        self.send_header("Content-Type", "application/json")
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *_):
        pass


server = socketserver.ThreadingUnixStreamServer(sys.argv[1], Handler)
print("ready", flush=True)
server.serve_forever()
