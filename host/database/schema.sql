-- The tables that the host application keeps in the shared database file, as the garage module relies on them.
-- The module creates none of them; the demo host, the tests and the benchmarks do.
CREATE TABLE cars (
    id   INTEGER PRIMARY KEY,
    num  TEXT,
    name TEXT
);
CREATE TABLE personal (
    id         INTEGER PRIMARY KEY,
    last_name  TEXT,
    first_name TEXT,
    mid_name   TEXT
);
CREATE TABLE laps (
    lap_id        INTEGER PRIMARY KEY,
    car_id        INTEGER,
    run_id        INTEGER,
    lap_timestamp TEXT,     -- UTC, ISO 8601 with milliseconds and "Z": sorts with maintainance.operation_time
    sum_sectors   INTEGER   -- milliseconds
);
-- Holds all that is asked of a lap, so that summing them up never goes to the table.
CREATE INDEX laps_by_car ON laps (car_id, lap_timestamp, sum_sectors, run_id);
CREATE TABLE service_operations (
    id             INTEGER PRIMARY KEY AUTOINCREMENT, -- never reused: limits are kept by operation id
    operation_name TEXT
);
CREATE TABLE service_reglament (
    model        TEXT,
    operation_id INTEGER,
    time_limit   INTEGER,   -- seconds of driving; 0 = none
    runs_limit   INTEGER,
    laps_limit   INTEGER,
    PRIMARY KEY (model, operation_id)
);
CREATE TABLE maintainance (
    id              INTEGER PRIMARY KEY AUTOINCREMENT, -- never reused: the remote side remembers ids
    car_id          INTEGER,
    operation_id    INTEGER,           -- -1 = complaint
    operation_time  TEXT,              -- UTC, ISO 8601
    person_id       INTEGER,
    person_name     TEXT,
    comment         TEXT,
    operation_state INTEGER DEFAULT 1, -- 0 = open, 1 = done
    remote_id       INTEGER
);
-- Each record of the remote side is searched by its remote id.
CREATE INDEX maintainance_by_remote_id ON maintainance (remote_id);
