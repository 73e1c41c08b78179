"""Work is ticked on the page, stored at the track and seen by everybody."""
from browsertest import CODES, HostTest, unittest


class TestWork(HostTest):
    def test_ticked_work_is_stored_and_gone_everywhere(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due()
        self.assertNotEqual(phone.due()[0]["meters"] or phone.due()[-1]["meters"], [])

        phone.tick(kart, op, "сделано с телефона")
        self.assertNotIn((kart, op), phone.due_keys())
        phone.open("done")
        self.assertEqual(phone.state_of("сделано с телефона"), "не отправлено")
        phone.await_state("сделано с телефона", "в базе")

        phone.open("due")
        self.assertNotIn((kart, op), phone.due_keys())
        [(_, car_id, op_id, time, person, state, remote_id)] = self.stored("сделано с телефона")
        self.assertEqual((car_id, state), (self.car_id(kart), 1))
        self.assertEqual(self.home.rows("SELECT operation_name FROM service_operations WHERE id=?", op_id), [(op,)])
        self.assertTrue(person.startswith(self.person_of(CODES[0])[0]), person)
        self.assertGreater(remote_id, 0)
        self.assertRegex(time, r"^\d{4}-\d\d-\d\dT\d\d:\d\d")

        self.host.do("tab", page="tabServiceLog")
        phone.until(lambda: len(self.rows_of_log("сделано с телефона")) == 1, "the row of the garage window")
        [row] = self.rows_of_log("сделано с телефона")
        self.assertIn(f"|{kart}|", row)
        self.assertIn(op, row)

    def test_a_second_phone_sees_it_at_once(self):
        first, second = self.phone().sign_in(CODES[0]), self.phone().sign_in(CODES[1])
        kart, op = first.first_due()
        self.assertIn((kart, op), second.due_keys())
        first.tick(kart, op, "видно на обоих")
        second.until(lambda: (kart, op) not in second.due_keys(), "the line gone from the second phone")
        second.open("done")
        second.await_state("видно на обоих", "в базе")
        self.assertIn(self.person_of(CODES[0])[0], next(
            line["who"] for line in second.done() if line["note"] == "видно на обоих"))

    def test_a_dialog_says_that_the_work_was_done_by_another(self):
        first, second = self.phone().sign_in(CODES[0]), self.phone().sign_in(CODES[1])
        kart, op = first.first_due()
        second.open_work(kart, op)
        first.tick(kart, op, "первый успел")
        second.until(lambda: second.script("return document.getElementById('work-confirm').disabled"),
                     "a button that cannot be pressed")
        self.assertIn("уже отметили", second.text("#note-error"))

    def test_the_note_of_open_work_starts_with_the_stored_text(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due("Жалоба")
        [(local_id, stored)] = self.home.rows(
            "SELECT id,comment FROM maintainance WHERE car_id=? AND operation_id=-1 AND operation_state=0",
            self.car_id(kart))
        phone.open_work(kart, op)
        self.assertEqual(phone.note(), stored)
        self.assertTrue(phone.is_shown("#note-hint"))
        phone.press("#work-cancel")
        phone.tick(kart, op, stored + ": починено")
        phone.open("done")
        phone.await_state(stored + ": починено", "в базе")
        [(stored_id, *_, state, _)] = self.stored(stored + ": починено")
        self.assertEqual((stored_id, state), (local_id, 1))
        self.assertEqual(self.stored(stored), [])

    def test_undone_work_is_never_sent(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due()
        phone.tick(kart, op, "отменённое")
        self.assertRegex(phone.text("#undo"), r"Отправится через [1-5] с")
        self.assertIn("Отменить можно", phone.text("#announcer"))
        phone.press("#undo button")
        self.assertIn((kart, op), phone.due_keys())
        self.assertEqual(phone.kept(), [])
        phone.open_work(kart, op)
        self.assertEqual(phone.note(), "отменённое")  # nothing typed is lost
        phone.press("#work-cancel")
        # Work that is ticked later is sent later: what was undone would be there by then.
        other = next(key for key in phone.due_keys() if key != (kart, op))
        phone.tick(*other, "после отмены")
        phone.open("done")
        phone.await_state("после отмены", "в базе")
        self.assertEqual(self.stored("отменённое"), [])

    def test_nothing_is_sent_while_it_can_be_undone(self):
        phone = self.phone().sign_in()
        phone.script("""const send = window.fetch; window.sentAfter = []; window.tickedAt = 0;
            document.addEventListener('submit', () => { tickedAt = performance.now(); }, true);
            window.fetch = (path, options) => {
                if (path === '/api/services') sentAfter.push(performance.now() - tickedAt);
                return send(path, options); };""")
        phone.tick(*phone.first_due(), "не раньше пяти секунд")
        phone.until(lambda: phone.script("return sentAfter.length") == 1, "the request")
        self.assertGreaterEqual(phone.script("return sentAfter[0]"), 5000)
        self.assertLess(phone.script("return sentAfter[0]"), 6500)

    def test_a_tick_survives_a_reload(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due()
        phone.tick(kart, op, "страницу перезагрузили")
        phone.driver.refresh()
        phone.until(phone.is_online, "the connection after the reload")
        self.assertNotIn((kart, op), phone.due_keys())
        phone.open("done")
        phone.await_state("страницу перезагрузили", "в базе")
        self.assertEqual(len(self.stored("страницу перезагрузили")), 1)

    def test_two_tabs_store_it_once(self):
        phone = self.phone().sign_in()
        first = phone.driver.current_window_handle
        phone.driver.switch_to.new_window("tab")
        phone.driver.get(self.host.url)
        phone.until(phone.is_online, "the connection of the second tab")
        phone.driver.switch_to.window(first)
        phone.tick(*phone.first_due(), "две вкладки")
        # Both send it: the second tab does not wait for the first one here.
        phone.driver.switch_to.window(next(one for one in phone.driver.window_handles if one != first))
        [work] = phone.kept()
        phone.script("ownKeys.add(arguments[0]); planSending();", work["key"])
        phone.open("done")
        phone.await_state("две вкладки", "в базе")
        self.assertEqual(len(self.stored("две вкладки")), 1)

    def test_a_new_complaint_appears_above_everything(self):
        phone = self.phone().sign_in()
        number = phone.due_keys()[-1][0]
        self.home.change("INSERT INTO maintainance (car_id,operation_id,operation_time,person_name,comment,"
                         "operation_state) VALUES (?,-1,strftime('%Y-%m-%dT%H:%M:%fZ'),'','скрип руля',0)",
                         self.car_id(number))
        self.host.do("send", event="run_saved_to_db")
        phone.until(lambda: (number, "скрип руля") in phone.due_keys(), "the new complaint")
        lines = phone.due()
        is_open = {line["kart"]: False for line in lines}
        for line in lines:
            is_open[line["kart"]] |= line["kind"] != "due"
        order = [is_open[line["kart"]] for line in lines]
        self.assertEqual(order, sorted(order, reverse=True))
        of_kart = [line["kind"] for line in lines if line["kart"] == number]
        self.assertEqual(of_kart[0], "Жалоба")

    def test_a_note_that_is_too_long_is_not_cut(self):
        phone = self.phone().sign_in()
        phone.open_work(*phone.first_due())
        phone.script("document.getElementById('note').value = 'я'.repeat(1001)")
        phone.press("#work-confirm")
        self.assertEqual(phone.text("#note-error"), "Не больше 1000 знаков, сейчас 1001.")
        self.assertTrue(phone.is_shown("#work"))
        self.assertEqual(phone.kept(), [])

    def test_work_of_a_removed_kart_is_refused_and_kept(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due()
        phone.set_network(False)
        phone.tick(kart, op, "карта уже нет")
        [work] = phone.kept()
        phone.script("localStorage.setItem(`garage.work.${arguments[0].key}`, JSON.stringify(arguments[0]))",
                     work | {"carId": 99999})
        phone.set_network(True)
        phone.open("done")
        phone.await_state("карта уже нет", "не принято")
        self.assertEqual([line["why"] for line in phone.done() if line["note"] == "карта уже нет"],
                         ["Такого карта больше нет."])
        self.assertEqual(len(phone.kept()), 1)
        phone.press("#done-list .answers button:last-child")
        self.assertEqual(phone.kept(), [])

    def person_of(self, code):
        [row] = self.home.rows("SELECT last_name,first_name FROM personal JOIN host_personal ON person_id=id "
                               "WHERE service_code=?", code)
        return row

    def rows_of_log(self, note):
        return [row for row in self.host.rows("tvServiceLog") if note in row]


if __name__ == "__main__":
    unittest.main()
