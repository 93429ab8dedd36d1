#!/usr/bin/env bash
# A throwaway PostgreSQL server for the tests and the benchmark: its own cluster in a temporary
# folder, on 127.0.0.1 and a free port, with a database "dnc" owned by a role "dnc" that logs in
# with a password (kept in a pgpass file of the cluster's own). PostgreSQL refuses to run as
# root, so as root the server runs as the user postgres.
#
#   pg-cluster.sh run CMD [ARG...]   starts one, runs CMD with its variables, removes it again
#
# Sourced, it offers pg_cluster_up (exports the variables below) and pg_cluster_down.
#   DNC_PG_URI   postgresql://dnc@127.0.0.1:PORT/dnc, the database as -d names it
#   PGPASSFILE   where libpq finds the role's password
#   DNC_PG_DIR   the cluster's folder
# DNC_PG_DURABLE=1 keeps fsync on (the benchmark); the tests turn it off for speed.

pg_bin() {
    local bin
    bin="$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)"
    [ -x "$bin/pg_ctl" ] || { echo "PostgreSQL is not installed (package postgresql)" >&2; return 1; }
    echo "$bin"
}

# Runs a server program as the cluster's owner, from a folder it may enter (pg_ctl needs one).
pg_as_owner() {
    if [ "$(id -u)" -eq 0 ]; then
        (cd / && runuser -u postgres -- "$@")
    else
        (cd / && "$@")
    fi
}

pg_server_start() {
    pg_as_owner "$(pg_bin)/pg_ctl" -D "$DNC_PG_DIR/data" -l "$DNC_PG_DIR/server.log" -w -t 30 \
        start >/dev/null
}

pg_server_stop() {
    pg_as_owner "$(pg_bin)/pg_ctl" -D "$DNC_PG_DIR/data" -m fast -w -t 30 stop >/dev/null
}

pg_cluster_up() {
    local bin dir port tries
    bin="$(pg_bin)"
    dir="$(mktemp -d /tmp/dnc-pg.XXXXXX)"
    chmod 755 "$dir"
    [ "$(id -u)" -ne 0 ] || chown postgres: "$dir"
    export DNC_PG_DIR="$dir"
    pg_as_owner "$bin/initdb" -D "$dir/data" -U postgres -E UTF8 --locale=C --no-sync \
        --auth-local=trust --auth-host=scram-sha-256 >"$dir/initdb.log" 2>&1 || {
        cat "$dir/initdb.log" >&2
        return 1
    }
    local durable="off"
    [ "${DNC_PG_DURABLE:-0}" != 1 ] || durable="on"
    # A port nobody listens on; should another program take it first, the start fails and
    # the next one is tried.
    for tries in 1 2 3 4 5 6 7 8; do
        port=$((20000 + RANDOM % 40000))
        (: <"/dev/tcp/127.0.0.1/$port") 2>/dev/null && continue
        cat >>"$dir/data/postgresql.conf" <<CONF
listen_addresses = '127.0.0.1'
port = $port
unix_socket_directories = '$dir'
fsync = $durable
synchronous_commit = $durable
full_page_writes = $durable
CONF
        pg_server_start && break
        port=""
    done
    [ -n "$port" ] || { cat "$dir/server.log" >&2; return 1; }
    pg_as_owner "$bin/psql" -X -q -h "$dir" -p "$port" -U postgres -d postgres -v ON_ERROR_STOP=1 \
        -c "CREATE ROLE dnc LOGIN PASSWORD 'dnc-test'" -c "CREATE DATABASE dnc OWNER dnc" \
        -c "CREATE ROLE dnc_clerk LOGIN PASSWORD 'dnc-test'" >/dev/null
    printf '127.0.0.1:%s:*:%s:dnc-test\n' "$port" dnc "$port" dnc_clerk >"$dir/pgpass"
    chmod 600 "$dir/pgpass"
    export PGPASSFILE="$dir/pgpass"
    export DNC_PG_URI="postgresql://dnc@127.0.0.1:$port/dnc"
    # A login of the shop's that may use what it is granted in dnc and make nothing there.
    export DNC_PG_CLERK_URI="postgresql://dnc_clerk@127.0.0.1:$port/dnc"
    echo "PostgreSQL test server: $DNC_PG_URI (cluster in $dir)"
}

pg_cluster_down() {
    [ -n "${DNC_PG_DIR:-}" ] && [ -d "$DNC_PG_DIR" ] || return 0
    pg_server_stop 2>/dev/null || true
    rm -rf "$DNC_PG_DIR"
    unset DNC_PG_DIR DNC_PG_URI DNC_PG_CLERK_URI PGPASSFILE
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -euo pipefail
    case "${1:-}" in
    run)
        shift
        [ $# -gt 0 ] || { echo "usage: $0 run CMD [ARG...]" >&2; exit 2; }
        trap pg_cluster_down EXIT
        pg_cluster_up
        status=0
        "$@" || status=$?
        exit "$status"
        ;;
    *)
        echo "usage: $0 run CMD [ARG...]" >&2
        exit 2
        ;;
    esac
fi
