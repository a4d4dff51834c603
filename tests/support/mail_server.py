#!/usr/bin/python3
"""A mail server for tests and the demo: takes mails on loopback and writes down what it got.

It prints "port N" when it listens, and goes on until it is ended or the one who started it is gone. Each mail
is a line of JSON in the record file:
  helo, sender, recipients   of the envelope
  user                       who authenticated, or null
  encrypted                  whether the connection was
  headers                    name to decoded text
  body                       decoded text
  raw                        the message as it came, bytes as Latin-1
and each mail that it refused one with nothing but
  refused                    the reply
"""
import argparse
import asyncio
import email
import email.policy
import json
import os
import ssl
import sys

from aiosmtpd.smtp import SMTP, AuthResult, LoginPassword


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--record", default="/dev/stderr", help="file to append the mails to")
    parser.add_argument("--address", default="127.0.0.1", help="loopback address to listen at")
    parser.add_argument("--port", type=int, default=0, help="0, the default: one that is free")
    parser.add_argument("--login", metavar="USER:PASSWORD", help="who may send; without, anybody may")
    parser.add_argument("--certificate", metavar="FILE", help="PEM file with key and certificate: STARTTLS is needed")
    parser.add_argument("--refuse", metavar="REPLY", help='such as "451 try later", instead of taking a mail')
    parser.add_argument("--refusals", type=int, default=sys.maxsize, help="how many mails are refused, then none is")
    parser.add_argument("--stage", choices=["recipient", "data"], default="data", help="where it refuses")
    parser.add_argument("--delay", type=float, default=0, help="seconds before the answer to a mail")
    return parser.parse_args()


class Handler:
    def __init__(self, options):
        self.options = options
        self.refusals_left = options.refusals if options.refuse else 0

    def refuses(self, stage):
        if stage != self.options.stage or self.refusals_left == 0:
            return False
        self.refusals_left -= 1
        self.record({"refused": self.options.refuse})
        return True

    def record(self, entry):
        with open(self.options.record, "a", encoding="utf-8") as file:
            file.write(json.dumps(entry) + "\n")

    async def handle_RCPT(self, server, session, envelope, address, rcpt_options):
        if self.refuses("recipient"):
            return self.options.refuse
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        await asyncio.sleep(self.options.delay)
        if self.refuses("data"):
            return self.options.refuse
        message = email.message_from_bytes(envelope.content, policy=email.policy.default)
        self.record({
            "helo": session.host_name,
            "sender": envelope.mail_from,
            "recipients": envelope.rcpt_tos,
            "user": session.auth_data,
            "encrypted": session.ssl is not None,
            "headers": {name: str(value) for name, value in message.items()},
            "body": message.get_payload(decode=True).decode("utf-8", "backslashreplace"),
            "raw": envelope.content.decode("latin-1"),
        })
        return "250 OK"


def protocol(options, handler):
    def authenticate(server, session, envelope, mechanism, data):
        if not isinstance(data, LoginPassword):
            return AuthResult(success=False, handled=False)
        user, password = data.login.decode(), data.password.decode()
        ok = f"{user}:{password}" == options.login
        return AuthResult(success=ok, handled=False, auth_data=user if ok else None)

    context = None
    if options.certificate:
        context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
        context.load_cert_chain(options.certificate)
    # Who needs TLS for it does not offer AUTH in clear.
    return lambda: SMTP(handler, hostname="mail.test", tls_context=context, require_starttls=context is not None,
                        authenticator=authenticate if options.login else None,
                        auth_required=options.login is not None, auth_require_tls=options.login is None)


async def serve(options):
    starter = os.getppid()
    make = protocol(options, Handler(options))
    server = await asyncio.get_running_loop().create_server(make, options.address, options.port)
    print("port", server.sockets[0].getsockname()[1], flush=True)
    while os.getppid() == starter:
        await asyncio.sleep(1)


if __name__ == "__main__":
    try:
        asyncio.run(serve(arguments()))
    except KeyboardInterrupt:
        pass
