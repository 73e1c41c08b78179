"""The page works with a screen reader, without a mouse, with large text, in the dark, on every size of screen."""
from browsertest import CODES, HostTest, unittest
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

SMALLEST_TARGET = 44  # CSS pixels
LOWEST_CONTRAST = 4.5

# Every visible text with too low a contrast. What lies behind it is the nearest background that is not transparent.
LOW_CONTRAST = """
    const channels = color => {
        const of = color.match(/[\\d.]+/g).map(Number);
        return of.length < 4 ? [...of, 1] : of;
    };
    const luminance = color => color.slice(0, 3).map(value => value / 255)
        .map(value => value <= 0.03928 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4)
        .reduce((sum, value, index) => sum + value * [0.2126, 0.7152, 0.0722][index], 0);
    const behind = element => {
        for (let one = element; one; one = one.parentElement) {
            const color = channels(getComputedStyle(one).backgroundColor);
            if (color[3] > 0.99) return color;
        }
        return [255, 255, 255, 1];
    };
    const found = [], walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        const element = walker.currentNode.parentElement;
        if (!walker.currentNode.textContent.trim() || !element.checkVisibility()) continue;
        if (element.closest(':disabled, [aria-disabled="true"], .hidden-text, .skip, noscript, title')) continue;
        const [light, dark] = [channels(getComputedStyle(element).color), behind(element)].map(luminance)
            .sort((a, b) => b - a);
        const contrast = (light + 0.05) / (dark + 0.05);
        if (contrast < arguments[0]) found.push([element.outerHTML.slice(0, 100), contrast.toFixed(2)]);
    }
    return found;
"""
SMALL_TARGETS = """
    return [...document.querySelectorAll('a, button, input, textarea')]
        .filter(element => element.checkVisibility() && !element.matches('.skip'))
        .map(element => [element.outerHTML.slice(0, 100), element.getBoundingClientRect()])
        .filter(([, box]) => box.width < arguments[0] || box.height < arguments[0])
        .map(([name, box]) => [name, box.width, box.height]);
"""
# Texts that their box cuts off; a person's long name in the head and a long name in a bar may be.
CUT_OFF = """
    return [...document.querySelectorAll('body *')].filter(element => element.checkVisibility()
            && !element.closest('.hidden-text, .person, .skip, textarea')
            && !element.matches('.bar b, #bars, .knob, .scale')
            && getComputedStyle(element).overflowX !== 'visible' && element.scrollWidth > element.clientWidth + 1)
        .map(element => element.outerHTML.slice(0, 120));
"""


class TestAccessibility(HostTest):
    @classmethod
    def prepare(cls):
        """Long names, as in a large workshop."""
        [(car_id,)] = cls.home.rows(
            "SELECT car_id FROM maintainance WHERE operation_id=-1 AND operation_state=0 LIMIT 1")
        cls.home.change("UPDATE cars SET num='12-бис запасной' WHERE id=?", car_id)
        cls.home.change("UPDATE service_operations SET operation_name='Проверка и регулировка передних и задних "
                        "тормозных механизмов, замена жидкости' WHERE id=(SELECT min(id) FROM service_operations)")
        cls.home.change("UPDATE personal SET last_name='Константинопольский-Задунайский', first_name='Максимилиан' "
                        "WHERE id=(SELECT person_id FROM host_personal WHERE service_code=?)", CODES[0])

    def places(self, phone):
        """Every place with something in it, by name; the caller looks at each of them."""
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        phone.enter_code("")
        yield "sign-in"
        phone.sign_in()
        phone.until(lambda: phone.due(), "the due list")
        yield "due"
        phone.open_work(*phone.first_due("Жалоба"))
        yield "dialog"
        phone.press("#work-confirm")
        yield "undo"
        phone.press("#undo button")
        phone.open("karts")
        yield "karts"
        phone.open("done")
        yield "done"

    def test_contrast_and_targets_in_light_and_dark(self):
        phone = self.phone()
        for place in self.places(phone):
            for dark in (False, True):
                phone.resize(390, 844, dark)
                with self.subTest(place=place, dark=dark):
                    self.assertEqual(phone.script(LOW_CONTRAST, LOWEST_CONTRAST), [])
                    self.assertEqual(phone.script(SMALL_TARGETS, SMALLEST_TARGET), [])

    def test_nothing_is_cut_off_on_any_size_of_screen_and_text(self):
        phone = self.phone()
        for place in self.places(phone):
            for width, height, text in ((320, 568, 100), (390, 844, 100), (390, 844, 200), (768, 1024, 100),
                                        (1280, 800, 100), (844, 390, 100)):
                phone.resize(width, height)
                phone.script("document.documentElement.style.fontSize = arguments[0]",
                             "" if text == 100 else f"{1.0625 * text}%")
                with self.subTest(place=place, width=width, text=text):
                    self.assertLessEqual(phone.script("return document.documentElement.scrollWidth"), width)
                    self.assertEqual(phone.script(CUT_OFF), [])
            phone.resize(390, 844)
            phone.script("document.documentElement.style.fontSize = ''")

    def tree(self, phone):
        """Role, name and properties of all that a screen reader is told."""
        nodes = phone.command("Accessibility.getFullAXTree")["nodes"]
        return [(node["role"]["value"], node.get("name", {}).get("value", ""),
                 {one["name"]: one["value"].get("value") for one in node.get("properties", [])})
                for node in nodes if not node["ignored"]]

    def test_everything_has_a_role_and_a_name(self):
        phone = self.phone()
        for place in self.places(phone):
            with self.subTest(place=place):
                tree = self.tree(phone)
                operable = [node for node in tree if node[0] in ("button", "link", "textbox", "searchbox", "switch")]
                self.assertTrue(operable)
                self.assertEqual([node for node in operable if not node[1].strip()], [])
                levels = [node[2]["level"] for node in tree if node[0] == "heading"]
                self.assertEqual(levels[0], 2 if place == "dialog" else 1)
                self.assertTrue(all(after <= before + 1 for before, after in zip(levels, levels[1:])), levels)
                roles = [node[0] for node in tree]
                if place == "dialog":
                    self.assertEqual(roles.count("dialog"), 1)
                else:
                    self.assertTrue({"main", "banner"} <= set(roles), roles)
                if place not in ("dialog", "sign-in"):
                    self.assertIn(("navigation", "Разделы"), [node[:2] for node in tree])
                if place == "karts":
                    switches = [node for node in tree if node[0] == "switch"]
                    self.assertEqual(len(switches), len(phone.karts()))
                    self.assertIn(switches[0][2]["checked"], ("true", "false"))
                    self.assertTrue(switches[0][1].startswith("Карт "), switches[0])

    def test_names_of_buttons_say_what_they_act_on(self):
        phone = self.phone().sign_in()
        phone.until(lambda: phone.due(), "the due list")
        names = [name for role, name, _ in self.tree(phone) if role == "button"]
        kart, op = phone.due_keys()[0]
        self.assertIn(f"Сделано: {op}, карт {kart}", names)
        self.assertEqual(len(names), len(set(names)))

    def test_work_is_ticked_and_undone_without_a_mouse(self):
        phone = self.phone()
        phone.until(lambda: phone.is_shown("#code"), "the form for the code")
        self.assertEqual(self.focused(phone), "code")
        ActionChains(phone.driver).send_keys(CODES[0], Keys.ENTER).perform()
        phone.until(lambda: phone.is_online() and phone.due(), "the due list")
        phone.until(lambda: self.focused(phone) == "due-title", "the focus on the title")
        kart, op = phone.due_keys()[0]
        self.tab_until(phone, lambda: f"{op}, карт {kart}" in self.focused(phone))
        ActionChains(phone.driver).send_keys(Keys.ENTER).perform()
        phone.until(lambda: phone.is_shown("#work"), "the dialog")
        ActionChains(phone.driver).send_keys(Keys.ESCAPE).perform()
        phone.until(lambda: not phone.is_shown("#work"), "the end of the dialog")
        self.assertIn(f"{op}, карт {kart}", self.focused(phone))

        ActionChains(phone.driver).send_keys(Keys.ENTER).perform()
        phone.until(lambda: phone.is_shown("#work"), "the dialog")
        self.tab_until(phone, lambda: self.focused(phone) == "note")
        ActionChains(phone.driver).send_keys("клавиатурой").key_down(Keys.CONTROL).send_keys(Keys.ENTER) \
            .key_up(Keys.CONTROL).perform()
        phone.until(lambda: self.focused(phone).startswith("Отменить:"), "the focus on the button that undoes")
        ActionChains(phone.driver).send_keys(Keys.ENTER).perform()
        self.assertIn((kart, op), phone.due_keys())
        self.assertIn(f"{op}, карт {kart}", self.focused(phone))
        self.assertIn("Отменено", phone.text("#announcer"))

    def test_undo_by_the_usual_key(self):
        phone = self.phone().sign_in()
        kart, op = phone.first_due()
        phone.tick(kart, op, "Ctrl+Z")
        ActionChains(phone.driver).key_down(Keys.CONTROL).send_keys("z").key_up(Keys.CONTROL).perform()
        self.assertIn((kart, op), phone.due_keys())

    def test_every_stop_of_the_tab_key_is_visible(self):
        phone = self.phone().sign_in()
        phone.until(lambda: phone.due(), "the due list")
        seen = set()
        for _ in range(12):
            ActionChains(phone.driver).send_keys(Keys.TAB).perform()
            name, style, width = phone.script("""const focused = document.activeElement;
                const style = getComputedStyle(focused);
                return [focused.outerHTML.slice(0, 80), style.outlineStyle, parseFloat(style.outlineWidth)]""")
            self.assertEqual(style, "solid", name)
            self.assertGreaterEqual(width, 2, name)
            seen.add(name)
        self.assertGreaterEqual(len(seen), 10)

    def test_changes_are_announced(self):
        phone = self.phone().sign_in()
        for selector, attribute, value in (("#connection", "role", "status"), ("#announcer", "aria-live", "polite"),
                                           ("#notice-text", "role", "alert"), ("#sign-in-error", "role", "alert")):
            self.assertEqual(phone.find(selector).get_attribute(attribute), value)

    def test_nothing_moves_for_who_wants_less_motion(self):
        phone = self.phone().sign_in()
        phone.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-reduced-motion", "value": "reduce"}])
        phone.tick(*phone.first_due(), "без движения")
        self.assertEqual(phone.script("return document.getAnimations().length"), 0)
        phone.press("#undo button")

    def focused(self, phone):
        return phone.script("""const focused = document.activeElement;
            return focused.id || focused.getAttribute('aria-label') || focused.tagName""")

    def tab_until(self, phone, condition):
        for _ in range(40):
            if condition():
                return
            ActionChains(phone.driver).send_keys(Keys.TAB).perform()
        self.fail(f"not reached with the Tab key; the focus is on {self.focused(phone)}")


if __name__ == "__main__":
    unittest.main()
