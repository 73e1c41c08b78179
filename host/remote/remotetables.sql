-- The remote side's own records, in a file of its own: it is another party, not a room of the host's.
CREATE TABLE IF NOT EXISTS remote_records (
    id            INTEGER PRIMARY KEY AUTOINCREMENT,
    car_id        INTEGER,
    op_id         INTEGER,
    op_name       TEXT,
    done_time     TEXT,
    operator_id   INTEGER,
    operator_name TEXT,
    service_code  TEXT,
    comment       TEXT,
    local_id      INTEGER,
    state         INTEGER
);
CREATE INDEX IF NOT EXISTS remote_records_by_local_id ON remote_records (local_id);
