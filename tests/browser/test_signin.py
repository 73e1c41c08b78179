"""Signing in with a service code."""
from browsertest import CODES, HostTest, unittest


class TestSignIn(HostTest):
    def test_an_empty_code_is_asked_for(self):
        phone = self.phone()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        phone.press("#sign-in-button")
        self.assertEqual(phone.text("#sign-in-error"), "Введите код.")

    def test_digits_are_offered_first_and_letters_on_request(self):
        phone = self.phone()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        self.assertEqual(phone.find("#code").get_attribute("inputmode"), "numeric")
        phone.press("#letters")
        self.assertEqual(phone.find("#code").get_attribute("inputmode"), "text")
        self.assertEqual(phone.find("#letters").get_attribute("aria-pressed"), "true")

    def test_the_language_follows_the_browser_and_the_button(self):
        phone = self.phone(language="en-GB,en")
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        self.assertEqual(phone.text("h1"), "Mechanic sign-in")
        self.assertEqual(phone.script("return document.documentElement.lang"), "en")
        phone.press("#language")
        self.assertEqual(phone.text("h1"), "Вход механика")
        phone.driver.refresh()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        self.assertEqual(phone.text("h1"), "Вход механика")

    def test_a_signed_in_person_stays_so_after_a_reload(self):
        phone = self.phone(language="en").sign_in(CODES[1])
        name = phone.text("#person")
        phone.driver.refresh()
        phone.until(phone.is_online, "the connection after the reload")
        self.assertEqual(phone.text("#person"), name)
        phone.press("#sign-out")
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        phone.driver.refresh()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")


class TestLock(HostTest):
    """A host of its own: the lock holds for every browser of the machine."""

    def test_wrong_codes_are_counted_and_then_locked(self):
        phone = self.phone()
        for left in (4, 3, 2, 1):
            phone.enter_code("0000")
            phone.until(lambda: phone.text("#sign-in-error") == f"Код не подходит. Осталось попыток: {left}.",
                        f"{left} attempts left")
        phone.enter_code("0000")
        phone.until(lambda: "Слишком много" in phone.text("#sign-in-error"), "the lock")
        self.assertRegex(phone.text("#sign-in-wait"), r"^Вход откроется через \d+ с\.$")
        first = phone.text("#sign-in-wait")
        phone.until(lambda: phone.text("#sign-in-wait") not in ("", first), "the countdown")
        self.assertEqual(phone.find("#sign-in-button").get_attribute("aria-disabled"), "true")
        self.assertFalse(phone.is_shown("#due"))


if __name__ == "__main__":
    unittest.main()
