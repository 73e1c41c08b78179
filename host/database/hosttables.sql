-- What the demo host keeps beside the tables that it shares with the garage module.
CREATE TABLE IF NOT EXISTS host_cars (
    car_id    INTEGER PRIMARY KEY,
    guid      TEXT,
    available INTEGER NOT NULL DEFAULT 1
);
CREATE TABLE IF NOT EXISTS host_personal (
    person_id    INTEGER PRIMARY KEY,
    service_code TEXT
);
