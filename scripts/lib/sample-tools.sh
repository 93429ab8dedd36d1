#!/usr/bin/env bash
# Makes a sample tool database from the schema in the repository. $1: the database file.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
sqlite3 "$1" < "$ROOT/sql/tool_list.sql"
sqlite3 "$1" <<'SQL'
INSERT INTO tool_list (tool, util, Date) VALUES ('drill 8.5', 12, '2026-11-02 08:15:00');
INSERT INTO tool_list (tool, util, Date) VALUES ('endmill 20', 7, '2026-11-10 14:02:00');
INSERT INTO tool_list (tool, util, Date) VALUES ('tap m10', 3, '2026-11-12 09:40:00');
SQL
