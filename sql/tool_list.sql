-- The tool usage list. Create a database with:  sqlite3 tools.db < sql/tool_list.sql
-- The program never creates the file, the table or a field: they must exist.
CREATE TABLE tool_list (
    tool TEXT,
    util SMALLINT,
    Date DATETIME
);
