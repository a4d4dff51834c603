"""Several clients at once: every request is answered, and the server's memory does not grow.

As a program it tells rates and latencies, too: load_test.py --seconds 30 [--clients 8]
"""
import argparse
import multiprocessing
import os
import statistics
import sys
import time

import served
from served import class_name

HOST, SENSOR = "CIM_HostComputerSystem", "CIM_NumericSensor"
GROWTH = 2048  # kB: what threads and the allocator keep after the warm-up


def requests(client):
    """What the clients ask for in turn: a name, and a function that asks and says whether the answer is whole."""
    host, = client.names(HOST)
    sensors = client.names(SENSOR)
    name = class_name(SENSOR)
    call, items = client.call, client.items
    return (
        ("EnumerateInstanceNames", lambda: len(items("EnumerateInstanceNames", ClassName=name)) == len(sensors)),
        ("EnumerateInstances", lambda: len(items("EnumerateInstances", ClassName=name)) >= len(sensors) - 1),
        ("GetInstance", lambda: len(items("GetInstance", InstanceName=sensors[0])) == 1),
        ("AssociatorNames", lambda: len(items("AssociatorNames", ObjectName=host,
                                              ResultClass=class_name("CIM_PowerManagementService"))) == 1),
        ("GetClass", lambda: len(items("GetClass", ClassName=name)) == 1),
        ("pulled", lambda: served.result(call("OpenEnumerateInstances", ClassName=name, MaxObjectCount=1000),
                                         "EndOfSequence") == "TRUE"),
    )


def ask(server, end, results):
    """A client until `end`. Puts the latencies of each request in seconds, and what failed."""
    latencies, failures = {}, []
    try:
        client = served.Client(server)
        asked = requests(client)
        while time.monotonic() < end:
            for name, run in asked:
                start = time.monotonic()
                try:
                    if not run():
                        failures.append(f"{name}: not all came")
                except Exception as error:  # pylint: disable=broad-except
                    failures.append(f"{name}: {error!r}")
                latencies.setdefault(name, []).append(time.monotonic() - start)
    finally:
        results.put((latencies, failures))


class Load:
    """`clients` processes for so many seconds. Memory in kB: when it began, after a fifth of the time, at the end."""

    def __init__(self, server, clients, seconds):
        self.memory = [self.resident(server)]
        self.latencies, self.failures = {}, []
        results = multiprocessing.Queue()
        address = argparse.Namespace(port=server.port)
        before = self.processor(server)
        end = time.monotonic() + seconds
        processes = [multiprocessing.Process(target=ask, args=(address, end, results)) for _ in range(clients)]
        for process in processes:
            process.start()
        time.sleep(seconds / 5)
        self.memory.append(self.resident(server))
        for _ in processes:
            latencies, failures = results.get(timeout=seconds + 120)
            self.failures += failures
            for name, some in latencies.items():
                self.latencies.setdefault(name, []).extend(some)
        self.memory.append(self.resident(server))
        self.used = self.processor(server) - before
        for process in processes:
            process.join()

    @staticmethod
    def resident(server):
        with open(f"/proc/{server.process.pid}/status", encoding="utf-8") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))

    @staticmethod
    def processor(server):
        """Seconds of processor time so far."""
        with open(f"/proc/{server.process.pid}/stat", encoding="utf-8") as stat:
            fields = stat.read().rsplit(")", 1)[1].split()
        return sum(int(each) for each in fields[11:13]) / os.sysconf("SC_CLK_TCK")

    def report(self, seconds):
        everything = [each for some in self.latencies.values() for each in some]
        print(f"{len(everything) / seconds:.0f} requests/s, {len(self.failures)} failed; memory {self.memory} kB; "
              f"{self.used / len(everything) * 1000:.2f} ms of the processor for a request")
        for name, some in [*self.latencies.items(), ("all", everything)]:
            print(f"{name:24} {len(some):6}  median {statistics.median(some) * 1000:6.1f} ms"
                  f"  p99 {statistics.quantiles(some, n=100)[98] * 1000:6.1f} ms")


class LoadTest(served.ServedTest):
    def test_clients_at_once(self):
        load = Load(self.server, clients=8, seconds=4)
        self.assertEqual(load.failures, [])
        self.assertTrue(all(len(some) >= 8 for some in load.latencies.values()), load.latencies)
        with open(f"/proc/{self.server.process.pid}/maps", encoding="utf-8") as maps:
            has_other_memory = len(served.COMMAND) > 1 or "libasan" in maps.read()  # an emulator's, a sanitizer's
        if not has_other_memory:
            self.assertLess(load.memory[2] - load.memory[1], GROWTH, load.memory)


def main():
    if len(sys.argv) == 1:
        served.main()
    parser = argparse.ArgumentParser()
    parser.add_argument("--seconds", type=float, required=True)
    parser.add_argument("--clients", type=int, default=8)
    options = parser.parse_args()
    server = served.Server()
    try:
        load = Load(server, options.clients, options.seconds)
        load.report(options.seconds)
        for failure in load.failures[:10]:
            print(failure)
    finally:
        server.stop()
    return 1 if load.failures else 0


if __name__ == "__main__":
    sys.exit(main())
