"""Who may log in and do what, TLS, and what happens to clients that take too much."""
import contextlib
import os
import shutil
import socket
import ssl
import subprocess
import tempfile
import time

import served
from served import HttpError, class_name, intrinsic, message

ACCOUNT = "CIM_Account"


class Users(served.ServedTest):
    """The same rules, whoever knows the users: user "reader" may read, and so on."""
    names = {"read": "reader:first word", "operate": "operator:second", "administer": "boss:third:word"}

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="ph-test-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        users = os.path.join(cls.folder, "users")
        with open(users, "w", encoding="utf-8") as file:
            file.write("# access by name\n")
            for access, login in cls.names.items():
                name, password = login.split(":", 1)
                hashed = subprocess.run(["openssl", "passwd", "-6", password], check=True, stdout=subprocess.PIPE,
                                        encoding="utf-8").stdout.strip()
                file.write(f"{name}:{hashed}:{access}\n")
        cls.options = ("--users-file", users)
        super().setUpClass()

    def setUp(self):
        self.client = self.connect(user=self.names["read"])

    def test_access(self):
        account = self.client.names(ACCOUNT)[-1]
        log, = self.client.names("CIM_RecordLog")
        changes = [lambda client: client.call("DeleteInstance", InstanceName=account),
                   lambda client: client.invoke("RequestStateChange", account)]
        operations = [lambda client: client.invoke("ClearLog", log)]
        for access, refused, allowed in (("read", changes + operations, []),
                                         ("operate", changes, operations),
                                         ("administer", [], operations + changes[:1])):
            client = self.connect(user=self.names[access])
            for call in refused:
                with self.subTest(access):
                    self.assert_refused(2, call, client)
            for call in allowed:
                call(client)
            self.assertTrue(client.names("CIM_NumericSensor"))

    def test_who_may_not_ask(self):
        body = message(intrinsic("EnumerateClassNames")).encode()
        for user in (None, "reader:wrong", "nobody:first word", ":"):
            client = self.connect(user=user)
            start = time.monotonic()
            for _ in range(2):  # the connection goes on
                with self.assertRaises(HttpError) as refused:
                    client.post(body)
                self.assertEqual(refused.exception.status, 401)
                self.assertTrue(refused.exception.headers["WWW-Authenticate"].startswith("Basic "))
            self.assertGreaterEqual(time.monotonic() - start, 2 if user else 0)  # guessing takes its time

    def test_request_is_known_to_sessions_on_behalf_of_the_user(self):
        self.client.call("EnumerateInstanceNames", ClassName=class_name(ACCOUNT))
        with open(os.path.join(self.server.root, "tmp/current_req"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "reader 127.0.0.1\n")
        self.server.logged(r"127\.0\.0\.1 reader POST /cimom EnumerateInstanceNames 200 ")


class BmcUsers(served.ServedTest):
    options = ("--bmc-users",)

    def test_privilege_decides(self):
        for slot in ("IPMI User-2", "IPMI User-3"):
            account, = [each for each in self.server.json("ein", ACCOUNT) if slot in each]
            self.server.phctl("mi", account, "UserPassword=a password")
        administrator, operator = (self.connect(user=user + ":a password") for user in ("root", "operator"))
        account = [each for each in operator.names(ACCOUNT) if "IPMI User-4" in each][0]
        log, = operator.names("CIM_RecordLog")
        operator.invoke("ClearLog", log)
        enable = '<PARAMVALUE NAME="RequestedState" PARAMTYPE="uint16"><VALUE>2</VALUE></PARAMVALUE>'
        self.assert_refused(2, operator.invoke, "RequestStateChange", account, enable)
        administrator.invoke("RequestStateChange", account, enable)
        for user in ("root:another", "guest:a password", ":a password"):
            with self.subTest(user), self.assertRaises(HttpError) as refused:
                self.connect(user=user).names(ACCOUNT)
            self.assertEqual(refused.exception.status, 401)


    def test_nobody_learns_why_the_bmc_does_not_answer(self):
        self.server.phctl("bmc", "fault", "get-user-access", "--code", "0xFF")
        self.addCleanup(self.server.phctl, "bmc", "clear")
        with self.assertRaises(HttpError) as refused:
            self.connect(user="root:not remembered").names(ACCOUNT)
        self.assertEqual((refused.exception.status, refused.exception.args[2]), (500, b""))
        self.assertNotIn("EXCEPTION_WHAT", refused.exception.headers)
        self.server.logged(r"\nIPMI command 44h .* \(FFh\)\n")


class Tls(served.ServedTest):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.mkdtemp(prefix="ph-test-")
        cls.addClassCleanup(shutil.rmtree, folder)
        cls.certificate, cls.key = os.path.join(folder, "certificate"), os.path.join(folder, "key")
        cls.options = ("--tls-certificate", cls.certificate, "--tls-key", cls.key, "--generate")
        super().setUpClass()

    def setUp(self):
        self.client = self.connect(tls=ssl.create_default_context(cafile=self.certificate))

    def test_generated_certificate(self):
        self.assertEqual(os.stat(self.key).st_mode & 0o777, 0o600)
        self.assertGreater(len(self.client.items("EnumerateInstances", ClassName=class_name("CIM_Sensor"))), 100)

    def test_who_speaks_no_tls_is_cut(self):
        with socket.create_connection(("127.0.0.1", self.server.port), 60) as plain:
            plain.sendall(b"POST /cimom HTTP/1.1\r\n\r\n")
            with contextlib.suppress(ConnectionResetError):
                self.assertNotIn(b"HTTP", plain.recv(4096))
        old = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        old.load_verify_locations(self.certificate)
        old.minimum_version = ssl.TLSVersion.MINIMUM_SUPPORTED
        old.maximum_version = ssl.TLSVersion.TLSv1_1
        with self.assertRaises((ssl.SSLError, ConnectionError)):
            self.connect(tls=old).names(ACCOUNT)
        self.assertTrue(self.client.names(ACCOUNT))  # others are still answered


class Limits(served.ServedTest):
    def test_connections(self):
        with socket.create_connection(("127.0.0.1", self.server.port), 60):
            others = [socket.create_connection(("127.0.0.1", self.server.port), 60) for _ in range(40)]
            answers = [each.recv(12) for each in others[32:]]
            for each in others:
                each.close()
        self.assertIn(b"HTTP/1.1 503", answers)
        for _ in range(100):
            try:
                return self.assertTrue(self.connect().names(ACCOUNT))  # there is room again
            except HttpError as error:
                self.assertEqual(error.status, 503)
                time.sleep(0.05)
        return self.fail("nobody is answered any more")

    def test_usage(self):
        taken = f"127.0.0.1:{self.server.port}"
        for status, arguments in ((2, ("--listen", "0.0.0.0:0")), (2, ("--listen", "127.0.0.1")),
                                  (2, ("--listen", "127.0.0.1:70000")), (2, ("--tls-certificate", "x")),
                                  (2, ("--users-file", "missing")), (2, ("--generate",)),
                                  (1, ("--listen", taken))):
            with self.subTest(arguments):
                ended = subprocess.run([*served.COMMAND, "serve", *arguments], env=self.server.environment,
                                       cwd=self.server.root, stderr=subprocess.PIPE, encoding="utf-8", timeout=60,
                                       check=False)
                self.assertEqual(ended.returncode, status, ended.stderr)
                self.assertRegex(ended.stderr, r"^phctl: .*\n$")


if __name__ == "__main__":
    served.main()
