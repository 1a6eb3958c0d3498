#!/usr/bin/env bash
# Find in files against grep -rn and rg -n on a large tree (see trees.sh).
#
#   bench/find.sh [BUILD_DIR]
#
# Needs tv-find (built with the project into BUILD_DIR/bench), hyperfine,
# grep, rg and python3. The tree is made in a temporary folder and removed
# afterwards; set TV_BENCH_DIR to a folder to keep it between runs. rg runs
# with -uu so that it, like the others, searches hidden and ignored files.
# Times are medians of 10 warm runs. Then the find viewer (tv-find-viewer,
# offscreen) runs a search with more than 50,000 hits five times: the median
# time from its start to the last row shown against rg's median on the same
# search, and the longest time the window went without handling events. The
# last lines, one per comparison, read
#   RATIO <what>-vs-<peer> <our median divided by the peer's>
#   STALL viewer <longest milliseconds without handling events>
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
tool=$(cd "$build/bench" && pwd)/tv-find
[ -x "$tool" ] || { echo "build tv-find first (cmake --build $build --target tv-find)" >&2; exit 1; }
# shellcheck source=trees.sh
. "$here/trees.sh"

if [ -n "${TV_BENCH_DIR:-}" ]; then
    work=$TV_BENCH_DIR
    mkdir -p "$work"
else
    work=$(mktemp -d "${TMPDIR:-/tmp}/tv-bench-find.XXXXXX")
    trap 'rm -rf "$work"' EXIT
fi
echo "making the tree in $work ..." >&2
make_trees "$work"
tree=$work/orig
echo "files: $(find "$tree" -type f | wc -l), $(du -sh "$tree" | cut -f1)" >&2

results=()
# bench_case NAME "OUR ARGS" "GREP ARGS" "RG ARGS": each argument list is
# split on blanks, never globbed.
bench_case() {
    local name=$1 ours grepArgs rgArgs
    read -ra ours <<<"$2"
    read -ra grepArgs <<<"$3"
    read -ra rgArgs <<<"$4"
    local cmdOurs cmdGrep cmdRg
    cmdOurs=$(printf '%q ' "$tool" "${ours[@]}" "$tree")
    cmdGrep=$(printf '%q ' grep "${grepArgs[@]}" "$tree")
    cmdRg=$(printf '%q ' rg "${rgArgs[@]}" "$tree")
    # Matching lines as each tool counts them, to show that the work is alike.
    echo "$name: ours $("$tool" "${ours[@]}" "$tree" | tail -1)," \
         "grep $(grep "${grepArgs[@]}" "$tree" 2>/dev/null | grep -vc '^Binary file' || true) lines," \
         "rg $(rg "${rgArgs[@]}" "$tree" 2>/dev/null | wc -l || true) lines" >&2
    local json=$work/find-$name.json
    hyperfine --warmup 2 --runs 10 --ignore-failure --export-json "$json" \
        -n ours "$cmdOurs" -n grep "$cmdGrep" -n rg "$cmdRg" >&2
    local o g r
    o=$(median_of "$json" 0) g=$(median_of "$json" 1) r=$(median_of "$json" 2)
    echo "$name median seconds: ours $o, grep -rn $g, rg -n $r"
    results+=("RATIO $name-vs-rg $(ratio "$o" "$r")" "RATIO $name-vs-grep $(ratio "$o" "$g")")
}

bench_case literal "PTHREAD_MUTEX_INITIALIZER" "-rnF PTHREAD_MUTEX_INITIALIZER" "-nF -uu PTHREAD_MUTEX_INITIALIZER"
bench_case nocase "-i license" "-rniF license" "-niF -uu license"
bench_case wildcard "-p str*cmp" "-rn str.*cmp" "-n -uu str.*cmp"
viewer=$build/bench/tv-find-viewer
if [ -x "$viewer" ]; then
    text=include
    echo "viewer: rg finds $(rg -n -uu -F "$text" "$tree" | wc -l) lines" >&2
    times=() stall=0
    for _ in 1 2 3 4 5; do
        read -r _ rows _ secs _ ms < <("$viewer" "$text" "$tree" 2>/dev/null)
        echo "viewer: $rows rows, last row after $secs s, longest stall $ms ms" >&2
        times+=("$secs")
        ((ms > stall)) && stall=$ms
    done
    v=$(printf '%s\n' "${times[@]}" | sort -n | sed -n 3p)
    json=$work/find-viewer-rg.json
    hyperfine --warmup 2 --runs 10 --export-json "$json" -n rg "$(printf '%q ' rg -nF -uu "$text" "$tree")" >/dev/null 2>&1
    r=$(median_of "$json" 0)
    echo "viewer median seconds to the last row: $v, rg -n $r"
    results+=("RATIO viewer-vs-rg $(ratio "$v" "$r")" "STALL viewer $stall")
else
    echo "skipping the viewer: build tv-find-viewer first" >&2
fi
printf '%s\n' "${results[@]}"
