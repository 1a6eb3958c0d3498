#!/usr/bin/env bash
# Folder comparison against diff -rq on two large trees (see trees.sh).
#
#   bench/folders.sh [BUILD_DIR]
#
# Needs tv-folder-compare (built with the project into BUILD_DIR/bench),
# hyperfine, diff and python3. The trees are made in a temporary folder and
# removed afterwards; set TV_BENCH_DIR to a folder to keep them between runs.
# Times are medians of 10 warm runs. The last lines, one per comparison, read
#   RATIO <what>-vs-<peer> <our median divided by the peer's>
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
tool=$(cd "$build/bench" && pwd)/tv-folder-compare
[ -x "$tool" ] || { echo "build tv-folder-compare first (cmake --build $build --target tv-folder-compare)" >&2; exit 1; }
# shellcheck source=trees.sh
. "$here/trees.sh"

if [ -n "${TV_BENCH_DIR:-}" ]; then
    work=$TV_BENCH_DIR
    mkdir -p "$work"
else
    work=$(mktemp -d "${TMPDIR:-/tmp}/tv-bench-folders.XXXXXX")
    trap 'rm -rf "$work"' EXIT
fi
echo "making the trees in $work ..." >&2
make_trees "$work"
orig=$work/orig mod=$work/mod
echo "files: $(find "$orig" -type f | wc -l) original, $(find "$mod" -type f | wc -l) modified;" \
     "$(du -sh "$orig" | cut -f1) each" >&2

# The same findings, counted both ways, so that the times compare like work.
ours=$("$tool" -c "$orig" "$mod")
peer=$(diff -rq "$orig" "$mod" | wc -l || true)
echo "findings: ours $ours; diff -rq $peer lines" >&2

json=$work/folders.json
hyperfine --warmup 2 --runs 10 --ignore-failure --export-json "$json" \
    -n content "$tool -c $orig $mod" \
    -n sizes "$tool $orig $mod" \
    -n diff-rq "diff -rq $orig $mod" >&2

content=$(median_of "$json" 0)
sizes=$(median_of "$json" 1)
diffrq=$(median_of "$json" 2)
echo "median seconds: contents $content, sizes and dates $sizes, diff -rq $diffrq"
echo "RATIO content-vs-diff-rq $(ratio "$content" "$diffrq")"
echo "RATIO sizes-vs-diff-rq $(ratio "$sizes" "$diffrq")"
