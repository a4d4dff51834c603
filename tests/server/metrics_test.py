"""/metrics: what Prometheus gets, in which format, and that a silent BMC does not make it wait."""
import base64
import http.client
import os
import re
import subprocess
import tempfile
import threading
import time

import served

OPEN_METRICS = "application/openmetrics-text;version=1.0.0;q=0.75,text/plain;version=0.0.4;q=0.5,*/*;q=0.1"


def scrape(server, **headers):
    connection = http.client.HTTPConnection("127.0.0.1", server.port, timeout=60)
    try:
        connection.request("GET", "/metrics", headers={key.replace("_", "-"): value for key, value in headers.items()})
        answer = connection.getresponse()
        return answer.status, answer.headers.get("Content-Type", ""), answer.read().decode()
    finally:
        connection.close()


class Metrics(served.ServedTest):
    options = ("--metrics-timeout", "2")

    def tearDown(self):
        self.server.phctl("bmc", "clear")

    def test_both_formats(self):
        status, content_type, text = scrape(self.server, Accept=OPEN_METRICS)
        self.assertEqual((status, content_type),
                         (200, "application/openmetrics-text; version=1.0.0; charset=utf-8"))
        self.assertTrue(text.endswith("# EOF\n"))
        for line in (r'ipmi_temperature_celsius\{id="\d+",name="Inlet Temp"\} 24', r"ipmi_chassis_power_state 1",
                     r'ipmi_fan_speed_ratio\{id="\d+",name="Fan Duty"\} 0.45', r'ipmi_up\{collector="ipmi"\} 1',
                     r'ipmi_sensor_state\{id="\d+",name="PSU1 Status",type="Power Supply"\} 0',
                     r'ipmi_temperature_state\{id="\d+",name="OCP Temp"\} NaN'):
            self.assertRegex(text, "(?m)^" + line + "$")
        status, content_type, older = scrape(self.server, Accept="text/plain")
        self.assertEqual((status, content_type), (200, "text/plain; version=0.0.4; charset=utf-8"))
        self.assertNotIn("# EOF", older)
        # Each series stands there once, below the one head of its family.
        series = re.findall(r"(?m)^([^#\n]+) \S+$", text)
        self.assertEqual(len(series), len(set(series)))
        families = re.findall(r"(?m)^# TYPE (\S+)", text)
        self.assertEqual(len(families), len(set(families)))

    def test_a_silent_bmc_is_told_in_time(self):
        self.server.phctl("bmc", "fault", "get-sensor-reading", "--late", "60000")
        results = []

        def ask(**headers):
            start = time.monotonic()
            results.append((scrape(self.server, **headers), time.monotonic() - start))

        threads = [threading.Thread(target=ask) for _ in range(5)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        ask(X_Prometheus_Scrape_Timeout_Seconds="1.5")
        self.assertEqual(len(results), 6)
        for (status, _, text), seconds in results:
            self.assertEqual(status, 200)
            self.assertLess(seconds, 5)
            self.assertIn('ipmi_up{collector="ipmi"} 0\n', text)
            self.assertIn('ipmi_up{collector="chassis"} 1\n', text)
            self.assertNotIn("ipmi_temperature_celsius{", text)
        self.assertLess(results[-1][1], 3)
        # The BMC was asked once for all five.
        self.assertRegex(results[-1][0][2], r'ipmi_scrape_failures_total\{collector="ipmi"\} 2\n')


class Access(served.ServedTest):
    @classmethod
    def setUpClass(cls):
        with tempfile.NamedTemporaryFile("w", suffix="-users", delete=False) as file:
            hashed = subprocess.run(["openssl", "passwd", "-6", "word"], check=True, stdout=subprocess.PIPE,
                                    encoding="utf-8").stdout.strip()
            file.write(f"reader:{hashed}:read\n")
        cls.addClassCleanup(os.unlink, file.name)
        cls.options = ("--users-file", file.name)
        super().setUpClass()

    def test_is_for_users_that_may_read(self):
        self.assertEqual(scrape(self.server)[0], 401)
        login = "Basic " + base64.b64encode(b"reader:word").decode()
        self.assertEqual(scrape(self.server, Authorization=login)[0], 200)
        self.server.logged(r"127\.0\.0\.1 reader GET /metrics - 200 ")


if __name__ == "__main__":
    served.main()
