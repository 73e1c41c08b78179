"""Markup in names and notes is shown as text."""
from browsertest import HostTest, unittest

MARKUP = '<img src=x onerror="document.title=\'run\'"><script>document.title="run"</script>'


class TestMarkup(HostTest):
    @classmethod
    def prepare(cls):
        change = cls.home.change
        [(car_id,)] = cls.home.rows(
            "SELECT car_id FROM maintainance WHERE operation_id=-1 AND operation_state=0 LIMIT 1")
        change("UPDATE cars SET num=?, name=? WHERE id=?", MARKUP, MARKUP, car_id)
        change("UPDATE maintainance SET comment=? WHERE car_id=? AND operation_state=0", MARKUP, car_id)
        change("UPDATE service_operations SET operation_name=?", MARKUP)
        change("UPDATE personal SET last_name=?, first_name=?", MARKUP, MARKUP)

    def check(self, phone):
        self.assertEqual(phone.script("return document.querySelectorAll('body img, body script').length"), 0)
        self.assertIn("Гараж", phone.driver.title)

    def test_markup_everywhere_is_text(self):
        phone = self.phone().sign_in()
        self.assertIn(MARKUP, phone.text("#person"))
        phone.until(lambda: phone.due(), "the due list")
        self.assertIn(MARKUP, [line["kart"] for line in phone.due()])
        self.assertIn(MARKUP, [line["model"] for line in phone.due()])
        self.assertIn((MARKUP, MARKUP), phone.due_keys())
        self.check(phone)
        phone.open_work(MARKUP, MARKUP)
        self.assertEqual(phone.note(), MARKUP)
        self.assertIn(MARKUP, phone.text("#work-title"))
        self.check(phone)
        phone.press("#work-confirm")
        self.assertIn(MARKUP, phone.text("#undo"))
        self.assertIn(MARKUP, phone.text("#announcer"))
        self.check(phone)
        phone.open("done")
        phone.await_state(MARKUP, "в базе")
        self.assertIn(MARKUP, next(line["who"] for line in phone.done() if line["note"] == MARKUP))
        self.check(phone)
        phone.open("karts")
        self.assertIn(MARKUP, phone.karts())
        self.check(phone)


if __name__ == "__main__":
    unittest.main()
