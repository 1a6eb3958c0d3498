#!/usr/bin/env bash
# The folder viewer from the start of a run to the last row in its grid,
# offscreen, against diff -rq on the same two trees, in the same run.
#
#   bench/folder-viewer.sh [BUILD_DIR]
#
# Needs tv-folder-viewer (built with the project into BUILD_DIR/bench),
# hyperfine, diff and python3. The trees (at least 50,000 files, about 2 % of
# them changed, deleted or added) are made in a temporary folder and removed
# afterwards; set TV_BENCH_DIR to keep them between runs. Prints the medians,
# the longest time the window's thread did not get to its events, and the
# memory per grid row beyond what the engine alone holds. The last lines read
#   RATIO <what>-vs-<peer> <our median divided by the peer's>
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build}
tool=$(cd "$build/bench" && pwd)/tv-folder-viewer
[ -x "$tool" ] || { echo "build tv-folder-viewer first (cmake --build $build --target tv-folder-viewer)" >&2; exit 1; }
"$here/../scripts/install-deps" --bench

sources=(usr/include usr/share/doc usr/lib/python3 usr/lib/python3.11 usr/share/cmake-3.25 usr/share/perl
         usr/share/vim usr/share/i18n usr/share/zoneinfo usr/share/locale usr/share/man usr/lib/x86_64-linux-gnu/cmake
         usr/share/icons usr/share/mime usr/share/qt6)

make_viewer_trees() {
    local dir=$1 orig=$1/orig mod=$1/mod
    [ -f "$dir/.complete" ] && return 0
    rm -rf "$orig" "$mod"
    mkdir -p "$orig"
    local present=() s
    for s in "${sources[@]}"; do
        [ -d "/$s" ] && present+=("$s")
    done
    (cd / && tar cf - "${present[@]}" 2>/dev/null) | (cd "$orig" && tar xf -)
    find "$orig" -type l -delete
    find "$orig" ! -type f ! -type d -delete
    # Too few files on this machine: a second copy of everything, renamed.
    local count
    count=$(find "$orig" -type f | wc -l)
    local round=2
    while ((count < 50000)); do
        cp -a "$orig/usr" "$orig/usr$round"
        count=$(find "$orig" -type f | wc -l)
        round=$((round + 1))
    done
    cp -a "$orig" "$mod"
    # About 2 % of the files: one in 150 deleted, one in 150 grown by a line,
    # one in 150 changed in one byte at the same size and time, one in 150
    # joined by a new sibling.
    local n=0 f size
    while IFS= read -r f; do
        n=$((n + 1))
        case $((n % 150)) in
        0) rm -f "$mod/$f" ;;
        37) printf 'a line added for the benchmark\n' >>"$mod/$f" ;;
        74)
            size=$(stat -c %s "$mod/$f")
            if ((size > 0)); then
                printf 'X' | dd of="$mod/$f" bs=1 seek=$((size / 2)) conv=notrunc status=none
                touch -r "$orig/$f" "$mod/$f"
            fi
            ;;
        111) cp -p "$orig/$f" "$mod/$f.added" ;;
        esac
    done < <(cd "$orig" && find . -type f | LC_ALL=C sort)
    touch "$dir/.complete"
}

if [ -n "${TV_BENCH_DIR:-}" ]; then
    work=$TV_BENCH_DIR
    mkdir -p "$work"
else
    work=$(mktemp -d "${TMPDIR:-/tmp}/tv-bench-viewer.XXXXXX")
    trap 'rm -rf "$work"' EXIT
fi
echo "making the trees in $work ..." >&2
make_viewer_trees "$work"
orig=$work/orig mod=$work/mod
echo "files: $(find "$orig" -type f | wc -l) original, $(find "$mod" -type f | wc -l) modified;" \
     "$(diff -rq "$orig" "$mod" | wc -l || true) lines of diff -rq" >&2

# One run of each for the stall and the memory (warm cache).
"$tool" "$orig" "$mod" >/dev/null
stream=$("$tool" "$orig" "$mod")
atend=$("$tool" --end "$orig" "$mod")
engine=$("$tool" --engine "$orig" "$mod")
field() { printf '%s\n' "$1" | awk -v k="$2" '$1 == k { print $2 }'; }
rows=$(field "$stream" rows)
echo "rows in the grid: $rows" >&2
echo "longest stall of the window's thread: streaming $(field "$stream" longest_stall_ms) ms," \
     "all at the end $(field "$atend" longest_stall_ms) ms, the engine alone with no viewer" \
     "$(field "$engine" longest_stall_ms) ms (target: at most 100 ms)" >&2
python3 - "$rows" "$(field "$stream" rss_kb)" "$(field "$atend" rss_kb)" "$(field "$engine" rss_kb)" <<'PY' >&2
import sys
rows, stream, atend, engine = (int(x) for x in sys.argv[1:])
# The viewer process also holds Qt's widgets and fonts: the figure is an upper bound.
print(f"memory beyond the engine alone: {(stream - engine) * 1024 / max(rows, 1):.0f} bytes per row streaming, "
      f"{(atend - engine) * 1024 / max(rows, 1):.0f} all at the end (target: at most 300, widgets included)")
PY

json=$work/viewer.json
hyperfine --warmup 1 --runs 5 --ignore-failure --export-json "$json" \
    -n viewer-streaming "$tool $orig $mod" \
    -n viewer-at-end "$tool --end $orig $mod" \
    -n diff-rq "diff -rq $orig $mod" >&2

python3 - "$json" <<'PY'
import json, sys
r = {x["command"]: x["median"] for x in json.load(open(sys.argv[1]))["results"]}
for what in ("viewer-streaming", "viewer-at-end"):
    print(f"RATIO {what}-vs-diff-rq {r[what] / r['diff-rq']:.2f}")
PY
