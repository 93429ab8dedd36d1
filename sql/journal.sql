-- The journal of transfers, the tool usage over time and the stations' states, in an SQLite
-- file: the -d database, or the default under $XDG_STATE_HOME/dnc/. The programs create these
-- tables and indexes themselves when they are missing (unlike tool_list), from this very file.
-- Times are ISO 8601 in UTC with milliseconds ("2026-11-24T23:22:42.123Z"), so that text order
-- is time order and a day is the first 10 characters.

-- One row per operation of the window, dncctl or a station.
--   operation: send, receive, punch, request, list, change, execute, delete; "journal" for a
--              row that says, in lines, how many rows a process could not write before it ended
--   outcome:   done, timeout, port_failure, interrupted, refused, not_on_control,
--              file_failure, not_counted, cancelled; "rows_lost" for the journal's own row
--   start:     where a part-way send started ("block N48210"); empty for the top
CREATE TABLE IF NOT EXISTS transfer_journal (
    id INTEGER PRIMARY KEY,
    time TEXT NOT NULL,
    host TEXT NOT NULL,
    machine TEXT NOT NULL,
    device TEXT NOT NULL DEFAULT '',
    control TEXT NOT NULL DEFAULT '',
    operation TEXT NOT NULL,
    file TEXT NOT NULL DEFAULT '',
    program TEXT NOT NULL DEFAULT '',
    bytes INTEGER NOT NULL DEFAULT 0,
    lines INTEGER NOT NULL DEFAULT 0,
    sha256 TEXT NOT NULL DEFAULT '',
    start TEXT NOT NULL DEFAULT '',
    outcome TEXT NOT NULL,
    message TEXT NOT NULL DEFAULT '',
    duration_ms INTEGER NOT NULL DEFAULT 0,
    user_name TEXT NOT NULL DEFAULT ''
);
CREATE INDEX IF NOT EXISTS transfer_journal_time ON transfer_journal (time);
CREATE INDEX IF NOT EXISTS transfer_journal_machine_time ON transfer_journal (machine, time);
CREATE INDEX IF NOT EXISTS transfer_journal_outcome_time ON transfer_journal (outcome, time);

-- One row per tool line of a send that reached the control whole. tool_list counts every send
-- tried; this counts only what a machine received.
CREATE TABLE IF NOT EXISTS tool_usage (
    id INTEGER PRIMARY KEY,
    tool TEXT NOT NULL,
    machine TEXT NOT NULL,
    time TEXT NOT NULL,
    program TEXT NOT NULL DEFAULT ''
);
CREATE INDEX IF NOT EXISTS tool_usage_tool_time ON tool_usage (tool, time);
CREATE INDEX IF NOT EXISTS tool_usage_time_tool ON tool_usage (time, tool);

-- What each station is doing, written on each change and every 30 s; a row whose updated is
-- older than 90 s reads offline.
--   state: listening, sending (percent set), receiving, waiting (a request's delay),
--          device_gone, stopped
CREATE TABLE IF NOT EXISTS station_state (
    machine TEXT PRIMARY KEY,
    host TEXT NOT NULL,
    device TEXT NOT NULL DEFAULT '',
    state TEXT NOT NULL,
    percent INTEGER,
    program TEXT NOT NULL DEFAULT '',
    since TEXT NOT NULL,
    updated TEXT NOT NULL
);
