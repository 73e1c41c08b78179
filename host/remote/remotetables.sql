-- The remote side's records. They have a file of their own because the remote side is another system.
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
    state         INTEGER,
    request_key   TEXT -- of the page that made the record: it is stored once, however often it is sent
);
CREATE UNIQUE INDEX IF NOT EXISTS remote_records_by_request_key ON remote_records (request_key);
CREATE INDEX IF NOT EXISTS remote_records_by_done_time ON remote_records (done_time);
CREATE INDEX IF NOT EXISTS remote_records_by_state ON remote_records (state);
CREATE INDEX IF NOT EXISTS remote_records_by_local_id ON remote_records (local_id);
