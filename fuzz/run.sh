#!/usr/bin/env bash
# Builds the fuzz targets and runs them one after the other: fuzz/run.sh RUNS [TARGET...]
# A target is a program (numbers) or an importer (import:sima); without one, all are run. What was found interesting, logs
# and inputs that failed lie in build/fuzz/runs/. Stops at the first target that fails.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
# shellcheck source=tools/configure.sh
. tools/configure.sh

if [ $# -eq 0 ]; then
    echo "usage: fuzz/run.sh RUNS [TARGET...]" >&2
    exit 2
fi
runs=$1
shift

configure_preset fuzz
ninja -C build/fuzz --quiet

all_targets() {
    local seeds
    for seeds in fuzz/seeds/*/; do
        [ "$seeds" = fuzz/seeds/import/ ] || basename "$seeds"
    done
    for seeds in fuzz/seeds/import/*/; do
        echo "import:$(basename "$seeds")"
    done
}

# a short queue of freed memory and short stacks of allocations: most of the time would go there
export ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=8:${ASAN_OPTIONS-}

run_target() {
    local program=${1%%:*} folder=build/fuzz/runs/${1/:/_} seeds=fuzz/seeds/${1/://} length=512
    local options=()
    [ "$program" != "$1" ] && options+=("--format=${1#*:}")
    [ -f "fuzz/$program.dict" ] && options+=("-dict=fuzz/$program.dict")
    case $program in
        angles | numbers) length=128 ;;
        job_document) length=1024 ;;
    esac
    mkdir -p "$folder/corpus"
    echo "== $1"
    # statistics of rare features would take a third of the time
    if ! "build/fuzz/fuzz/fuzz_$program" "${options[@]}" -runs="$runs" -max_len=$length -entropic=0 \
        -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$folder/" "$folder/corpus" "$seeds" >"$folder/log" 2>&1; then
        tail -n 60 "$folder/log" >&2
        echo "== $1 failed; the input and the log are in $folder" >&2
        return 1
    fi
    grep -a '^Done' "$folder/log"
}

if [ $# -eq 0 ]; then
    mapfile -t targets < <(all_targets)
    set -- "${targets[@]}"
fi
for target in "$@"; do
    run_target "$target"
done
