"""The program itself serves the page on a machine without a display."""
import re
import signal
import subprocess

from browsertest import HOST, PATIENCE, Phone, SampleHome, headless, unittest


class TestServe(unittest.TestCase):
    def test_the_page_works_without_a_display(self):
        home = SampleHome()
        self.addCleanup(home.remove)
        environment = headless()
        del environment["QT_QPA_PLATFORM"]
        host = subprocess.Popen([HOST, "--serve", "127.0.0.1:0", "--home", str(home.path), "--lang", "en"],
                                stdout=subprocess.PIPE, text=True, env=environment)
        self.addCleanup(host.stdout.close)
        self.addCleanup(host.kill)
        url = re.search(r"http://127\.0\.0\.1:\d+/", host.stdout.readline()).group()

        phone = Phone(url)
        self.addCleanup(phone.close)
        phone.sign_in()
        kart, op = phone.first_due()
        phone.tick(kart, op, "без окна")
        phone.open("done")
        phone.await_state("без окна", "в базе")
        self.assertEqual(home.rows("SELECT count(*) FROM maintainance WHERE comment='без окна'"), [(1,)])
        self.assertEqual(phone.errors(), [])

        host.send_signal(signal.SIGTERM)
        self.assertEqual(host.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main()
