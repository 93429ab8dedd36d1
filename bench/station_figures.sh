#!/usr/bin/env bash
# Figures of the station as built (build/src/station/dnc-station), against the virtual control:
#   the time from a request's last byte to the answer's first byte, less RequestDelay, for
#   REQUESTS requests in turn (median and worst, from the control's wire log);
#   CPU and resident memory of STATIONS listening stations over IDLE seconds.
# Usage: bench/station_figures.sh [STATIONS=1] [IDLE=60] [REQUESTS=10]
set -euo pipefail
ROOT="$(cd "$(dirname "$0")/.." && pwd)"
STATION="$ROOT/build/src/station/dnc-station"
VCONTROL="$ROOT/build/tools/vcontrol/vcontrol"
stations=${1:-1} idle=${2:-60} requests=${3:-10}
work="$(mktemp -d)"
pids=()
trap 'kill "${pids[@]}" 2>/dev/null || true; wait 2>/dev/null || true; rm -rf "$work"' EXIT

# One machine: its control, its section (COM1: is its own device in its own environment).
machine() { # n delay_s punches...
    local n=$1 delay=$2 dir="$work/m$1"
    shift 2
    mkdir -p "$dir/programs" "$dir/received" "$dir/store"
    printf '%%\r\nO1234\r\n(M%s)\r\nG0 X1\r\nM30\r\n%%\r\n' "$n" > "$dir/programs/O1234.tap"
    printf '[M]\nPort=COM1:\nBaud=115200\nParity=N\nData=8\nStop=1\nCNC=XonXoff\nProgramDir=%s\nReceiveDir=%s\nRequestDelay=%s\n' \
        "$dir/programs" "$dir/received" "$delay" > "$dir/dnc.ini"
    local args=()
    for p in "$@"; do args+=(--punch "$p"); done
    "$VCONTROL" --type XonXoff --link "$dir/tty" --dir "$dir/store" --log "$dir/wire.log" \
        --end-gap 200 --rate 200000 --punch-after 1000 --punch-gap 2000 "${args[@]}" \
        > /dev/null 2>&1 &
    pids+=($!)
    for _ in $(seq 50); do [ -e "$dir/tty" ] && break; sleep 0.1; done
    XDG_CONFIG_HOME="$dir" DNC_COM1="$dir/tty" DNC_LOCK_DIR="$dir" "$STATION" -s M \
        2> "$dir/station.log" &
    pids+=($!)
}

# Latency: the gaps in the wire log between the last byte the control wrote and the first
# byte it read back, less the delay.
printf '%%\nO9999\n(PRG=1234)\nM30\n%%\n' > "$work/request"
punches=()
for _ in $(seq "$requests"); do punches+=("$work/request"); done
machine 0 1 "${punches[@]}"
sleep $((1 + 2 * requests + 1))
awk '$2=="TX"{tx=$1} $2=="RX"&&tx{printf "%.1f\n", ($1-tx)/1000-1000; tx=0}' "$work/m0/wire.log" |
    sort -n > "$work/gaps"
echo "requests answered: $(wc -l < "$work/gaps") of $requests"
echo "request's last byte to answer's first, less RequestDelay (ms): median" \
    "$(awk '{a[NR]=$1} END{print a[int((NR+1)/2)]}' "$work/gaps"), worst $(tail -1 "$work/gaps")"
kill "${pids[@]}" 2>/dev/null || true
wait 2>/dev/null || true
pids=()

# Idle: listening stations, nobody punching.
for n in $(seq "$stations"); do machine "$n" 3; done
sleep 2
station_pids=($(pgrep -x dnc-station | while read -r p; do
    grep -qz "DNC_COM1=$work/" "/proc/$p/environ" 2>/dev/null && echo "$p"; done))
ticks() { awk '{print $14+$15}' "/proc/$1/stat"; }
declare -A before
for p in "${station_pids[@]}"; do before[$p]=$(ticks "$p"); done
sleep "$idle"
hz=$(getconf CLK_TCK)
total=0
for p in "${station_pids[@]}"; do
    used=$(( $(ticks "$p") - ${before[$p]} ))
    total=$((total + used))
    rss=$(awk '/VmRSS/{print $2}' "/proc/$p/status")
    echo "station $p: CPU $(awk -v u="$used" -v h="$hz" -v s="$idle" 'BEGIN{printf "%.3f", 100*u/h/s}') % of a core over ${idle} s, resident ${rss} kB"
done
echo "all ${#station_pids[@]} stations: CPU $(awk -v u="$total" -v h="$hz" -v s="$idle" 'BEGIN{printf "%.3f", 100*u/h/s}') % of a core"
