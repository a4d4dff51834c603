"""`phctl serve` on a virtual BMC of its own, and a CIM-XML client, for the tests of the server.

The client knows DSP0200 and DSP0201 and nothing of the server's code: requests are put together as text, answers are
read with Python's own XML parser.
"""
import base64
import http.client
import json
import os
import re
import shutil
import ssl
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree
from xml.sax.saxutils import escape, quoteattr

COMMAND = os.environ["PH_PHCTL"].split("|")  # an emulator may come first
MODEL = os.environ["PH_MODEL"]


class CimError(Exception):
    def __init__(self, element):
        super().__init__(element.get("CODE"), element.get("DESCRIPTION"))
        self.code = int(element.get("CODE"))


class HttpError(Exception):
    def __init__(self, status, headers, body):
        super().__init__(status, headers.get("CIMError"), body)
        self.status = status
        self.headers = headers


class Server:
    """A machine with its server. `options` are of `phctl serve`."""

    def __init__(self, *options, address="127.0.0.1"):
        self.root = tempfile.mkdtemp(prefix="ph-test-")
        for folder in ("conf", "tmp", "usr/local/lib", "var/lib", "var/log", "usr/sbin", "usr/bin"):
            os.makedirs(os.path.join(self.root, folder))
        for command in ("usr/sbin/reboot", "usr/bin/killall", "usr/bin/ps"):
            with open(os.path.join(self.root, command), "w", encoding="utf-8") as script:
                script.write("#!/bin/sh\n")
            os.chmod(os.path.join(self.root, command), 0o755)
        self.environment = dict(os.environ, PH_SYSROOT=self.root)
        self.phctl("bmc", "create", MODEL)
        self.phctl("sync")
        self.log = os.path.join(self.root, "serve.log")
        self.arguments = [*COMMAND, "serve", "--listen", address + ":0", *options]
        self.start()

    def start(self):
        with open(self.log, "w", encoding="utf-8") as log:
            self.process = subprocess.Popen(self.arguments, stdout=subprocess.DEVNULL, stderr=log,
                                            env=self.environment, cwd=self.root)
        self.port = int(re.search(r"Listening at .*:(\d+)", self.logged(r"Listening at .*:\d+\n")).group(1))

    def logged(self, pattern=None):
        """What it wrote on stderr; waits until it matches."""
        for _ in range(200):
            with open(self.log, encoding="utf-8") as log:
                text = log.read()
            if pattern is None or re.search(pattern, text):
                return text
            time.sleep(0.05)
        raise AssertionError(f"{pattern} is not in {text}")

    def phctl(self, *arguments):
        return subprocess.run([*COMMAND, *arguments], env=self.environment, check=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8").stdout

    def json(self, *arguments):
        return json.loads(self.phctl(*arguments, "--json"))

    def end(self):
        self.process.terminate()
        return self.process.wait(60)

    def restart(self):
        if self.end() != 0:
            raise AssertionError(self.logged())
        self.start()

    def stop(self):
        """Ends it, and what it had. Returns its exit status."""
        status = self.end()
        shutil.rmtree(self.root, ignore_errors=True)
        return status


def parameter(name, value):
    """An IPARAMVALUE; `value` is XML, a bool, a number, a text, or a list of texts."""
    if isinstance(value, bool):
        value = "TRUE" if value else "FALSE"
    if isinstance(value, list):
        value = "<VALUE.ARRAY>" + "".join(f"<VALUE>{escape(each)}</VALUE>" for each in value) + "</VALUE.ARRAY>"
    elif not str(value).startswith("<"):
        value = f"<VALUE>{escape(str(value))}</VALUE>"
    return f"<IPARAMVALUE NAME={quoteattr(name)}>{value}</IPARAMVALUE>"


def class_name(name):
    return f"<CLASSNAME NAME={quoteattr(name)}/>"


def name_space_path(name):
    parts = "".join(f"<NAMESPACE NAME={quoteattr(part)}/>" for part in name.split("/"))
    return f"<LOCALNAMESPACEPATH>{parts}</LOCALNAMESPACEPATH>"


def intrinsic(operation, name_space="root/cimv2", **parameters):
    inner = "".join(parameter(name, value) for name, value in parameters.items())
    return (f"<SIMPLEREQ><IMETHODCALL NAME={quoteattr(operation)}>{name_space_path(name_space)}{inner}"
            "</IMETHODCALL></SIMPLEREQ>")


def method_call(method, instance_name, parameters="", name_space="root/cimv2"):
    return (f"<SIMPLEREQ><METHODCALL NAME={quoteattr(method)}><LOCALINSTANCEPATH>{name_space_path(name_space)}"
            f"{instance_name}</LOCALINSTANCEPATH>{parameters}</METHODCALL></SIMPLEREQ>")


def message(requests):
    return ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="4711" PROTOCOLVERSION="1.0">{requests}</MESSAGE></CIM>')


def outcome(response):
    """The IMETHODRESPONSE or METHODRESPONSE of a SIMPLERSP. Raises CimError."""
    error = response.find("*/ERROR")
    if error is not None:
        raise CimError(error)
    return response.find("*")


class Client:
    def __init__(self, server, user=None, tls=None, host="127.0.0.1"):
        if tls:
            self.connection = http.client.HTTPSConnection(host, server.port, timeout=60, context=tls)
        else:
            self.connection = http.client.HTTPConnection(host, server.port, timeout=60)
        self.headers = {"Content-Type": 'application/xml; charset="utf-8"', "CIMOperation": "MethodCall"}
        if user:
            self.headers["Authorization"] = "Basic " + base64.b64encode(user.encode()).decode()

    def post(self, body, **headers):
        """The answer's bytes. Raises HttpError."""
        self.connection.request("POST", "/cimom", body, {**self.headers, **headers})
        answer = self.connection.getresponse()
        content = answer.read()
        if answer.status != 200:
            raise HttpError(answer.status, answer.headers, content)
        return content

    def send(self, requests):
        """The SIMPLERSP elements."""
        return ElementTree.fromstring(self.post(message(requests).encode())).findall(".//SIMPLERSP")

    def call(self, operation, name_space="root/cimv2", **parameters):
        return outcome(self.send(intrinsic(operation, name_space, **parameters))[0])

    def items(self, operation, name_space="root/cimv2", **parameters):
        return list(self.call(operation, name_space, **parameters).find("IRETURNVALUE"))

    def names(self, name, name_space="root/cimv2"):
        return [xml(each) for each in self.items("EnumerateInstanceNames", name_space, ClassName=class_name(name))]

    def invoke(self, method, instance_name, parameters=""):
        return outcome(self.send(method_call(method, instance_name, parameters))[0])


def new_instance(name, system, properties):
    """The INSTANCE of a class whose instances a service processor has."""
    inner = "".join(f'<PROPERTY NAME="{each}" TYPE="string"><VALUE>{escape(text)}</VALUE></PROPERTY>'
                    for each, text in {"SystemCreationClassName": "CIM_SPComputerSystem", "CreationClassName": name,
                                       "SystemName": system, **properties}.items())
    return f'<INSTANCE CLASSNAME="{name}">{inner}</INSTANCE>'


def new_subscription(made, handler):
    """The INSTANCE that leads a filter to a destination; both are paths."""
    references = "".join(
        f'<PROPERTY.REFERENCE NAME="{name}"><VALUE.REFERENCE>{path}</VALUE.REFERENCE></PROPERTY.REFERENCE>'
        for name, path in (("Filter", made), ("Handler", handler)))
    return f'<INSTANCE CLASSNAME="CIM_IndicationSubscription">{references}</INSTANCE>'


def xml(element):
    return ElementTree.tostring(element, encoding="unicode")


def values(instance):
    """An INSTANCE's properties: name to text, list of texts, or None."""
    return {each.get("NAME"): value(each) for each in instance if each.tag.startswith("PROPERTY")}


def value(holder):
    child = holder.find("*")
    if child is None:
        return None
    if child.tag == "VALUE.ARRAY":
        return [each.text or "" for each in child]
    return xml(child) if child.tag == "VALUE.REFERENCE" else child.text or ""


def result(response, name):
    """A PARAMVALUE of a response."""
    return value(response.find(f"PARAMVALUE[@NAME='{name}']"))


def trusting(certificate):
    context = ssl.create_default_context(cafile=certificate)
    return context


class ServedTest(unittest.TestCase):
    options = ()

    @classmethod
    def setUpClass(cls):
        cls.server = Server(*cls.options)
        cls.addClassCleanup(cls.server.stop)

    def setUp(self):
        self.client = self.connect()

    def connect(self, *arguments, **options):
        client = Client(self.server, *arguments, **options)
        self.addCleanup(client.connection.close)
        return client

    def assert_refused(self, code, call, *arguments, **parameters):
        with self.assertRaises(CimError) as refused:
            call(*arguments, **parameters)
        self.assertEqual(refused.exception.code, code, refused.exception)


def main():
    unittest.main(argv=sys.argv, verbosity=1)
