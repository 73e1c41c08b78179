#!/usr/bin/env python3
"""A reload as a script would do it: reads the five statements, decides what is due, builds the message.

  peer.py DATABASE [REPETITIONS]   prints JSON: {"computing_ms": [...], "pending": ..., "records": ...}
"""
import datetime
import json
import pathlib
import sqlite3
import sys
import time

STATEMENTS = (pathlib.Path(__file__).parent / "statements.sql").read_text().split(";")
COMPLAINT = -1
OPEN = 0


def utc(text):
    """The moment of a database text; a text without a zone is UTC."""
    moment = datetime.datetime.fromisoformat(text.replace("Z", "+00:00"))
    return moment if moment.tzinfo else moment.replace(tzinfo=datetime.timezone.utc)


def is_due(operation, limit):
    return any(limit[name] and operation[value] > limit[name]
               for value, name in (("lc", "laps_limit"), ("rc", "runs_limit"), ("tt", "time_limit")))


def pending_service(car, operation, number, name):
    return {"carId": car["id"], "carNum": car["num"], "carModel": car["name"], "opId": number, "opName": name,
            "opDateTime": f"{operation['ot']:%Y-%m-%dT%H:%M}", "localId": operation["id"]}


def reload(database):
    cars = [dict(row) | {"ops": {}} for row in database.execute(STATEMENTS[0])]
    car_by_id = {car["id"]: car for car in cars}
    for row in database.execute(STATEMENTS[1]):
        if row["car_id"] in car_by_id:
            driven = {"ot": utc(row["ot"]), "tt": row["tt"] or 0, "lc": row["lc"], "rc": row["rc"],
                      "state": row["operation_state"], "comment": row["comment"], "id": row["id"]}
            car_by_id[row["car_id"]]["ops"][row["operation_id"]] = driven

    journal = []
    for row in database.execute(STATEMENTS[2]):
        record = dict(row)
        record["operation_time"] = utc(record["operation_time"]).astimezone()
        journal.append(record)

    limits = {}
    for row in database.execute(STATEMENTS[3]):
        limits.setdefault(row["model"], {})[row["operation_id"]] = dict(row)
    names = {row["id"]: row["operation_name"] for row in database.execute(STATEMENTS[4])}

    pending = []
    for car in cars:
        complaint = car["ops"].get(COMPLAINT)
        if complaint and complaint["state"] == OPEN:
            pending.append(pending_service(car, complaint, COMPLAINT, complaint["comment"]))
        for number, operation in sorted(car["ops"].items()):
            limit = limits.get(car["name"], {}).get(number)
            if limit and (operation["state"] == OPEN or is_due(operation, limit)):
                pending.append(pending_service(car, operation, number, names.get(number, "")))
    statuses = [{"carId": car["id"],
                 "opsStatus": {str(number): {"tt": driven["tt"], "tl": driven["lc"], "tr": driven["rc"],
                                             "dt": f"{driven['ot']:%Y-%m-%dT%H:%M}"}
                               for number, driven in sorted(car["ops"].items())}} for car in cars]
    message = json.dumps({"servicePendingList": pending, "maintainanceStatus": statuses})
    return len(pending), len(journal), message


def main():
    database = sqlite3.connect(sys.argv[1])
    database.row_factory = sqlite3.Row
    computing = []
    for _ in range(int(sys.argv[2]) if len(sys.argv) > 2 else 1):
        start = time.process_time()
        pending, records, _ = reload(database)
        computing.append((time.process_time() - start) * 1000)
    print(json.dumps({"computing_ms": computing, "pending": pending, "records": records}))


main()
