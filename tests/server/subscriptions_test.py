"""A client that creates filter, destination and subscription gets its alerts, and those only."""
import json
import os
import subprocess
import sys
import time

import served
from served import class_name, xml

FILTER, DESTINATION, SUBSCRIPTION = ("CIM_IndicationFilter", "CIM_ListenerDestinationCIMXML",
                                     "CIM_IndicationSubscription")
# Of a manufacturer, with data in the place of the type and the number of CPU1 Temp.
OEM_RECORD = "c0 00000000 570100 01 03 01 59 7d 78"
LISTENER = os.environ["PH_LISTENER"]


class Subscriptions(served.ServedTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        with open(os.path.join(cls.server.root, "conf/features.ini"), "w", encoding="utf-8") as features:
            features.write("[numbers]\nSEL_POLL_SECONDS = 1\n")

    def setUp(self):
        super().setUp()
        self.record = os.path.join(self.server.root, f"{self.id()}.json")
        listener = subprocess.Popen([sys.executable, LISTENER, "--record", self.record], stdout=subprocess.PIPE,
                                    encoding="utf-8")
        self.addCleanup(listener.stdout.close)
        self.addCleanup(listener.wait)
        self.addCleanup(listener.terminate)
        self.listener = int(listener.stdout.readline().split()[1])

    def create(self, name, properties, name_space="interop"):
        """The path of a new instance."""
        system = self.server.json("ei", "CIM_SPComputerSystem")[0]["properties"]["Name"]
        created, = self.client.items("CreateInstance", name_space,
                                     NewInstance=served.new_instance(name, system, properties))
        return xml(created)

    def subscribe(self, number, query):
        made = self.create(FILTER, {"Name": f"IndicationFilter:CIMXML-{number}", "Query": query})
        handler = self.create(DESTINATION, {"Name": f"CIMXML-{number}",
                                            "Destination": f"http://127.0.0.1:{self.listener}/"})
        subscription, = self.client.items("CreateInstance", "interop", NewInstance=served.new_subscription(made, handler))
        return made, handler, xml(subscription)

    def received(self, count):
        """The indications so far, when there are so many."""
        lines = []
        for _ in range(400):
            if os.path.exists(self.record):
                with open(self.record, encoding="utf-8") as file:
                    lines = file.read().splitlines()
            if len(lines) >= count:
                break
            time.sleep(0.05)
        self.assertEqual(len(lines), count)
        return [json.loads(line)["properties"] for line in lines]

    def test_alerts_come_while_there_is_a_subscription(self):
        self.server.phctl("bmc", "sel", "add", "CPU1 Temp", "9")  # before anybody asked
        made, handler, subscription = self.subscribe(
            1, "select * from CIM_AlertIndication where AlertingManagedElement=01:ff")
        self.server.phctl("bmc", "sel", "add", "PSU1 Status", "3")
        self.server.phctl("bmc", "sel", "add", "--record", OEM_RECORD)
        self.server.phctl("bmc", "event", "CPU1 Temp", "9")
        self.server.phctl("bmc", "sel", "add", "CPU2 Temp", "9")
        first, second = self.received(2)
        self.assertIn("CPU1 Temp", str(first["MessageArguments"]))
        self.assertIn("CPU2 Temp", str(second["MessageArguments"]))
        self.server.logged(r"Delivered to http://127\.0\.0\.1:\d+/")
        self.server.phctl("cm", self.server.json("ein", "CIM_RecordLog")[0], "ClearLog")
        self.server.phctl("bmc", "sel", "add", "CPU2 Temp", "9")
        self.received(3)
        self.assertEqual(self.client.names(SUBSCRIPTION, "interop"), [subscription])
        self.client.call("DeleteInstance", "interop", InstanceName=subscription)
        self.server.phctl("bmc", "sel", "add", "CPU2 Temp", "9")
        time.sleep(2.5)  # longer than it takes to notice
        self.received(3)
        for path in (made, handler):
            self.client.call("DeleteInstance", "interop", InstanceName=path)

    def test_severity_of_the_filter(self):
        paths = self.subscribe(2, "select * from CIM_AlertIndication where PerceivedSeverity=7")
        self.server.phctl("bmc", "sel", "add", "CPU1 Temp", "7")  # upper non-critical
        self.server.phctl("bmc", "sel", "add", "CPU1 Temp", "11")  # upper non-recoverable
        alert, = self.received(1)
        severity = alert["PerceivedSeverity"]
        self.assertEqual((severity["type"], severity["value"]), ("uint16", "7"))
        for path in reversed(paths):
            self.client.call("DeleteInstance", "interop", InstanceName=path)

    def test_what_is_no_subscription(self):
        made, handler, _ = self.subscribe(3, "select * from CIM_AlertIndication")
        self.assert_refused(11, self.client.call, "CreateInstance", "interop",
                            NewInstance=served.new_subscription(made, handler))
        for code, left, right in ((4, handler, handler), (4, made, made),
                                  (6, made.replace("CIMXML-3", "CIMXML-9"), handler),
                                  (6, made, handler.replace("CIMXML-3", "CIMXML-9")),
                                  (6, made.replace(":CIMXML-3", ":IPMIPEF-1-1"), handler)):
            self.assert_refused(code, self.client.call, "CreateInstance", "interop",
                                NewInstance=served.new_subscription(left, right))
        self.client.call("DeleteInstance", InstanceName=made)  # and the subscription with it
        self.assertEqual(self.client.names(SUBSCRIPTION, "interop"), [])
        self.client.call("DeleteInstance", InstanceName=handler)

    def test_subscriptions_outlive_the_server(self):
        paths = self.subscribe(4, "select * from CIM_AlertIndication")
        self.server.end()
        self.server.phctl("bmc", "sel", "add", "CPU1 Temp", "7")
        self.server.start()
        self.client = self.connect()
        self.assertEqual(self.client.names(SUBSCRIPTION, "interop"), [paths[2]])
        self.server.phctl("bmc", "sel", "add", "CPU1 Temp", "9")
        self.received(2)  # the one from before, too
        for path in reversed(paths):
            self.client.call("DeleteInstance", "interop", InstanceName=path)
            self.assert_refused(6, self.client.call, "GetInstance", "interop", InstanceName=path)


if __name__ == "__main__":
    served.main()
