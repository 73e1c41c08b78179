"""Without a network nothing is lost, and nothing is stored twice."""
from browsertest import CODES, HostTest, unittest


class TestConnection(HostTest):
    def test_work_ticked_without_a_network_is_sent_later(self):
        phone = self.phone().sign_in()
        works = phone.due_keys()[:3]
        phone.set_network(False)
        phone.until(lambda: phone.connection().startswith("Нет связи"), "the lost connection")
        for number, work in enumerate(works):
            phone.tick(*work, f"без сети {number}")
        phone.until(lambda: not phone.is_shown("#undo"), "the end of the time to undo")
        self.assertEqual(len(phone.kept()), 3)
        self.assertIn("хранится работ: 3", phone.connection())
        for work in works:
            self.assertNotIn(work, phone.due_keys())
        ticked = {work["comment"]: work["doneTime"] for work in phone.kept()}

        phone.set_network(True)
        phone.until(phone.is_online, "the connection")
        phone.open("done")
        for number in range(3):
            note = f"без сети {number}"
            phone.await_state(note, "в базе")
            [(_, _, _, time, *_)] = self.stored(note)
            self.assertEqual(time[:16], ticked[note][:16])  # when it was done, not when it was sent
        self.assertEqual(phone.kept(), [])

    def test_a_lost_answer_does_not_double_the_work(self):
        phone = self.phone().sign_in()
        phone.script("""const send = window.fetch; window.lost = 0;
            window.fetch = async (path, options) => {
                const answer = await send(path, options);
                if (path === '/api/services' && lost++ < 2) throw new TypeError('lost');
                return answer; };""")
        phone.tick(*phone.first_due(), "ответ потерян")
        phone.until(lambda: phone.script("return lost") == 3, "the third request")
        phone.open("done")
        phone.await_state("ответ потерян", "в базе")
        self.assertEqual(len(self.stored("ответ потерян")), 1)

    def test_a_restarted_host_is_found_again(self):
        phone = self.phone().sign_in()
        self.host.do("stop serving")
        phone.until(lambda: phone.connection().startswith("Нет связи"), "the lost connection")
        phone.tick(*phone.first_due(), "сервер перезапущен")
        self.host.do("serve")
        phone.until(lambda: phone.is_online() or phone.is_shown("#code"), "the server")
        if phone.is_shown("#code"):
            phone.sign_in()
        phone.open("done")
        phone.await_state("сервер перезапущен", "в базе")
        self.assertEqual(len(self.stored("сервер перезапущен")), 1)

    def test_an_ended_session_keeps_the_work_for_its_person(self):
        phone = self.phone().sign_in(CODES[0])
        name = phone.text("#person")
        phone.tick(*phone.first_due(), "чужой сеанс")
        phone.driver.delete_all_cookies()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        self.assertIn("Сеанс завершён", phone.text("#sign-in-reason"))
        self.assertIn(name, phone.text("#sign-in-reason"))
        self.assertEqual(len(phone.kept()), 1)

        phone.sign_in(CODES[1])
        phone.open("done")
        phone.await_state("чужой сеанс", "ждёт входа")
        self.assertIn(name, next(line["why"] for line in phone.done() if line["note"] == "чужой сеанс"))
        # The second person's own work goes, which shows that works are being sent.
        phone.open("due")
        phone.tick(*phone.first_due(), "свой сеанс")
        phone.open("done")
        phone.await_state("свой сеанс", "в базе")
        self.assertEqual(self.stored("чужой сеанс"), [])

        phone.press("#sign-out")
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        phone.sign_in(CODES[0])
        phone.await_state("чужой сеанс", "в базе")
        [(_, _, _, _, person, *_)] = self.stored("чужой сеанс")
        self.assertTrue(person.startswith(name.split()[0]), person)

    def test_signing_out_asks_while_work_is_unsent(self):
        phone = self.phone().sign_in()
        phone.tick(*phone.first_due(), "выход с неотправленным")
        phone.press("#sign-out")
        phone.until(lambda: phone.is_shown("#leave"), "the question")
        self.assertIn("Не отправлено работ: 1", phone.text("#leave"))
        phone.press('#leave button[value="stay"]')
        phone.open("done")
        phone.await_state("выход с неотправленным", "в базе")
        phone.press("#sign-out")
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")

    def test_a_wrong_clock_of_the_phone_is_corrected(self):
        phone = self.phone()
        phone.command("Page.addScriptToEvaluateOnNewDocument", source="""
            const RealDate = Date, ahead = 3 * 3600 * 1000;
            Date = class extends RealDate {
                constructor(...values) { values.length ? super(...values) : super(RealDate.now() + ahead); }
                static now() { return RealDate.now() + ahead; } };""")
        phone.driver.refresh()
        phone.sign_in()
        phone.tick(*phone.first_due(), "часы спешат")
        [work] = phone.kept()
        [(now,)] = self.home.rows("SELECT strftime('%Y-%m-%dT%H:%M', 'now')")
        [(before,)] = self.home.rows("SELECT strftime('%Y-%m-%dT%H:%M', 'now', '-1 minute')")
        self.assertIn(work["doneTime"][:16], (now, before))
        phone.open("done")
        phone.await_state("часы спешат", "в базе")

    def test_work_is_ticked_although_the_browser_stores_nothing(self):
        phone = self.phone().sign_in()
        phone.script("Storage.prototype.setItem = () => { throw new DOMException('full', 'QuotaExceededError'); }")
        phone.tick(*phone.first_due(), "хранилище полно")
        self.assertIn("не хранит данные", phone.text("#notice"))
        phone.open("done")
        phone.await_state("хранилище полно", "в базе")
        self.assertEqual(len(self.stored("хранилище полно")), 1)


if __name__ == "__main__":
    unittest.main()
