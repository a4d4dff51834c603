#!/usr/bin/python3
"""A CIM-XML listener for tests and the demo: takes indications on loopback and writes down what it got.

It prints "port N" when it listens, and goes on until it is ended or the one who started it is gone. Each request
is a line of JSON in the record file:
  path, headers     of the HTTP request; header names in lower case
  connection        the client's port
  body              text
  wellFormed        whether an XML parser takes the body
  message           ID of the export message
  className         class of the indication, and
  properties        its properties: name to {"type", "value"}; a value is text, a list, or null. That of an
                    embedded instance is its XML, that of a reference the XML of VALUE.REFERENCE
"""
import argparse
import http.server
import json
import os
import sys
import threading
import time
import xml.etree.ElementTree as ElementTree

ANSWERS = {
    "ok": (200, {}, "taken"),
    "empty": (200, {}, ""),
    "no-content": (204, {}, ""),
    "cim-error": (200, {}, "error"),
    "cim-error-header": (200, {"CIMError": "unsupported-operation"}, ""),
    "garbage": (200, {}, "<?xml\x00 <CIM></MESSAGE> \xff\xfe"),
    "bad-request": (400, {"CIMError": "request-not-well-formed"}, ""),
    "failure": (500, {}, "taken"),
    "redirect": (302, {"Location": "/elsewhere"}, ""),
    "huge": (200, {}, "huge"),
    "no-http": (0, {}, "no-http"),
    "hang": (0, {}, "hang"),
    "drip": (0, {}, "drip"),
    "close": (0, {}, "close"),
}


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--record", default="/dev/stderr", help="file to append the requests to")
    parser.add_argument("--address", default="127.0.0.1", help="loopback address to listen at")
    parser.add_argument("--port", type=int, default=0, help="0, the default: one that is free")
    parser.add_argument("--answers", default="ok", help="by request, separated by commas; the last one stays: "
                        + ", ".join(ANSWERS))
    return parser.parse_args()


def value_of(element):
    """The value of a PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE element."""
    child = element.find("*")
    if child is None or child.tag == "VALUE.NULL":
        return None
    if child.tag == "VALUE.ARRAY":
        return [None if item.tag == "VALUE.NULL" else item.text or "" for item in child]
    if child.tag == "VALUE.REFERENCE":
        return ElementTree.tostring(child, encoding="unicode")
    return child.text or ""


def describe(body):
    """What a parser finds in an export message."""
    try:
        root = ElementTree.fromstring(body)
    except ElementTree.ParseError as error:
        return {"wellFormed": False, "error": str(error)}
    result = {"wellFormed": True}
    message = root.find("MESSAGE")
    instance = root.find("MESSAGE/SIMPLEEXPREQ/EXPMETHODCALL[@NAME='ExportIndication']"
                         "/EXPPARAMVALUE[@NAME='NewIndication']/INSTANCE")
    if root.tag == "CIM" and instance is not None:
        result["message"] = message.get("ID")
        result["className"] = instance.get("CLASSNAME")
        result["properties"] = {
            item.get("NAME"): {
                "type": item.get("TYPE", "reference"),
                "isArray": item.tag == "PROPERTY.ARRAY",
                "embedded": item.get("EmbeddedObject"),
                "value": value_of(item),
            } for item in instance
        }
    return result


def answer_text(kind, message):
    if kind == "huge":
        return "<CIM>" + " " * 4_000_000 + "</CIM>"
    if kind not in ("taken", "error"):
        return kind
    inner = '<ERROR CODE="1" DESCRIPTION="no"/>' if kind == "error" else "<IRETURNVALUE/>"
    return (f'<?xml version="1.0" encoding="utf-8"?>\n<CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="{message}" PROTOCOLVERSION="1.0"><SIMPLEEXPRSP>'
            f'<EXPMETHODRESPONSE NAME="ExportIndication">{inner}</EXPMETHODRESPONSE>'
            f"</SIMPLEEXPRSP></MESSAGE></CIM>\n")


class Listener(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, options):
        super().__init__((options.address, options.port), Request)
        self.lock = threading.Lock()
        self.record_file = options.record
        self.answers = options.answers.split(",")

    def next_answer(self):
        with self.lock:
            return self.answers.pop(0) if len(self.answers) > 1 else self.answers[0]

    def record(self, entry):
        with self.lock, open(self.record_file, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")

    def handle_error(self, *_):
        pass  # a client that went away


class Request(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        indication = describe(body)
        self.server.record({
            "path": self.path,
            "connection": self.client_address[1],
            "headers": {name.lower(): value for name, value in self.headers.items()},
            "body": body.decode("utf-8", "backslashreplace"),
            **indication,
        })
        status, headers, kind = ANSWERS[self.server.next_answer()]
        if status == 0:
            self.misbehave(kind)
            return
        text = answer_text(kind, indication.get("message", "")).encode("latin-1")
        self.send_response(status)
        self.send_header("Content-Type", 'application/xml; charset="utf-8"')
        self.send_header("CIMExport", "MethodResponse")
        for name, value in headers.items():
            self.send_header(name, value)
        if status != 204:
            self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def misbehave(self, kind):
        self.close_connection = True
        if kind == "no-http":
            self.wfile.write(b"\x00\x01\x02 no answer of HTTP\r\n\r\n")
        elif kind == "hang":
            time.sleep(600)
        elif kind == "drip":
            self.wfile.write(b"HTTP/1.1 200 OK\r\n\r\n")
            for _ in range(600):
                self.wfile.write(b" ")
                time.sleep(1)

    def log_message(self, *_):
        pass


def end_with(starter):
    """A listener that nobody will end must not stay behind."""
    while os.getppid() == starter:
        time.sleep(1)
    os._exit(0)


if __name__ == "__main__":
    listener = Listener(arguments())
    threading.Thread(target=end_with, args=(os.getppid(),), daemon=True).start()
    print("port", listener.server_port, flush=True)
    try:
        listener.serve_forever()
    except KeyboardInterrupt:
        sys.exit(0)
