#!/usr/bin/env bash
# Times a comparison from the command line to a side-by-side HTML report,
# from start to exit, against the pipeline users pick for HTML diff reports:
#   diff -u A B | diff2html -i stdin -s side -F out.html
# on a 100,000-line pair with about 1,000 differences; then the file viewer's
# all-in-one render of a 100,000-paragraph pair (bench_render --aio).
#
#   bench/batch/run.sh [BUILD_DIR] [LINES]
#
# diff2html-cli comes from npm and is installed into bench/batch/node_modules
# (not tracked) the first time; `make test` does not need it. The ratio line
# is ours over the pipeline's: below 1 we are faster.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="$(cd "${1:-$root/build}" && pwd)"
lines="${2:-100000}"
tool="$build/tallyvane"
[ -x "$tool" ] || { echo "build tallyvane first ($tool)" >&2; exit 1; }
command -v hyperfine >/dev/null || "$root/scripts/install-deps" --bench
command -v npm >/dev/null || { echo "npm is needed for diff2html-cli (apt-get install npm)" >&2; exit 1; }
d2h="$here/node_modules/.bin/diff2html"
if [ ! -x "$d2h" ]; then
  echo "installing diff2html-cli into $here/node_modules ..." >&2
  (cd "$here" && npm install --no-audit --no-fund --loglevel=error >&2)
fi

work="$(mktemp -d "${TMPDIR:-/tmp}/tv-bench-batch.XXXXXX")"
trap 'rm -rf "$work"' EXIT
python3 "$here/make-inputs.py" "$work" "$lines"
a="$work/original.txt" b="$work/modified.txt"
echo "input: $(wc -l < "$a") and $(wc -l < "$b") lines, $(diff "$a" "$b" | grep -c '^[0-9]' || true) differences by diff" >&2

# A first start of its own: settings and reports in the work folder, no
# display, so the run is the batch run a server would do.
ours="env -u DISPLAY -u WAYLAND_DISPLAY XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data $tool $a $b -T $work/ours.htm -R1 -F2 -X"
peer="diff -u $a $b | $d2h -i stdin -s side -F $work/peer.html"
bash -c "$ours" && bash -c "$peer"
[ -s "$work/ours.htm" ] && [ -s "$work/peer.html" ] || { echo "a report is missing" >&2; exit 1; }
echo "reports: ours $(stat -c %s "$work/ours.htm") bytes, diff2html $(stat -c %s "$work/peer.html") bytes" >&2

json="$work/batch.json"
hyperfine --style basic --warmup 2 --runs 10 --export-json "$json" \
  -n "tallyvane -T -F2 -X" "$ours" -n "diff -u | diff2html -s side" "$peer" >&2
python3 - "$json" <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))["results"]
ours, peer = r[0], r[1]
print(f"mean seconds: tallyvane {ours['mean']:.3f} (±{ours['stddev']:.3f}), "
      f"diff -u | diff2html {peer['mean']:.3f} (±{peer['stddev']:.3f})")
print(f"RATIO batch-html-vs-diff2html {ours['mean'] / peer['mean']:.2f}")
PY

render="$build/bench/render/bench_render"
if [ -x "$render" ]; then
  echo "all-in-one render of a pair of $lines paragraphs (ms):"
  QT_QPA_PLATFORM=offscreen "$render" --aio "$lines" 2>/dev/null
else
  echo "(build bench_render for the all-in-one render time)" >&2
fi
