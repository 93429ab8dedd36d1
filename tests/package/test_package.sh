#!/usr/bin/env bash
# The Debian package as a shop would install it: built with cpack, unpacked with dpkg -x into
# a temporary root, its files checked, and the installed programs started there.
# $1: the source folder; $2: the build folder (built).
set -euo pipefail
SRC="$1"
BUILD="$2"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

(cd "$BUILD" && cpack -G DEB -B "$WORK/out" > "$WORK/cpack.log" 2>&1) ||
    { cat "$WORK/cpack.log" >&2; fail "cpack -G DEB"; }
debs=("$WORK"/out/*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "cpack made no single .deb: ${debs[*]}"
deb="${debs[0]}"
echo "package: $(basename "$deb") ($(stat -c %s "$deb") bytes)"

# The control fields a shop's apt relies on.
[ "$(dpkg-deb -f "$deb" Package)" = dnc ] || fail "package name"
depends="$(dpkg-deb -f "$deb" Depends)"
for dep in libqt6widgets6 libqt6serialport6 libqt6sql6 qt6-qpa-plugins libqt6sql6-sqlite; do
    [[ "$depends" == *"$dep"* ]] || fail "Depends lacks $dep: $depends"
done

ROOT="$WORK/root"
dpkg -x "$deb" "$ROOT"
expected=(
    usr/bin/dnc
    usr/bin/dnc-vcontrol
    usr/share/applications/dnc.desktop
    usr/share/icons/hicolor/scalable/apps/dnc.svg
    usr/share/icons/hicolor/48x48/apps/dnc.png
    usr/share/icons/hicolor/128x128/apps/dnc.png
    usr/share/man/man1/dnc.1.gz
)
for f in "$SRC"/sql/*.sql; do expected+=("usr/share/dnc/$(basename "$f")"); done
for f in "${expected[@]}"; do
    [ -f "$ROOT/$f" ] || fail "not installed: /$f"
done
[ -x "$ROOT/usr/bin/dnc" ] && [ -x "$ROOT/usr/bin/dnc-vcontrol" ] || fail "programs not executable"
# Nothing outside /usr, nothing under /usr/local.
others="$(cd "$ROOT" && find . -mindepth 1 -maxdepth 1 ! -name usr)"
[ -z "$others" ] || fail "installed outside /usr: $others"
[ ! -e "$ROOT/usr/local" ] || fail "installed under /usr/local"

# The menu entry names the installed program and icon.
desktop="$ROOT/usr/share/applications/dnc.desktop"
grep -qx 'Exec=dnc' "$desktop" && grep -qx 'Icon=dnc' "$desktop" || fail "desktop entry"
if command -v desktop-file-validate > /dev/null; then
    desktop-file-validate "$desktop" || fail "desktop-file-validate"
fi
# The manual page renders without a warning.
warnings="$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l \
    "$ROOT/usr/share/man/man1/dnc.1.gz" 2>&1 > /dev/null)"
[ -z "$warnings" ] || fail "manual page: $warnings"

# The installed program starts with a tool database made from the installed schema, shows its
# window (offscreen), pictures it and ends, printing nothing.
mkdir -p "$WORK/run" "$WORK/shop" && chmod 700 "$WORK/run"
sqlite3 "$WORK/shop/tools.db" < "$ROOT/usr/share/dnc/tool_list.sql"
set +e
(cd "$WORK/shop" && env -i HOME="$WORK" PATH=/usr/bin:/bin XDG_CONFIG_HOME="$WORK/config" \
    XDG_RUNTIME_DIR="$WORK/run" QT_QPA_PLATFORM=offscreen DNC_SCREENSHOT="$WORK/dnc.png" \
    timeout 30 "$ROOT/usr/bin/dnc" -d tools.db -c 033 > "$WORK/dnc.out" 2>&1)
status=$?
set -e
[ $status -eq 0 ] || { cat "$WORK/dnc.out" >&2; fail "dnc ended with status $status"; }
[ ! -s "$WORK/dnc.out" ] || { cat "$WORK/dnc.out" >&2; fail "dnc printed the above"; }
[ -s "$WORK/dnc.png" ] || fail "dnc did not show its window"

# The virtual control answers for itself.
"$ROOT/usr/bin/dnc-vcontrol" --help > "$WORK/vc.out" 2>&1 || fail "dnc-vcontrol --help"
grep -q -- '--type 303|504|XonXoff' "$WORK/vc.out" || fail "dnc-vcontrol --help: $(cat "$WORK/vc.out")"
echo "installed and started: ${#expected[@]} files checked"
