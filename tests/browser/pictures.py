"""Takes the pictures of the page for the guides: pictures.py FOLDER. scripts/screenshots combines them. The clock of
the host stands still; the page follows it."""
import pathlib
import sys

from browsertest import Phone, SampleHome, WindowHost


def freeze(phone):
    """Stops the time in which a tick can be undone, so that each picture of it is the same."""
    phone.script("window.realNow = Date.now; const now = Date.now(); Date.now = () => now;")


def thaw(phone):
    phone.script("Date.now = window.realNow;")


def take(phone, name):
    phone.script("""scrollTo(0, 0); document.activeElement.blur();
        for (const one of document.getAnimations()) { one.pause(); one.currentTime = 1000; }""")
    phone.driver.save_screenshot(str(folder / f"{name}.png"))


def take_set(phone, language, notes):
    phone.until(lambda: phone.is_shown("#code"), "the form for the code")
    phone.sign_in()
    complaint = phone.first_due("Жалоба" if language == "ru" else "Complaint")
    take(phone, f"{language}-due")
    phone.open_work(*complaint)
    phone.find("#note").send_keys(": " + notes[0])
    take(phone, f"{language}-note")
    freeze(phone)
    phone.press("#work-confirm")
    phone.until(lambda: phone.is_shown("#undo"), "the bar")
    take(phone, f"{language}-undo")
    thaw(phone)
    phone.tick(*phone.first_due(), notes[1])
    phone.until(lambda: not phone.is_shown("#undo"), "the end of the time to undo")
    phone.open("done")
    phone.await_state(notes[1], "в базе" if language == "ru" else "stored")
    phone.set_network(False)
    phone.open("due")
    phone.tick(*phone.first_due(), notes[2])
    phone.until(lambda: not phone.is_shown("#undo"), "the end of the time to undo")
    phone.open("done")
    take(phone, f"{language}-done")
    phone.set_network(True)
    phone.until(phone.is_online, "the connection")
    phone.await_state(notes[2], "в базе" if language == "ru" else "stored")
    phone.open("karts")
    phone.command("Emulation.setEmulatedMedia", features=[
        {"name": "prefers-color-scheme", "value": "dark"}, {"name": "prefers-reduced-motion", "value": "reduce"}])
    phone.press_kart(sorted(phone.karts())[0])
    phone.until(lambda: not all(phone.karts().values()) and not phone.all('[aria-busy="true"]'), "the switch")
    take(phone, f"{language}-karts")


def take_all(language, accepted, notes):
    home = SampleHome()
    host = WindowHost(home)
    phone = Phone(host.url, language=accepted)
    try:
        take_set(phone, language, notes)
        if language == "en":
            phone.resize(1280, 800, dark=True)
            phone.open("due")
            take(phone, "desktop")
    finally:
        phone.close()
        host.end()
        home.remove()


folder = pathlib.Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)
take_all("ru", "ru-RU,ru", ("поменяли колодки", "масло 5W-40", "смазал"))
take_all("en", "en-GB,en", ("pads replaced", "oil 5W-40", "greased"))
