# The fuzz targets and how each is run, shared by scripts/proof and scripts/fault-report.
# Expects ROOT and FUZZ_BUILD.

FUZZERS=(fuzz_command_line fuzz_profile fuzz_number_text fuzz_tool_scan fuzz_nc_line_reader
         fuzz_reply_loops fuzz_vcontrol fuzz_telnet_layer)

# Inputs no longer than a target needs keep its runs fast.
declare -A FUZZ_MAX_LEN=([fuzz_number_text]=256 [fuzz_nc_line_reader]=1024
                         [fuzz_tool_scan]=2048 [fuzz_vcontrol]=4096)

# run_fuzzer NAME SECONDS: runs one target; its log is build-fuzz/logs/NAME.log. New inputs go
# to a scratch folder and the committed seeds are only read; a finding is kept in
# build-fuzz/findings/ and printed. Returns non-zero on a finding.
run_fuzzer() {
    local name="$1" seconds="$2"
    local scratch logs="$FUZZ_BUILD/logs" findings="$FUZZ_BUILD/findings"
    scratch="$(mktemp -d)"
    mkdir -p "$logs" "$findings"
    local opts=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
                -artifact_prefix="$findings/$name-")
    [ -n "${FUZZ_MAX_LEN[$name]:-}" ] && opts+=(-max_len="${FUZZ_MAX_LEN[$name]}")
    local rc=0
    # libFuzzer stops itself at its time; the outer bound is for a target that would not.
    timeout --kill-after=10 "$((seconds + 120))" \
        "$FUZZ_BUILD/fuzz/$name" "${opts[@]}" "$scratch" "$ROOT/fuzz/seeds/$name" \
        >"$logs/$name.log" 2>&1 || rc=$?
    rm -rf "$scratch"
    grep -E '^(Done|stat::number_of_executed_units)' "$logs/$name.log" | sed 's/^/   /'
    if [ $rc -ne 0 ]; then
        echo "   FAILED (exit $rc):"
        grep -E 'property failed|ERROR:|SUMMARY:|Test unit written' "$logs/$name.log" | sed 's/^/   /'
    fi
    return $rc
}
