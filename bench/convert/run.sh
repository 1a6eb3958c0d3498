#!/usr/bin/env bash
# Times tallyvane-convert against the tools a user would otherwise use on the
# same large documents, and prints each peer's time over ours (above 1: we
# are faster). Inputs come from make-inputs.py (written without an office
# suite); peers come from scripts/install-deps --bench.
#
#   bench/convert/run.sh [BUILD_DIR] [SCALE]
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="${1:-$root/build}"
scale="${2:-1}"
tool="$build/tallyvane-convert"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

"$root/scripts/install-deps" --bench
[ -x "$tool" ] || { echo "build tallyvane-convert first ($tool)" >&2; exit 1; }
# The Debian interpreter, which sees the Debian ReportLab package.
/usr/bin/python3 "$here/make-inputs.py" "$work/in" "$scale"
ls -l "$work/in" | awk 'NR>1 {printf "input %-12s %10d bytes\n", $9, $5}'

bench() {  # name, ours, peer name, peer command
  local name=$1 ours=$2 peer=$3 theirs=$4
  hyperfine --style none --warmup 1 --runs 5 --export-json "$work/$name.json" \
    -n "tallyvane-convert" "$ours" -n "$peer" "$theirs" >/dev/null
  python3 - "$work/$name.json" "$name" <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))["results"]
ours, peer = r[0], r[1]
print(f"{sys.argv[2]:6} ours {ours['mean']:7.3f} s (±{ours['stddev']:.3f})   "
      f"{peer['command']:>12} {peer['mean']:7.3f} s (±{peer['stddev']:.3f})   ratio peer/ours {peer['mean'] / ours['mean']:5.2f}")
PY
}

in="$work/in"
bench docx "$tool $in/large.docx $work/docx.txt --type 2" docx2txt "docx2txt $in/large.docx $work/docx2txt.txt"
bench pdf  "$tool $in/large.pdf $work/pdf.txt" pdftotext "pdftotext -enc UTF-8 $in/large.pdf $work/pdftotext.txt"
bench xlsx "$tool $in/large.xlsx $work/xlsx.csv" xlsx2csv "xlsx2csv $in/large.xlsx $work/xlsx2csv.csv"
bench ods  "$tool $in/large.ods $work/ods.csv" ssconvert "ssconvert -T Gnumeric_stf:stf_csv $in/large.ods $work/ssconvert.csv"
