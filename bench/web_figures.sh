#!/usr/bin/env bash
# Figures of dnc-web as built (build/src/web/dnc-web), on SQLite and on PostgreSQL (a
# throwaway cluster): time per page at ROWS journal rows and TOOLS tools; then CLIENTS clients
# at once for SECONDS: requests per second, errors, resident memory of dnc-web.
# Usage: bench/web_figures.sh [ROWS=100000] [TOOLS=500] [CLIENTS=50] [SECONDS=20]
set -euo pipefail
ROOT="$(cd "$(dirname "$0")/.." && pwd)"
WEB="$ROOT/build/src/web/dnc-web"
rows=${1:-100000} tools=${2:-500} clients=${3:-50} seconds=${4:-20}
work="$(mktemp -d)"
pid=""
trap '[ -z "$pid" ] || kill "$pid" 2>/dev/null || true; rm -rf "$work"' EXIT
source "$ROOT/scripts/lib/pg-cluster.sh"

port() { /usr/bin/python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'; }

measure() { # database
    local p
    p="$(port)"
    "$WEB" -d "$1" --listen "127.0.0.1:$p" 2>/dev/null &
    pid=$!
    for _ in $(seq 50); do (exec 3<>"/dev/tcp/127.0.0.1/$p") 2>/dev/null && break; sleep 0.1; done
    /usr/bin/python3 "$ROOT/bench/web_load.py" pages "$p" 20
    /usr/bin/python3 "$ROOT/bench/web_load.py" load "$p" "$clients" "$seconds" "$pid"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    pid=""
}

echo "== SQLite"
sqlite3 "$work/journal.db" < "$ROOT/sql/journal.sql"
/usr/bin/python3 "$ROOT/bench/web_load.py" seed "$work/journal.db" "$rows" "$tools"
measure "$work/journal.db"

echo "== PostgreSQL"
trap '[ -z "$pid" ] || kill "$pid" 2>/dev/null || true; pg_cluster_down; rm -rf "$work"' EXIT
pg_cluster_up >/dev/null
psql -X -q -v ON_ERROR_STOP=1 "$DNC_PG_URI" -c 'SET client_min_messages = warning' \
    -c 'DROP TABLE IF EXISTS transfer_journal, tool_usage, station_state' \
    -f "$ROOT/sql/journal.pg.sql"
/usr/bin/python3 "$ROOT/bench/web_load.py" seed "$DNC_PG_URI" "$rows" "$tools"
measure "$DNC_PG_URI"
