#!/usr/bin/env bash
# How long the file viewer takes to show a comparison, as a user sees it:
# the real program started on a pair under a virtual display, timed from its
# start to the last moment it used the processor (it has then drawn the
# comparison and sits idle), with its peak memory. kdiff3 and meld run on
# the same pairs in the same run; the ratios are ours over theirs (below 1
# we are quicker). Pairs of 10,000, 100,000 and 1,000,000 lines of source
# text with light scattered edits, and a 50 MB, 1,340,000-line pair with
# about 1,800 differences ("50MB" in --sizes; the peers are left out of
# that one, where each takes minutes). Last, the batch HTML report of the
# 50 MB pair, from start to exit.
#
#   bench/gui-settle.sh [--build DIR] [--work DIR] [--sizes "10000 100000 50MB"] [--no-peers]
#                       [--baseline DIR] [--no-batch]
#
# --baseline times a second build (an older commit's, say) on the same pairs
# in the same run, so that a change is measured against what it replaces on
# an equally loaded machine; the ratios stay ours over the peers'.
#
# The processor seconds it used until then are shown too: on a machine that
# others load, wall time is mostly waiting, and processor time says more.
#
# A process counts as settled once its processor time has not grown by more
# than SLACK ticks (default 2) for QUIET seconds (default 3): a blinking caret
# wakes an idle program now and then, and over a large document each wake
# costs a tick often enough to keep a stricter rule from ever calling it idle.
# A run that never settles is stopped after
# LIMIT seconds (default 300) and shown as such. Run it at low priority on a
# shared machine: nice -n 10 bench/gui-settle.sh
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build="$here/build"
work="${TMPDIR:-/tmp}/tallyvane-bench/gui"
sizes="10000 100000 1000000 50MB"
peers=1
baseline=""
batch=1
while [ $# -gt 0 ]; do
  case "$1" in
    --build) build=$2; shift 2 ;;
    --work) work=$2; shift 2 ;;
    --sizes) sizes=$2; shift 2 ;;
    --no-peers) peers=0; shift ;;
    --baseline) baseline=$2; shift 2 ;;
    --no-batch) batch=0; shift ;;
    *) echo "usage: $0 [--build DIR] [--work DIR] [--sizes LIST] [--no-peers] [--baseline DIR] [--no-batch]" >&2; exit 2 ;;
  esac
done
[ -x "$build/tallyvane" ] || { echo "build tallyvane first: cmake --build $build --target tallyvane" >&2; exit 2; }
[ -z "$baseline" ] || [ -x "$baseline/tallyvane" ] || { echo "no tallyvane in $baseline" >&2; exit 2; }
"$here/scripts/install-deps" --bench
mkdir -p "$work"

exec python3 - "$build/tallyvane" "$work" "$sizes" "$peers" "${baseline:+$baseline/tallyvane}" "$batch" <<'PY'
import os, random, shutil, signal, subprocess, sys, tempfile, time

tool, work, sizes, peers = sys.argv[1], sys.argv[2], sys.argv[3].split(), sys.argv[4] == "1"
baseline, batch = sys.argv[5], sys.argv[6] == "1"
QUIET = float(os.environ.get("QUIET", "3"))
LIMIT = float(os.environ.get("LIMIT", "300"))
SLACK = int(os.environ.get("SLACK", "2"))
TICK = os.sysconf("SC_CLK_TCK")

def source_lines(limit):
    files = []
    for d, _, names in os.walk("/usr/include"):
        files += [os.path.join(d, n) for n in names if n.endswith(".h")]
    files.sort()
    out = []
    while len(out) < limit:
        for f in files:
            try:
                out += open(f, "rb").read().split(b"\n")
            except OSError:
                continue
            if len(out) >= limit:
                break
    return out[:limit]

def edited(lines, every, seed):
    """A revision with a changed, a deleted or an added line about every `every` lines."""
    rng = random.Random(seed)
    out = []
    for i, line in enumerate(lines):
        r = rng.randrange(every)
        if r == 0:
            out.append(line + b" /* edited */")
        elif r == 1:
            continue
        elif r == 2:
            out += [line, b"/* added line %d */" % i]
        else:
            out.append(line)
    return out

def pair(name, lines, every, seed):
    a, b = os.path.join(work, name + "-a.txt"), os.path.join(work, name + "-b.txt")
    if not (os.path.exists(a) and os.path.exists(b)):
        base = source_lines(lines)
        open(a, "wb").write(b"\n".join(base) + b"\n")
        open(b, "wb").write(b"\n".join(edited(base, every, seed)) + b"\n")
    return a, b

def big_pair():
    """The 50 MB pair: 1,340,000 lines, a change, deletion or addition about every 2,235 lines."""
    a, b = os.path.join(work, "50MB-a.txt"), os.path.join(work, "50MB-b.txt")
    if not (os.path.exists(a) and os.path.exists(b)):
        base = source_lines(1_340_000)
        open(a, "wb").write(b"\n".join(base) + b"\n")
        open(b, "wb").write(b"\n".join(edited(base, 2235, 50)) + b"\n")
    return a, b

def cpu_ticks(pid):
    """Processor ticks of the process and its threads, or None once it is gone."""
    try:
        f = open(f"/proc/{pid}/stat").read().rsplit(")", 1)[1].split()
        return int(f[11]) + int(f[12])
    except (OSError, IndexError):
        return None

def peak_mib(pid):
    try:
        for line in open(f"/proc/{pid}/status"):
            if line.startswith("VmHWM:"):
                return int(line.split()[1]) / 1024.0
    except OSError:
        pass
    return 0.0

def settle(cmd, env):
    """Seconds from start to the last processor use, processor seconds, and the peak MiB."""
    home = tempfile.mkdtemp(prefix="tv-gui-home.")
    env = dict(env, HOME=home, XDG_CONFIG_HOME=home + "/config", XDG_DATA_HOME=home + "/data",
               XDG_CACHE_HOME=home + "/cache")
    t0 = time.monotonic()
    p = subprocess.Popen(cmd, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                         start_new_session=True)
    last, last_change, peak, settled = -1, t0, 0.0, False
    while True:
        time.sleep(0.05)
        now = time.monotonic()
        c = cpu_ticks(p.pid)
        if c is None or p.poll() is not None:
            break
        peak = max(peak, peak_mib(p.pid))
        if c - last > SLACK or last < 0:
            last, last_change = c, now
        elif now - last_change >= QUIET:
            settled = True
            break
        if now - t0 > LIMIT:
            break
    try:
        os.killpg(p.pid, signal.SIGTERM)
        p.wait(10)
    except (ProcessLookupError, subprocess.TimeoutExpired):
        try:
            os.killpg(p.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        p.wait()
    shutil.rmtree(home, ignore_errors=True)
    return (last_change - t0 if settled else None), max(last, 0) / TICK, peak

def start_display():
    for n in range(90, 120):
        if not os.path.exists(f"/tmp/.X{n}-lock"):
            x = subprocess.Popen(["Xvfb", f":{n}", "-screen", "0", "1600x1000x24", "-nolisten", "tcp"],
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(1.5)
            if x.poll() is None:
                return x, f":{n}"
    sys.exit("no free display for Xvfb")

xvfb, display = start_display()
env = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb")
env.pop("WAYLAND_DISPLAY", None)
try:
    tools = [("tallyvane", lambda a, b: [tool, a, b])]
    if baseline:
        tools += [("baseline", lambda a, b: [baseline, a, b])]
    if peers:
        tools += [("kdiff3", lambda a, b: ["kdiff3", a, b]), ("meld", lambda a, b: ["meld", a, b])]
    print(f"{'pair':<10} {'tool':<10} {'settled s':>10} {'cpu s':>7} {'peak MiB':>9} {'ours/peer':>10} {'cpu ratio':>10}")
    for size in sizes:
        if size == "50MB":
            name = size
            a, b = big_pair()
        else:
            lines = int(size)
            name = f"{lines // 1000}k" if lines < 1_000_000 else f"{lines // 1_000_000}M"
            a, b = pair(name, lines, 100, lines)
        ours = ours_cpu = None
        for label, mk in tools:
            if size == "50MB" and label in ("kdiff3", "meld"):
                continue
            secs, cpu, peak = settle(mk(a, b), env)
            shown = f"{secs:10.2f}" if secs is not None else f"{'>' + str(int(LIMIT)):>10}"
            ratio = cpu_ratio = ""
            if label == "tallyvane":
                ours, ours_cpu = secs, cpu
            elif label != "baseline":
                if ours is not None and secs:
                    ratio = f"{ours / secs:10.2f}"
                if ours_cpu and cpu:
                    cpu_ratio = f"{ours_cpu / cpu:10.2f}"
            print(f"{name:<10} {label:<10} {shown} {cpu:7.2f} {peak:9.0f} {ratio:>10} {cpu_ratio:>10}", flush=True)
finally:
    xvfb.terminate()
    xvfb.wait()

if not batch:
    sys.exit(0)

# The batch report of the 50 MB pair: start to exit, and peak memory.
a, b = big_pair()
report = os.path.join(work, "50MB-report.htm")
home = tempfile.mkdtemp(prefix="tv-batch-home.")
benv = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/config", XDG_DATA_HOME=home + "/data",
            QT_QPA_PLATFORM="offscreen")
mem = os.path.join(work, "peak.txt")
size = os.path.getsize(a) / 1e6
for label, exe in [("tallyvane", tool)] + ([("baseline", baseline)] if baseline else []):
    t0 = time.monotonic()
    code = subprocess.call(["/usr/bin/time", "-f", "%U %S %M", "-o", mem, exe, a, b, "-T", report, "-R1", "-X"],
                           env=benv, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    secs = time.monotonic() - t0
    user, system, peak = open(mem).read().split()[-3:]
    print(f"{label}: batch HTML report of the {size:.0f} MB pair: {secs:.2f} s "
          f"({float(user) + float(system):.2f} s processor), peak {int(peak) / 1024:.0f} MiB, exit status {code}")
shutil.rmtree(home, ignore_errors=True)
PY
