#!/usr/bin/env bash
# Line comparison against the peers: GNU diff, diff -d (minimal) and
# git diff --no-index, on file pairs made from real text on this machine
# (C headers under /usr/include, scripts under /usr/share) with
# deterministic edits: changed words, deleted and inserted blocks, moved
# blocks. Prints, per pair and tool, the median wall and CPU time, the
# median peak memory, the number of changed lines, and the times as ratios
# to GNU diff's. On a shared machine the CPU column is the steadier one.
#
#   bench/engine.sh [--build DIR] [--work DIR] [--reps N] [--quick] [--only PAIR]
#
# --quick leaves out the million-line pair; --only runs one pair (10k, 100k,
# 100k-heavy, 1M, unrelated). The pairs are written under
# --work (default: $TMPDIR/tallyvane-bench/engine) and reused when present.
# Run it at low priority on a shared machine: nice -n 10 bench/engine.sh
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build="$here/build"
work="${TMPDIR:-/tmp}/tallyvane-bench/engine"
reps=5
quick=0
only=""
while [ $# -gt 0 ]; do
  case "$1" in
    --build) build=$2; shift 2 ;;
    --work) work=$2; shift 2 ;;
    --reps) reps=$2; shift 2 ;;
    --quick) quick=1; shift ;;
    --only) only=$2; shift 2 ;;
    *) echo "usage: $0 [--build DIR] [--work DIR] [--reps N] [--quick] [--only PAIR]" >&2; exit 2 ;;
  esac
done
tool="$build/tallyvane-diff"
if [ ! -x "$tool" ]; then
  echo "build tallyvane-diff first: cmake --build $build --target tallyvane-diff" >&2
  exit 2
fi
mkdir -p "$work"

exec python3 - "$tool" "$work" "$reps" "$quick" "$only" <<'PY'
import os, random, re, subprocess, sys, time, statistics

tool, work, reps, quick, only = sys.argv[1], sys.argv[2], int(sys.argv[3]), sys.argv[4] == "1", sys.argv[5]

def source_lines(roots, patterns, limit, skip=0):
    """Lines of the matching files under roots, in sorted path order."""
    files = []
    for root in roots:
        for d, _, names in os.walk(root):
            for n in names:
                if any(n.endswith(p) for p in patterns):
                    files.append(os.path.join(d, n))
    files.sort()
    out = []
    for f in files:
        try:
            with open(f, "rb") as fh:
                data = fh.read()
        except OSError:
            continue
        for line in data.split(b"\n"):
            if skip:
                skip -= 1
                continue
            out.append(line)
            if len(out) >= limit:
                return out
    return out

WORD = re.compile(rb"[A-Za-z_][A-Za-z0-9_]*")

def mutate(lines, rate, seed, donor):
    """A revision of `lines`: about `rate` of the lines touched by edits."""
    rng = random.Random(seed)
    out, moves = [], []
    i, n = 0, len(lines)
    while i < n:
        while moves and moves[0][0] <= i:
            out.extend(moves.pop(0)[1])
        r = rng.random()
        if r < rate * 0.55:                      # a changed word
            line = lines[i]
            words = list(WORD.finditer(line))
            if words:
                w = rng.choice(words)
                line = line[:w.start()] + b"edited_" + w.group() + line[w.end():]
            else:
                line = line + b" /* edited */"
            out.append(line)
            i += 1
        elif r < rate * 0.70:                    # a deleted block
            i += rng.randint(1, 20)
        elif r < rate * 0.85:                    # an inserted block
            k = rng.randrange(len(donor) - 40)
            out.extend(donor[k:k + rng.randint(1, 30)])
            out.append(lines[i])
            i += 1
        elif r < rate:                           # a block moved further down
            size = rng.randint(5, 40)
            target = i + size + rng.randint(50, 3000)
            moves.append((target, lines[i:i + size]))
            moves.sort(key=lambda m: m[0])
            i += size
        else:
            out.append(lines[i])
            i += 1
    for _, block in moves:
        out.extend(block)
    return out

def write(path, lines):
    with open(path, "wb") as fh:
        fh.write(b"\n".join(lines) + b"\n")

def make_pairs():
    base = source_lines(["/usr/include"], [".h"], 1_100_000)
    donor = source_lines(["/usr/share"], [".py", ".pl", ".pm", ".sh"], 200_000)
    if len(base) < 1_000_000 or len(donor) < 100_000:
        sys.exit("not enough text on this machine under /usr/include and /usr/share")
    pairs = []
    cases = [("10k", 10_000, 0.01), ("100k", 100_000, 0.01), ("100k-heavy", 100_000, 0.35)]
    if not quick:
        cases.append(("1M", 1_000_000, 0.005))
    for seed, (name, size, rate) in enumerate(cases, 1):
        a = os.path.join(work, name + "-a.txt")
        b = os.path.join(work, name + "-b.txt")
        if not (os.path.exists(a) and os.path.exists(b)):
            orig = base[:size]
            write(a, orig)
            write(b, mutate(orig, rate, seed, donor))
        pairs.append((name, a, b))
    a = os.path.join(work, "unrelated-a.txt")
    b = os.path.join(work, "unrelated-b.txt")
    if not (os.path.exists(a) and os.path.exists(b)):
        write(a, base[200_000:300_000])
        write(b, donor[:100_000])
    pairs.append(("unrelated", a, b))
    return pairs

MEMFILE = os.path.join(work, "peak.txt")

def run_once(cmd):
    """Wall seconds, CPU seconds and peak MiB of one run. GNU time reports
    the peak of the command alone (a child forked from this large process
    would inherit its size in the count); wait4 on time gives the CPU of
    both, time's own being negligible."""
    env = dict(os.environ, GIT_PAGER="cat", LC_ALL="C")
    t0 = time.perf_counter()
    p = subprocess.Popen(["/usr/bin/time", "-f", "%M %x", "-o", MEMFILE] + cmd,
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=env)
    _, status, usage = os.wait4(p.pid, 0)
    t1 = time.perf_counter()
    peak_kib, code = open(MEMFILE).read().split()[-2:]
    return t1 - t0, usage.ru_utime + usage.ru_stime, int(peak_kib) / 1024.0, int(code)

def changed_lines(cmd, git):
    env = dict(os.environ, GIT_PAGER="cat", LC_ALL="C")
    out = subprocess.run(cmd, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=env).stdout
    n = 0
    in_hunk = False
    for line in out.split(b"\n"):
        if git:
            if line.startswith(b"@@"):
                in_hunk = True
            elif in_hunk and line[:1] in (b"+", b"-"):
                n += 1
        elif line[:2] in (b"< ", b"> ") or line in (b"<", b">"):
            n += 1
    return n

tools = [
    ("tallyvane-diff", lambda a, b: [tool, a, b], False),
    ("tallyvane-diff --faster", lambda a, b: [tool, "--faster", a, b], False),
    ("diff", lambda a, b: ["diff", a, b], False),
    ("diff -d", lambda a, b: ["diff", "-d", a, b], False),
    ("git diff --no-index", lambda a, b: ["git", "--no-pager", "diff", "--no-index", "--no-color", a, b], True),
]

pairs = make_pairs()
print(f"{'pair':<11} {'lines':>8} {'tool':<24} {'wall s':>8} {'cpu s':>8} {'peak MiB':>9} {'changed':>8}"
      f" {'wall/diff':>9} {'cpu/diff':>8}")
for name, a, b in pairs:
    if only and name != only:
        continue
    nlines = sum(1 for _ in open(a, "rb"))
    results = {}
    for label, mk, git in tools:
        cmd = mk(a, b)
        r = reps if name != "1M" else max(3, reps // 2)
        if label == "diff -d" and name in ("100k-heavy", "unrelated"):
            r = min(r, 3)  # minutes per run on heavy edits
        times, cpus, mems = [], [], []
        for _ in range(r):
            t, u, m, code = run_once(cmd)
            if code not in (0, 1):
                sys.exit(f"{label} failed on {name} (status {code})")
            times.append(t)
            cpus.append(u)
            mems.append(m)
        results[label] = (statistics.median(times), statistics.median(cpus),
                          statistics.median(mems), changed_lines(cmd, git))
    ref_t, ref_u = results["diff"][0], results["diff"][1]
    for label, _, _ in tools:
        t, u, m, c = results[label]
        print(f"{name:<11} {nlines:>8} {label:<24} {t:>8.3f} {u:>8.3f} {m:>9.1f} {c:>8}"
              f" {t / ref_t:>9.2f} {u / max(ref_u, 1e-6):>8.2f}")
    sys.stdout.flush()
PY
