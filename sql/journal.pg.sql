-- The journal of transfers, the tool usage over time and the stations' states on a PostgreSQL
-- server, beside tool_list. The programs create these tables and indexes themselves when they
-- are missing and the role may; a shop that gives the stations no CREATE right runs this once:
--   psql "postgresql://dnc@server/dnc" -f sql/journal.pg.sql
-- The columns and their meaning are those of sql/journal.sql; times are timestamptz.
CREATE TABLE IF NOT EXISTS transfer_journal (
    id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    time timestamp(3) with time zone NOT NULL,
    host text NOT NULL,
    machine text NOT NULL,
    device text NOT NULL DEFAULT '',
    control text NOT NULL DEFAULT '',
    operation text NOT NULL,
    file text NOT NULL DEFAULT '',
    program text NOT NULL DEFAULT '',
    bytes bigint NOT NULL DEFAULT 0,
    lines bigint NOT NULL DEFAULT 0,
    sha256 text NOT NULL DEFAULT '',
    start text NOT NULL DEFAULT '',
    outcome text NOT NULL,
    message text NOT NULL DEFAULT '',
    duration_ms bigint NOT NULL DEFAULT 0,
    user_name text NOT NULL DEFAULT ''
);
CREATE INDEX IF NOT EXISTS transfer_journal_time ON transfer_journal (time);
CREATE INDEX IF NOT EXISTS transfer_journal_machine_time ON transfer_journal (machine, time);
CREATE INDEX IF NOT EXISTS transfer_journal_outcome_time ON transfer_journal (outcome, time);

CREATE TABLE IF NOT EXISTS tool_usage (
    id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    tool text NOT NULL,
    machine text NOT NULL,
    time timestamp(3) with time zone NOT NULL,
    program text NOT NULL DEFAULT ''
);
CREATE INDEX IF NOT EXISTS tool_usage_tool_time ON tool_usage (tool, time);
CREATE INDEX IF NOT EXISTS tool_usage_time_tool ON tool_usage (time, tool);

CREATE TABLE IF NOT EXISTS station_state (
    machine text PRIMARY KEY,
    host text NOT NULL,
    device text NOT NULL DEFAULT '',
    state text NOT NULL,
    percent integer,
    program text NOT NULL DEFAULT '',
    since timestamp(3) with time zone NOT NULL,
    updated timestamp(3) with time zone NOT NULL
);
