"""What is known of tests and mutants, kept in a file, so that a run that was stopped goes on."""
import hashlib
import json
import threading


RECORDED = ("seconds", "processor_seconds", "reached")


class Results:
    def __init__(self, path, mutants):
        self._path = path
        self._lock = threading.Lock()
        self._mutants = mutants
        plan = hashlib.sha256(repr(sorted(mutants.items())).encode()).hexdigest()
        kept = json.loads(path.read_text()) if path.exists() else {}
        self._kept = kept if kept.get("plan") == plan else {"plan": plan, "tests": {}, "mutants": {}}

    def forget_survivors(self):
        verdicts = self._kept["mutants"]
        self._kept["mutants"] = {number: verdict for number, verdict in verdicts.items() if verdict}

    def recall(self, test):
        """False if the test was not recorded, or was built anew since."""
        kept = self._kept["tests"].get(test.name, {})
        if kept.get("signature") != test.signature:
            return False
        for name in RECORDED:
            setattr(test, name, kept[name])
        return True

    def keep_test(self, test):
        self._keep("tests", test.name, {name: getattr(test, name) for name in ("signature", *RECORDED)})

    def unjudged(self):
        return [number for number in self._mutants if str(number) not in self._kept["mutants"]]

    def keep_verdict(self, number, verdict):
        self._keep("mutants", str(number), verdict)

    def _keep(self, group, key, value):
        with self._lock:
            self._kept[group][key] = value
            new = self._path.with_suffix(".new")
            new.write_text(json.dumps(self._kept))
            new.replace(self._path)  # so that a run that is stopped here leaves no half of it

    def survivors(self):
        return [self._mutants[number] for number in self._mutants if not self._kept["mutants"].get(str(number))]

    def timed_out(self):
        return sum(1 for verdict in self._kept["mutants"].values() if verdict and verdict["failure"] == "timed out")
