#!/usr/bin/env bash
# The time from the command to the first byte on the wire, and dncctl's peak memory, for a send
# that starts at the last tool of a program of SIZE_MB megabytes (default 100), against the
# virtual control ("XonXoff"); a whole send's peak memory beside it.
# Usage: bench/part_way_figure.sh [SIZE_MB]
set -euo pipefail
ROOT="$(cd "$(dirname "$0")/.." && pwd)"
size_mb=${1:-100}
work="$(mktemp -d)"
trap 'kill $vc 2>/dev/null || true; rm -rf "$work"' EXIT
# Lines of 40 characters; a tool change every 5000 lines, the last tool (T99) only near the end.
python3 - "$work/big.nc" "$size_mb" <<'PY'
import sys
path, mb = sys.argv[1], int(sys.argv[2])
lines = mb * 1024 * 1024 // 40
with open(path, 'w', newline='') as f:
    f.write('%\r\nO1234 (BIG)\r\nG90 G21\r\n')
    for i in range(lines):
        if i % 5000 == 0:
            f.write('N%d T%02d%02d M6\r\n' % (i, 99 if i + 5000 >= lines else (i // 5000) % 90 + 1, 1))
        f.write('N%d G1 X%.3f Y%.3f F300\r\n' % (i, i % 1000 / 7, i % 777 / 3))
    f.write('M30\r\n%\r\n')
PY
echo "program: $(du -m "$work/big.nc" | cut -f1) MB"
cat > "$work/dnc.ini" <<INI
[M]
Port=COM1:
Baud=115200
Parity=N
Data=8
Stop=1
CNC=XonXoff
INI
"$ROOT/build/tools/vcontrol/vcontrol" --type XonXoff --link "$work/tty" --log "$work/wire.log" \
    --rate 20000 > /dev/null 2>&1 &
vc=$!
for _ in $(seq 50); do [ -e "$work/tty" ] && break; sleep 0.1; done
run() { # label, dncctl options...
    local label=$1
    shift
    rm -f "$work/trace"
    local started
    started=$(date +%s.%N)
    XDG_CONFIG_HOME="$work" DNC_COM1="$work/tty" DNC_TRACE="$work/trace" \
        /usr/bin/time -f "%M" -o "$work/rss" timeout 5 \
        "$ROOT/build/src/ctl/dncctl" -q -s M "$@" send "$work/big.nc" || true
    # The trace stamps each write with the wall clock: the first one is the first byte out.
    local first
    first=$(grep -m1 ' TX ' "$work/trace" | cut -d' ' -f1-2)
    python3 -c "import sys,datetime as d; t=d.datetime.strptime(sys.argv[1],'%Y-%m-%d %H:%M:%S.%f').timestamp(); print('$label: first byte %.0f ms after the command, peak memory %s kB (cut after 5 s)' % ((t-float(sys.argv[2]))*1000, sys.argv[3]))" \
        "$first" "$started" "$(cat "$work/rss")"
}
run "from the last tool" --from-tool 99
run "whole program"
