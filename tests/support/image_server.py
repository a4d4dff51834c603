#!/usr/bin/python3
"""A web server for tests on loopback, with one file that it gives away in several ways.

It prints "port N" when it listens, and goes on until it is ended or the one who started it is gone. The path says how:
  /whole       the file
  /chunked     the file, without saying its size before
  /cut         half of it, and then the connection is closed
  /hanging     half of it, and then nothing
  /redirected  another address
  anything     404
"""
import argparse
import http.server
import os
import sys
import threading
import time


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        with open(self.server.file, "rb") as file:
            content = file.read()
        way = self.path[1:]
        if way in ("whole", "cut", "hanging"):
            self.send_response(200)
            self.send_header("Content-Length", str(len(content)))
            self.end_headers()
            self.wfile.write(content if way == "whole" else content[:len(content) // 2])
            self.wfile.flush()
            if way == "hanging":
                time.sleep(600)
            self.close_connection = way != "whole"
        elif way == "chunked":
            self.send_response(200)
            self.send_header("Transfer-Encoding", "chunked")
            self.end_headers()
            for part in (content[i:i + 4096] for i in range(0, len(content), 4096)):
                self.wfile.write(b"%x\r\n%s\r\n" % (len(part), part))
            self.wfile.write(b"0\r\n\r\n")
        else:
            self.send_response(302 if way == "redirected" else 404)
            self.send_header("Location", "/whole")
            self.send_header("Content-Length", "0")
            self.end_headers()

    def log_message(self, *_):
        pass


def end_with_parent(parent):
    while os.getppid() == parent:
        time.sleep(0.5)
    os._exit(0)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--record", help="not used")
    parser.add_argument("--file", required=True, help="what is given away")
    options = parser.parse_args()
    threading.Thread(target=end_with_parent, args=(os.getppid(),), daemon=True).start()
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    server.daemon_threads = True
    server.handle_error = lambda *_: None  # clients that break off
    server.file = options.file
    print("port", server.server_port, flush=True)
    server.serve_forever()


if __name__ == "__main__":
    sys.exit(main())
