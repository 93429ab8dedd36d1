#!/usr/bin/env bash
# The Debian package as a shop would install it: built with cpack, unpacked with dpkg -x into
# a temporary root, its files checked, and the installed programs started there.
# $1: the source folder; $2: the build folder (built); $3: the text probe (a Qt module that
# writes the texts of the window when it quits).
set -euo pipefail
SRC="$1"
BUILD="$2"
PROBE="$3"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

(cd "$BUILD" && cpack -G DEB -B "$WORK/out" > "$WORK/cpack.log" 2>&1) ||
    { cat "$WORK/cpack.log" >&2; fail "cpack -G DEB"; }
debs=("$WORK"/out/*.deb)
[ ${#debs[@]} -eq 1 ] && [ -f "${debs[0]}" ] || fail "cpack made no single .deb: ${debs[*]}"
deb="${debs[0]}"
echo "package: $(basename "$deb") ($(stat -c %s "$deb") bytes)"

# Debian's own checker: any error fails, warnings are shown.
lintian --tag-display-limit 0 "$deb" > "$WORK/lintian.out" 2>&1 || true
grep -v 'running with root privileges' "$WORK/lintian.out" || true
errors="$(grep '^E:' "$WORK/lintian.out" || true)"
[ -z "$errors" ] || fail "lintian: $errors"

# The control fields a shop's apt relies on.
[ "$(dpkg-deb -f "$deb" Package)" = dnc ] || fail "package name"
depends="$(dpkg-deb -f "$deb" Depends)"
for dep in libqt6widgets6 libqt6serialport6 libqt6sql6 qt6-qpa-plugins libqt6sql6-sqlite \
           libqt6httpserver6; do
    [[ "$depends" == *"$dep"* ]] || fail "Depends lacks $dep: $depends"
done
# A tool database on a server (-d postgresql://...) needs Qt's PostgreSQL driver.
[[ "$(dpkg-deb -f "$deb" Recommends)" == *libqt6sql6-psql* ]] || fail "Recommends lacks libqt6sql6-psql"
# Every line of the description, the field's name included, fits 80 columns.
long="$(dpkg-deb -f "$deb" Description | sed '1s/^/Description: /' | awk 'length($0) > 80')"
[ -z "$long" ] || fail "description lines over 80 columns: $long"
version="$(dpkg-deb -f "$deb" Version)"

ROOT="$WORK/root"
dpkg -x "$deb" "$ROOT"
programs=(dnc dncctl dnc-vcontrol)
expected=(
    usr/bin/dnc-station
    usr/share/man/man8/dnc-station.8.gz
    usr/lib/systemd/system/dnc-station@.service
    usr/bin/dnc-web
    usr/share/man/man8/dnc-web.8.gz
    usr/lib/systemd/system/dnc-web.service
    usr/lib/sysusers.d/dnc.conf
    usr/share/doc/dnc/examples/dnc-station.ini
    usr/share/applications/dnc.desktop
    usr/share/icons/hicolor/scalable/apps/dnc.svg
    usr/share/icons/hicolor/48x48/apps/dnc.png
    usr/share/icons/hicolor/128x128/apps/dnc.png
    usr/share/doc/dnc/copyright
    usr/share/doc/dnc/changelog.Debian.gz
)
for p in "${programs[@]}"; do expected+=("usr/bin/$p" "usr/share/man/man1/$p.1.gz"); done
for f in "$SRC"/sql/*.sql; do expected+=("usr/share/dnc/$(basename "$f")"); done
for f in "${expected[@]}"; do
    [ -f "$ROOT/$f" ] || fail "not installed: /$f"
done
for p in "${programs[@]}" dnc-station dnc-web; do
    bin="$ROOT/usr/bin/$p"
    [ -x "$bin" ] || fail "not executable: /usr/bin/$p"
    # Stripped as Debian strips: no symbol table, no compiler's notes.
    sections="$(readelf -S -W "$bin")"
    ! grep -q -e '\.symtab' -e '\.debug_' -e '\.comment' <<< "$sections" || fail "not stripped: /usr/bin/$p"
done
# Compressed as Debian wants them: gzip at its best, with no file name and no time stamp in
# the header (gzip -9n), so that the package's bytes do not change from build to build.
for f in usr/share/man/man1/*.1.gz usr/share/man/man8/*.8.gz usr/share/doc/dnc/changelog.Debian.gz; do
    for g in "$ROOT"/$f; do
        header="$(od -A n -t x1 -N 10 "$g" | tr -d ' \n')"
        # magic 1f8b, deflate 08, no flags 00, time 00000000, best compression 02, any system
        [[ "$header" == 1f8b08""00""00000000""02?? ]] ||
            fail "not compressed with gzip -9n: /${g#"$ROOT"/} ($header)"
    done
done
# The changelog's last entry is this version, and the copyright file is machine-readable.
top="$(zcat "$ROOT/usr/share/doc/dnc/changelog.Debian.gz" | head -n 1)"
[[ "$top" == "dnc ($version) "* ]] || fail "changelog.Debian does not begin with $version: $top"
head -n 1 "$ROOT/usr/share/doc/dnc/copyright" |
    grep -qx 'Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/' ||
    fail "copyright is not in the machine-readable format"
grep -q '^License: ' "$ROOT/usr/share/doc/dnc/copyright" || fail "copyright names no licence"
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
# The manual pages render without a warning.
for page in "${programs[@]/%/.1}" dnc-station.8 dnc-web.8; do
    warnings="$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l \
        "$ROOT/usr/share/man/man${page##*.}/$page.gz" 2>&1 > /dev/null)"
    [ -z "$warnings" ] || fail "manual page $page: $warnings"
done
# The station's service, as systemd reads it, for an instance: the program it starts is the
# one unpacked here.
unit="$WORK/dnc-station@Lathe1.service"
sed "s|/usr/bin/dnc-station|$ROOT/usr/bin/dnc-station|" \
    "$ROOT/usr/lib/systemd/system/dnc-station@.service" > "$unit"
verified="$(systemd-analyze verify --man=no "$unit" 2>&1)" || fail "systemd-analyze: $verified"
[ -z "$verified" ] || fail "systemd-analyze: $verified"
"$ROOT/usr/bin/dnc-station" --version | grep -q "${version%-*}" || fail "dnc-station --version"
# The web pages' service the same way, and the program it starts.
unit="$WORK/dnc-web.service"
sed "s|/usr/bin/dnc-web|$ROOT/usr/bin/dnc-web|" \
    "$ROOT/usr/lib/systemd/system/dnc-web.service" > "$unit"
verified="$(systemd-analyze verify --man=no "$unit" 2>&1)" || fail "systemd-analyze: $verified"
[ -z "$verified" ] || fail "systemd-analyze: $verified"
"$ROOT/usr/bin/dnc-web" --version | grep -q "${version%-*}" || fail "dnc-web --version"
# dnc(1) says that -d may name a server, and where the shell's commands are.
dnc_page="$(LC_ALL=C MANWIDTH=200 man -l "$ROOT/usr/share/man/man1/dnc.1.gz" 2>/dev/null | col -b)"
grep -q 'postgresql://' <<< "$dnc_page" || fail "dnc.1 does not name a postgresql:// server for -d"
grep -q 'dncctl(1)' <<< "$dnc_page" || fail "dnc.1 does not point to dncctl(1)"

# The installed dncctl runs, and its manual page holds every command, option and exit status
# that its help lists.
dncctl_version="$("$ROOT/usr/bin/dncctl" --version)" || fail "dncctl --version"
[[ "$dncctl_version" == *" ${version%-*}" ]] || fail "dncctl --version: $dncctl_version"
"$ROOT/usr/bin/dncctl" --help > "$WORK/ctl-help.txt" || fail "dncctl --help"
ctl_page="$(LC_ALL=C MANWIDTH=200 man -l "$ROOT/usr/share/man/man1/dncctl.1.gz" 2>/dev/null | col -b)"
words="$(sed -n '/^Commands:/,/^$/p' "$WORK/ctl-help.txt" | awk 'NR > 1 && /^  [a-z]/ { print $1 }')"
words+=" $(grep -oE '(^|[ ,])--?[a-z][a-z-]*' "$WORK/ctl-help.txt" | tr -d ' ,' | sort -u)"
statuses="$(sed -n '/^Exit status:/,$p' "$WORK/ctl-help.txt" | grep -oE '^  [0-9]+|; [0-9]+ by' |
    grep -oE '[0-9]+')"
[ -n "$statuses" ] && [ "$(wc -w <<< "$words")" -gt 10 ] || fail "dncctl --help not understood"
for w in $words; do
    grep -qE -- "(^|[^a-z-])$w([^a-z-]|$)" <<< "$ctl_page" || fail "dncctl.1 lacks $w"
done
exit_section="$(sed -n '/^EXIT STATUS/,/^ENVIRONMENT/p' <<< "$ctl_page")"
for n in $statuses; do
    grep -qE "^ +([0-9]+, )*$n(,|$| )" <<< "$exit_section" || fail "dncctl.1 lacks exit status $n"
done
for section in ENVIRONMENT FILES EXAMPLES; do
    grep -qx "$section" <<< "$ctl_page" || fail "dncctl.1 has no $section"
done
grep -q 'post-processor' <<< "$ctl_page" || fail "dncctl.1 has no post-processor example"

# The installed program starts in French with a tool database made from the installed schema,
# shows its window (offscreen), pictures it and ends, printing nothing. The probe writes down
# what the buttons said.
mkdir -p "$WORK/run" "$WORK/shop" && chmod 700 "$WORK/run"
sqlite3 "$WORK/shop/tools.db" < "$ROOT/usr/share/dnc/tool_list.sql"
set +e
(cd "$WORK/shop" && env -i HOME="$WORK" PATH=/usr/bin:/bin XDG_CONFIG_HOME="$WORK/config" \
    XDG_RUNTIME_DIR="$WORK/run" QT_QPA_PLATFORM=offscreen DNC_SCREENSHOT="$WORK/dnc.png" \
    DNC_TEXT_PROBE="$WORK/texts.txt" \
    timeout 30 env LD_PRELOAD="$PROBE" "$ROOT/usr/bin/dnc" -d tools.db -c 033 > "$WORK/dnc.out" 2>&1)
status=$?
set -e
[ $status -eq 0 ] || { cat "$WORK/dnc.out" >&2; fail "dnc ended with status $status"; }
[ ! -s "$WORK/dnc.out" ] || { cat "$WORK/dnc.out" >&2; fail "dnc printed the above"; }
[ -s "$WORK/dnc.png" ] || fail "dnc did not show its window"
[ -s "$WORK/texts.txt" ] || fail "the text probe read nothing from the window"
# Setup, Send, Receive and Quit, in French and not in English.
for caption in '&Configuration' '&Envoi' '&Reception' '&Quitter'; do
    grep -qxF "button: $caption" "$WORK/texts.txt" ||
        { cat "$WORK/texts.txt" >&2; fail "dnc -c 033: no button $caption"; }
done
for caption in 'S&etup' '&Send' '&Quit'; do
    ! grep -qxF "button: $caption" "$WORK/texts.txt" ||
        { cat "$WORK/texts.txt" >&2; fail "dnc -c 033: an English button $caption"; }
done

# The virtual control answers for itself.
"$ROOT/usr/bin/dnc-vcontrol" --help > "$WORK/vc.out" 2>&1 || fail "dnc-vcontrol --help"
grep -q -- '--type 303|504|XonXoff' "$WORK/vc.out" || fail "dnc-vcontrol --help: $(cat "$WORK/vc.out")"
echo "installed and started: ${#expected[@]} files checked, lintian without errors"
