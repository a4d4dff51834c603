"""Mixed requests while the BMC fails, the database is locked and the sensors are read anew: nothing is lost, and the
server's memory and descriptors stay as they are.

As a program it goes on for as long as wanted, and tells figures: soak_test.py --minutes 60
"""
import argparse
import collections
import contextlib
import json
import os
import random
import sqlite3
import subprocess
import sys
import threading
import time

import served
from served import class_name, xml

LISTENER = os.environ["PH_LISTENER"]
FILTER, DESTINATION = "CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML"
SYSTEM, SERVICE, JOB = "CIM_HostComputerSystem", "CIM_ProtocolService", "CIM_ConcreteJob"
READ = (SYSTEM, "CIM_NumericSensor", "CIM_Sensor", "CIM_LogEntry", "CIM_Account", "CIM_EthernetPort",
        "CIM_IPProtocolEndpoint", "CIM_Fan", "CIM_SoftwareIdentity", JOB)
# What a request may be refused with while something is wrong (DSP0200): failed, not found.
REFUSALS = {1, 6}
GROWTH = 3072  # kB: what threads and the allocator keep after the first sixth


class Soak:
    def __init__(self, server, seconds):
        self.server, self.seconds = server, seconds
        self.end = time.monotonic() + seconds
        self.lock = threading.Lock()
        self.disturbances = []  # [begin, end or None]
        self.counts, self.failures, self.samples = collections.Counter(), [], []
        self.sent = []  # IDs of records
        self.record = os.path.join(server.root, "soak.json")
        with open(os.path.join(server.root, "conf/features.ini"), "w", encoding="utf-8") as features:
            features.write("[numbers]\nSEL_POLL_SECONDS = 1\n")

    # What is asked

    def disturbed_since(self, begin):
        with self.lock:
            return any(until is None or until >= begin for _, until in self.disturbances)

    def ask(self, what, function, *arguments, **parameters):
        """The answer, or None where the request was refused, which only a disturbance excuses."""
        begin = time.monotonic()
        try:
            answer = function(*arguments, **parameters)
            self.counts[what] += 1
            return answer
        except served.CimError as error:
            if error.code in REFUSALS and self.disturbed_since(begin):
                self.counts[what + ", refused"] += 1
            else:
                self.failures.append(f"{what}: {error!r}")
        except Exception as error:  # pylint: disable=broad-except
            self.failures.append(f"{what}: {error!r}")
        return None

    def read(self, client, turn):
        name = READ[turn % len(READ)]
        items = self.ask("enumerated", client.items, "EnumerateInstances", ClassName=class_name(name))
        names = self.ask("named", client.names, name)
        if names:
            self.ask("got", client.items, "GetInstance", InstanceName=random.choice(names))
        if items and name == SYSTEM:
            self.ask("associated", client.items, "AssociatorNames", ObjectName=names[0] if names else "",
                     ResultClass=class_name("CIM_NumericSensor"))

    def change(self, client, turn):
        """Creates a destination, modifies it and takes it away; what was acknowledged is there, or is not."""
        made = self.ask("created", client.items, "CreateInstance", "interop", NewInstance=served.new_instance(
            DESTINATION, self.system, {"Name": "CIMXML-9", "Destination": "http://127.0.0.1:9/"}))
        if made is None:  # a refused one may be there or not
            with contextlib.suppress(served.CimError):
                for path in client.names(DESTINATION, "interop"):
                    if "CIMXML-9" in path:
                        client.call("DeleteInstance", "interop", InstanceName=path)
            return
        path = xml(made[0])
        url = f"http://127.0.0.1:9/{turn}"
        changed = f'<INSTANCE CLASSNAME="{DESTINATION}"><PROPERTY NAME="Destination" TYPE="string"><VALUE>{url}</VALUE>' \
                  "</PROPERTY></INSTANCE>"
        if self.ask("modified", client.call, "ModifyInstance", "interop", PropertyList=["Destination"],
                    ModifiedInstance=f"<VALUE.NAMEDINSTANCE>{path}{changed}</VALUE.NAMEDINSTANCE>") is not None:
            got = self.ask("got", client.items, "GetInstance", "interop", InstanceName=path)
            if got and served.values(got[0]).get("Destination") != url:
                self.failures.append(f"a change is lost: {served.values(got[0])} instead of {url}")
        while self.ask("deleted", client.call, "DeleteInstance", "interop", InstanceName=path) is None:
            time.sleep(0.2)
            if path not in (self.ask("named", client.names, DESTINATION, "interop") or [path]):
                break  # the refusal came after the deed

    def invoke(self, client, turn):
        names = self.ask("named", client.names, SERVICE)
        if names:
            state = '<PARAMVALUE NAME="RequestedState" PARAMTYPE="uint16"><VALUE>2</VALUE></PARAMVALUE>'
            answer = self.ask("called", client.invoke, "RequestStateChange", names[turn % len(names)], state)
            job = served.result(answer, "Job") if answer is not None else None
            if job:
                self.counts["jobs"] += 1

    def worker(self, act, pause):
        client = served.Client(self.server)
        turn = 0
        while time.monotonic() < self.end:
            act(client, turn)
            turn += 1
            time.sleep(pause)
        client.connection.close()

    # What goes wrong in between

    @contextlib.contextmanager
    def disturbance(self):
        with self.lock:
            self.disturbances.append([time.monotonic(), None])
        yield
        time.sleep(1)  # until requests that began before have ended
        with self.lock:
            self.disturbances[-1][1] = time.monotonic()

    def lose_the_bmc(self):
        state = os.path.join(self.server.root, "var/lib/virtual-bmc/bmc.state")
        os.rename(state, state + ".gone")
        time.sleep(2)
        os.rename(state + ".gone", state)

    def let_commands_fail(self):
        for command in ("get-sensor-reading", "get-sel-entry", "get-lan-configuration", "get-device-id"):
            self.server.phctl("bmc", "fault", command, "--code", "0xC0")
        time.sleep(2)
        self.server.phctl("bmc", "clear")

    def lock_the_database(self):
        with contextlib.closing(sqlite3.connect(os.path.join(self.server.root, "conf/smash.db"), timeout=10)) as database:
            database.execute("BEGIN EXCLUSIVE")
            time.sleep(3)
            database.rollback()

    def read_the_sensors_anew(self):
        self.server.phctl("sync")

    def disturb(self):
        acts = (self.lose_the_bmc, self.let_commands_fail, self.lock_the_database, self.read_the_sensors_anew)
        for turn in range(1 << 30):
            if self.pausing(min(15, self.seconds / 10)):
                return
            with self.disturbance():
                try:
                    acts[turn % len(acts)]()
                    self.counts["disturbances"] += 1
                except (subprocess.CalledProcessError, sqlite3.Error) as error:
                    self.failures.append(f"disturbance: {error!r} {getattr(error, 'stderr', '')}")

    def pausing(self, seconds):
        """Whether the end came meanwhile."""
        time.sleep(max(0, min(seconds, self.end - time.monotonic())))
        return time.monotonic() >= self.end

    # Events

    def subscribe(self, client, port):
        made = xml(client.items("CreateInstance", "interop", NewInstance=served.new_instance(
            FILTER, self.system, {"Name": "IndicationFilter:CIMXML-1", "Query": "select * from CIM_AlertIndication"}))[0])
        handler = xml(client.items("CreateInstance", "interop", NewInstance=served.new_instance(
            DESTINATION, self.system, {"Name": "CIMXML-1", "Destination": f"http://127.0.0.1:{port}/"}))[0])
        client.call("CreateInstance", "interop", NewInstance=served.new_subscription(made, handler))

    def tell(self):
        """Logs events, and empties the log when five hundred more have arrived."""
        while not self.pausing(1):
            try:
                self.sent.append(self.server.json("bmc", "sel", "add", "--record",
                                                  "c0 00000000 570100 01 03 01 59 7d 78")["id"])
                if len(self.sent) % 500 == 0 and self.has_arrived(len(self.sent)):
                    self.server.phctl("cm", self.server.json("ein", "CIM_RecordLog")[0], "ClearLog")
            except subprocess.CalledProcessError:
                if not self.disturbed_since(time.monotonic() - 1):
                    raise

    def arrived(self):
        """The ID of each event's record, in the order in which they came."""
        if not os.path.exists(self.record):
            return []
        with open(self.record, encoding="utf-8") as lines:
            return [int(json.loads(line)["properties"]["EventID"]["value"], 16) for line in lines]

    def has_arrived(self, number):
        for _ in range(300):
            if len(self.arrived()) >= number:
                return True
            time.sleep(0.1)
        return False

    def check_events(self):
        self.has_arrived(len(self.sent))
        time.sleep(2)  # for one that comes twice
        arrived = self.arrived()
        if arrived != self.sent:
            same = next((i for i, (left, right) in enumerate(zip(arrived, self.sent)) if left != right),
                        min(len(arrived), len(self.sent)))
            self.failures.append(f"{len(self.sent)} events, {len(arrived)} arrived, in order up to the {same}th")

    # What it costs

    def sample(self):
        status = {}
        with open(f"/proc/{self.server.process.pid}/status", encoding="utf-8") as lines:
            for line in lines:
                name, _, text = line.partition(":")
                status[name] = text.strip().split()[0] if text.strip() else ""
        descriptors = len(os.listdir(f"/proc/{self.server.process.pid}/fd"))
        self.samples.append((int(status["VmRSS"]), descriptors, int(status["Threads"])))

    def run(self):
        self.system = self.server.json("ei", "CIM_SPComputerSystem")[0]["properties"]["Name"]
        with subprocess.Popen([sys.executable, LISTENER, "--record", self.record], stdout=subprocess.PIPE,
                              encoding="utf-8") as listener:
            try:
                self.subscribe(served.Client(self.server), int(listener.stdout.readline().split()[1]))
                threads = [threading.Thread(target=target, args=arguments) for target, arguments in (
                    (self.worker, (self.read, 0.1)), (self.worker, (self.read, 0.3)), (self.worker, (self.change, 0.5)),
                    (self.worker, (self.invoke, 2)), (self.disturb, ()), (self.tell, ()))]
                for thread in threads:
                    thread.start()
                while not self.pausing(self.seconds / 60):
                    self.sample()
                for thread in threads:
                    thread.join()
                self.check_events()
            finally:
                listener.terminate()
        self.jobs = len(self.server.json("ein", JOB))

    def growth(self):
        """kB from the first sixth to the end, by medians of ten samples."""
        settled = sorted(each[0] for each in self.samples[10:20])
        last = sorted(each[0] for each in self.samples[-10:])
        return last[len(last) // 2] - settled[len(settled) // 2]

    def report(self):
        print(", ".join(f"{count} {what}" for what, count in sorted(self.counts.items())))
        print(f"{len(self.sent)} events, {len(self.arrived())} arrived; {self.jobs} jobs listed at the end")
        for at in (0, 10, 30, -1):
            memory, descriptors, threads = self.samples[at]
            print(f"sample {at % len(self.samples) + 1:3}: {memory} kB, {descriptors} descriptors, {threads} threads")
        print(f"memory grew by {self.growth()} kB after the first sixth; {len(self.failures)} failures")
        for failure in self.failures[:20]:
            print(failure)


class SoakTest(served.ServedTest):
    def test_for_some_seconds(self):
        soak = Soak(self.server, seconds=24)
        soak.run()
        self.assertEqual(soak.failures, [])
        for what in ("enumerated", "modified", "created", "deleted", "called", "disturbances"):
            self.assertGreater(soak.counts[what], 0, soak.counts)
        self.assertGreater(len(soak.sent), 3)


def main():
    if len(sys.argv) == 1:
        served.main()
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--minutes", type=float, required=True)
    options = parser.parse_args()
    server = served.Server()
    try:
        soak = Soak(server, options.minutes * 60)
        soak.run()
        soak.report()
    finally:
        server.stop()
    return 1 if soak.failures or soak.growth() > GROWTH else 0


if __name__ == "__main__":
    sys.exit(main())
