# Shared by the scripts: install what is missing, then configure and build into build/.
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
BUILD="$ROOT/build"

# man-db, desktop-file-utils and lintian: the package test checks the manual pages, the menu
# entry and the package as Debian would. ser2net: the device server the network port's tests
# talk to. qt6-l10n-tools and qt6-tools-dev: lupdate, lrelease and CMake's qt_add_translations
# for the French and German texts. iproute2: a pulled cable between the network port and its
# device server, made of a veth pair. qt6-httpserver-dev: dnc-web's HTTP server; its CMake files
# want qt6-websockets-dev too, which Debian's package does not pull in. chromium, chromium-driver
# and python3-selenium: dnc-web's pages tested, and pictured for the README, in a real browser.
PACKAGES=(build-essential cmake qt6-base-dev qt6-serialport-dev libqt6sql6-sqlite
          qt6-qpa-plugins libgl-dev fonts-dejavu-core xvfb xauth sqlite3 clang-format ccache
          man-db desktop-file-utils lintian postgresql libqt6sql6-psql systemd ser2net
          qt6-l10n-tools qt6-tools-dev iproute2 qt6-httpserver-dev qt6-websockets-dev chromium
          chromium-driver python3-selenium)

install_deps() {
    local missing=()
    for p in "${PACKAGES[@]}"; do
        dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

# build [target...]: everything when no target is named.
build() {
    cmake -S "$ROOT" -B "$BUILD" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    local targets=()
    for t in "$@"; do targets+=(--target "$t"); done
    cmake --build "$BUILD" -j"$(nproc)" "${targets[@]}"
}

# Every C++ file of the project in the committed .clang-format style; names the first that is not.
check_format() {
    (cd "$ROOT" && git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run -Werror) || {
        echo "Not formatted: run  git ls-files '*.cpp' '*.h' | xargs clang-format -i" >&2
        return 1
    }
}

# The French and German texts: lupdate reads the code into a copy of translations/*.ts; fails
# on a text without a finished translation, or when the committed files differ from what the
# code makes of them (a text added, changed or gone), and names the texts.
check_translations() {
    local tmp bad=0 ts name lang
    tmp="$(mktemp -d)"
    cp "$ROOT"/translations/dnc_fr.ts "$ROOT"/translations/dnc_de.ts "$tmp"/
    (cd "$ROOT" && /usr/lib/qt6/bin/lupdate -silent -locations none -no-obsolete src \
        -ts "$tmp"/dnc_fr.ts "$tmp"/dnc_de.ts) || { rm -rf "$tmp"; return 1; }
    for ts in "$tmp"/dnc_fr.ts "$tmp"/dnc_de.ts; do
        name="$(basename "$ts")"
        lang="$(basename "$ts" .ts)"; lang="${lang#dnc_}"
        if ! perl -0777 -ne '
            my $n = 0;
            while (m{<source>(.*?)</source>\s*<translation( type="unfinished")?>(.*?)</translation>}sg) {
                next unless $2 || $3 eq "";
                my $text = $1;
                $text =~ s/&quot;/"/g; $text =~ s/&apos;/\x27/g; $text =~ s/&lt;/</g;
                $text =~ s/&gt;/>/g; $text =~ s/&amp;/&/g;
                print STDERR "No translation ('"$lang"'): \"$text\"\n"; $n++;
            }
            exit($n ? 1 : 0);' "$ts"; then
            bad=1
        elif ! cmp -s "$ts" "$ROOT/translations/$name"; then
            echo "translations/$name is out of date with the code (lupdate -locations none" \
                 "-no-obsolete src -ts ...):" >&2
            diff "$ROOT/translations/$name" "$ts" | grep '^[<>].*<source>' >&2 || true
            bad=1
        fi
    done
    rm -rf "$tmp"
    return $bad
}
