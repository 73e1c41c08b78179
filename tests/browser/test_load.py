"""Fifty phones at once tick a thousand pieces of work while karts drive."""
import http.client
import json
import os
import random
import socket
import statistics
import threading
import time
import urllib.parse

from browsertest import HostTest, PATIENCE, unittest

PHONES = 50
WORKS = 1000
REPEATED = 5  # one of so many works is sent twice, as after a lost answer
LONGEST_BLOCK = 16.7  # milliseconds: a frame of a window
ROUNDS = 3
MEDIAN_ANSWER = 200  # milliseconds


class Client:
    """A phone without a screen: reads the events, sends works, measures the answers."""

    def __init__(self, url, code):
        self.address = urllib.parse.urlsplit(url)
        self.connection = http.client.HTTPConnection(self.address.netloc, timeout=PATIENCE)
        self.cookie = None
        self.answers = []  # milliseconds
        self.results = {}
        self.bytes_read = 0
        status, _ = self.request("POST", "/api/session", {"code": code})
        assert status == 200, status
        self.stream = http.client.HTTPConnection(self.address.netloc, timeout=PATIENCE)
        self.stream.request("GET", "/api/events", headers=self.headers())
        self.events = self.stream.getresponse()
        assert self.events.status == 200, self.events.status
        self.reader = threading.Thread(target=self.read_events, daemon=True)
        self.reader.start()

    def close(self):
        self.stream.sock.shutdown(socket.SHUT_RDWR)
        self.reader.join()
        self.events.close()
        self.stream.close()
        self.connection.close()

    def headers(self):
        headers = {"Origin": f"http://{self.address.netloc}", "Content-Type": "application/json"}
        return headers | ({"Cookie": self.cookie} if self.cookie else {})

    def request(self, method, path, body):
        self.connection.request(method, path, json.dumps(body), self.headers())
        answer = self.connection.getresponse()
        if cookie := answer.getheader("Set-Cookie"):
            self.cookie = cookie.split(";")[0]
        text = answer.read()
        return answer.status, json.loads(text) if text else None

    def read_events(self):
        try:
            while part := self.events.read1(65536):
                self.bytes_read += len(part)
        except (OSError, http.client.HTTPException):
            pass  # closed

    def send(self, work):
        begin = time.perf_counter()
        status, answer = self.request("POST", "/api/services", {"services": [work]})
        self.answers.append((time.perf_counter() - begin) * 1000)
        assert status == 200, (status, answer)
        [result] = answer["results"]
        known = self.results.setdefault(work["key"], result["id"])
        assert known == result["id"], "two records for one key"

    def tick_all(self, works, start):
        start.wait()
        for work in works:
            self.send(work)
            if random.randrange(REPEATED) == 0:
                self.send(work)
            time.sleep(random.uniform(0, 0.4))  # a mechanic's pace, only much faster


class TestLoad(HostTest):
    def test_fifty_phones_at_once(self):
        is_quiet = os.getloadavg()[0] <= os.cpu_count()
        self.watchers = [self.phone().sign_in() for _ in range(2)]
        self.host.do("drive", speed=60)
        self.clients = [Client(self.host.url, str(4001 + number % 10)) for number in range(PHONES)]
        for client in self.clients:
            self.addCleanup(client.close)
        blocks = []
        while not blocks or is_quiet and min(blocks) >= LONGEST_BLOCK and len(blocks) < ROUNDS:
            blocks.append(self.run_round(f"load-{len(blocks)}"))
        self.assertGreater(self.host.do("drive", speed=0)["laps"], 0)
        # Other programs hold up threads that have a lock, and the disk: that says nothing about the server. What the
        # server does itself, it does in each round; the work of each event is checked on a busy machine too.
        if is_quiet:
            self.assertLess(min(blocks), LONGEST_BLOCK)
        else:
            print("the machine is busy with other things: only the server's work is limited, not its waiting")

    def run_round(self, name):
        """Returns for how many milliseconds the server blocked the event loop at most."""
        works = self.make_works(name)
        for client in self.clients:
            client.answers.clear()
        self.host.do("times")  # what came before does not count
        begin = time.perf_counter()
        self.tick_on_all_phones(works)
        sent_in = time.perf_counter() - begin
        self.watchers[0].until(lambda: len(self.stored(name)) >= WORKS, "all works in the database")
        stored_in = time.perf_counter() - begin
        times = self.host.do("times")["times"]

        self.check_database(name, works)
        for watcher in self.watchers:
            self.check_page(watcher)
        answers = sorted(answer for client in self.clients for answer in client.answers)
        print(f"\n{len(answers)} requests of {PHONES} phones in {sent_in:.1f} s, all stored after {stored_in:.1f} s")
        print(f"answers: median {statistics.median(answers):.1f} ms, 95 % within "
              f"{answers[len(answers) * 95 // 100]:.1f} ms, slowest {answers[-1]:.1f} ms")
        for receiver, one in sorted(times.items(), key=lambda item: -item[1]["longest_ms"])[:8]:
            print(f"event loop blocked by {receiver}: at most {one['longest_ms']:.1f} ms, at work for at most "
                  f"{one['work_ms']:.1f} ms, {one['events']} events")
        self.assertLess(statistics.median(answers), MEDIAN_ANSWER)
        server = [one for receiver, one in times.items() if receiver.startswith("Web")]
        self.assertTrue(server)
        self.assertLess(max(one["work_ms"] for one in server), LONGEST_BLOCK)
        return max(one["longest_ms"] for one in server)

    def tick_on_all_phones(self, works):
        start = threading.Event()
        failures = []
        threads = [threading.Thread(target=self.guarded, args=(failures, client.tick_all, works[number::PHONES], start))
                   for number, client in enumerate(self.clients)]
        for thread in threads:
            thread.start()
        start.set()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])

    def check_database(self, name, works):
        stored = self.stored(name)
        # None lost, none doubled.
        self.assertEqual(sorted(key for key, _ in stored), sorted(work["key"] for work in works))
        known = {key: id for client in self.clients for key, id in client.results.items() if key.startswith(name)}
        self.assertEqual(dict(stored), known)

    def check_page(self, watcher):
        watcher.until(lambda: watcher.script(
            "return state.records.every(record => record.state === 'archived')"), "all records shown as stored")
        watcher.open("done")
        self.assertEqual(watcher.done()[0]["state"], "в базе")

    def make_works(self, name):
        cars = [row[0] for row in self.home.rows("SELECT id FROM cars")]
        operations = [row[0] for row in self.home.rows("SELECT id FROM service_operations")]
        now = time.strftime("%Y-%m-%dT%H:%M:%S.000Z", time.gmtime())
        return [{"key": f"{name}-{number:04}", "car_id": cars[number % len(cars)],
                 "op_id": operations[number % len(operations)], "local_id": -1, "done_time": now,
                 "comment": f"{name}-{number:04}"} for number in range(WORKS)]

    def stored(self, name):
        return self.home.rows("SELECT comment,remote_id FROM maintainance WHERE comment LIKE ?", f"{name}-%")

    @staticmethod
    def guarded(failures, work, *values):
        try:
            work(*values)
        except Exception as error:  # reported by the test's own thread
            failures.append(repr(error))


if __name__ == "__main__":
    unittest.main()
