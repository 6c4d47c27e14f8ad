#!/usr/bin/env bash
# Makes sure that this machine has what is needed, by tools/packages.txt:
#   tools/setup.sh run     to build and run the program
#   tools/setup.sh check   to pass all tests beside that, and a locale with a decimal comma
# Does nothing, and asks no network, when all is there. Says nothing on standard output.
set -euo pipefail
exec >&2

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
packages_file="$here/packages.txt"

fail() {
    echo "setup: $*"
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "this needs root: $*"
    fi
}

group=${1-}
case "$group" in
    run | check) ;;
    *) fail "usage: tools/setup.sh run|check" ;;
esac

missing_packages() {
    local wanted installed
    # ./check needs both groups, and the first stands ahead of the second
    wanted=$(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$packages_file" |
        awk -v group="$group" '/^\[/ { wanted = (group == "check" || $0 == "[run]"); next } wanted' | sort -u)
    # shellcheck disable=SC2086 # one word a package
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null | sed -n 's/^installed //p' | sort -u)
    comm -23 <(echo "$wanted") <(echo "$installed") | tr '\n' ' '
}

has_german_locale() {
    grep -qi '^de_DE\.utf-\?8$' <<<"$(locale -a 2>/dev/null)"
}

command -v dpkg-query >/dev/null ||
    fail "this isn't a Debian system; install what $packages_file names by your own means, and build with cmake --preset release"

missing=$(missing_packages)
if [ -n "$missing" ]; then
    echo "setup: installing $missing"
    log=$(mktemp)
    trap 'rm -f "$log"' EXIT
    # shellcheck disable=SC2086
    if ! { as_root env DEBIAN_FRONTEND=noninteractive apt-get update && as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1; then
        tail -n 30 "$log"
        fail "couldn't install: $missing"
    fi
    missing=$(missing_packages)
    [ -z "$missing" ] || fail "still missing after the installation: $missing"
fi

if [ "$group" = check ] && ! has_german_locale; then
    echo "setup: making the locale de_DE.UTF-8"
    as_root localedef -i de_DE -f UTF-8 de_DE.UTF-8 || fail "couldn't make the locale de_DE.UTF-8"
    has_german_locale || fail "the locale de_DE.UTF-8 is still missing"
fi
