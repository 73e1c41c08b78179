"""Karts are taken in and out of work on the page and in the garage window."""
from browsertest import HostTest, unittest


class TestKarts(HostTest):
    def setUp(self):
        self.host.do("tab", page="tabAvailableCars")

    def in_window(self):
        """Numbers of the karts in the garage window's list of those in work."""
        return {row.split("|")[2] for row in self.host.rows("tvAvailableCars")}

    def in_database(self, number):
        [(available,)] = self.home.rows("SELECT available FROM host_cars WHERE car_id=?", self.car_id(number))
        return bool(available)

    def test_a_kart_switched_on_the_phone_is_switched_in_the_window(self):
        phone = self.phone().sign_in()
        phone.open("karts")
        number = next(number for number, is_in in phone.karts().items() if is_in)
        self.assertIn(number, self.in_window())
        phone.press_kart(number)
        phone.until(lambda: not phone.karts()[number], "the switch")
        phone.until(lambda: number not in self.in_window(), "the list of the window")
        self.assertFalse(self.in_database(number))
        phone.press_kart(number)
        phone.until(lambda: phone.karts()[number], "the switch back")
        phone.until(lambda: number in self.in_window(), "the list of the window")
        self.assertTrue(self.in_database(number))

    def test_a_kart_switched_in_the_window_is_switched_on_the_phone(self):
        phone = self.phone().sign_in()
        phone.open("karts")
        number = [number for number, is_in in phone.karts().items() if is_in][-1]
        self.host.do("press kart", view="tvAvailableCars", kart=number, button="pbRemoveAvailable")
        phone.until(lambda: not phone.karts()[number], "the switch")
        self.assertNotIn(number, self.in_window())
        self.host.do("press kart", view="tvAllCars", kart=number, button="pbSetAvailable")
        phone.until(lambda: phone.karts()[number], "the switch back")

    def test_a_switch_without_a_network_says_that_nothing_was_switched(self):
        phone = self.phone().sign_in()
        phone.open("karts")
        number, was_in = next(iter(phone.karts().items()))
        phone.set_network(False)
        phone.press_kart(number)
        phone.until(lambda: phone.text("#notice-text") == f"Карт {number} не переключён: нет связи.", "the notice")
        self.assertEqual(phone.karts()[number], was_in)
        phone.set_network(True)
        phone.until(phone.is_online, "the connection")
        self.assertEqual(phone.karts()[number], was_in)


if __name__ == "__main__":
    unittest.main()
