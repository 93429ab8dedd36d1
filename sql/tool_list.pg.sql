-- The tool usage list on a PostgreSQL server, shared by every station. Create it with:
--   psql "postgresql://dnc@server/dnc" -f sql/tool_list.pg.sql
-- The program never creates the database, the table or a field: they must exist.
-- id finds a row again when the grid edits it (a count by another station moves the row,
-- its id stays); the unique index keeps one row per name whatever its case.
CREATE TABLE tool_list (
    id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    tool text,
    util smallint,
    date timestamp(0)
);
CREATE UNIQUE INDEX tool_list_tool_key ON tool_list (lower(tool));
