#!/usr/bin/env python3
"""Installs the build into a staging folder and checks what a desktop, a
package manager and a user will find there: the files and only those, the
desktop entry, the AppStream metainfo and the manual pages as their
validators see them, and the installed programs themselves."""

import argparse
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

PROGRAMS = ["tallyvane", "tallyvane-diff", "tallyvane-convert"]
# Programs the installed ones start, kept out of the users' PATH.
HELPERS = ["libexec/tallyvane/tallyvane-xls-reader"]
ICON_SIZES = [16, 22, 24, 32, 48, 64, 128, 256, 512]

failures = []


def check(ok, what):
    if not ok:
        failures.append(what)
    return ok


def run(cmd, **kw):
    env = dict(os.environ)
    # The installed programs must behave on a machine without a display.
    env.pop("DISPLAY", None)
    env.pop("WAYLAND_DISPLAY", None)
    env.pop("QT_QPA_PLATFORM", None)
    env.update({"MANPAGER": "cat", "MANWIDTH": "80", "LC_ALL": "C.UTF-8"})
    env.update(kw.pop("env", {}))
    return subprocess.run(cmd, capture_output=True, text=True, env=env, timeout=120, **kw)


def png_size(path):
    with open(path, "rb") as f:
        head = f.read(24)
    if head[:8] != b"\x89PNG\r\n\x1a\n":
        return None
    return struct.unpack(">II", head[16:24])


def desktop_entry(path):
    entry = {}
    with open(path, encoding="utf-8") as f:
        for line in f:
            if "=" in line and not line.startswith("#"):
                key, value = line.rstrip("\n").split("=", 1)
                entry[key] = value
    return entry


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--build", required=True)
    ap.add_argument("--version", required=True)
    args = ap.parse_args()

    for tool in ["desktop-file-validate", "appstreamcli", "man"]:
        if not shutil.which(tool):
            print(f"{tool} is missing: run scripts/install-deps", file=sys.stderr)
            return 1

    with tempfile.TemporaryDirectory(prefix="tv-install-") as stage:
        prefix = os.path.join(stage, "usr")
        r = run(["cmake", "--install", args.build, "--prefix", prefix])
        if not check(r.returncode == 0, f"cmake --install failed:\n{r.stdout}{r.stderr}"):
            return report()

        installed = set()
        for root, _, files in os.walk(prefix):
            for name in files:
                installed.add(os.path.relpath(os.path.join(root, name), prefix))

        # The product and nothing else: no libraries, headers or test
        # programs slip into a package.
        metainfo = [f for f in installed if f.startswith("share/metainfo/")]
        expected = {f"bin/{p}" for p in PROGRAMS} | set(HELPERS)
        expected |= {f"share/man/man1/{p}.1.gz" for p in PROGRAMS}
        expected |= {"share/applications/tallyvane.desktop",
                     "share/icons/hicolor/scalable/apps/tallyvane.svg",
                     "share/doc/tallyvane/manual/index.html"}
        expected |= {f"share/icons/hicolor/{s}x{s}/apps/tallyvane.png" for s in ICON_SIZES}
        check(len(metainfo) == 1 and metainfo[0].endswith(".metainfo.xml"),
              f"one metainfo file expected, found {metainfo}")
        expected |= set(metainfo)
        check(not (expected - installed), f"not installed: {sorted(expected - installed)}")
        check(not (installed - expected), f"installed but not expected: {sorted(installed - expected)}")
        for path in [os.path.join(prefix, "bin", p) for p in PROGRAMS] + [os.path.join(prefix, h) for h in HELPERS]:
            check(os.access(path, os.X_OK), f"{path} is not executable")

        for s in ICON_SIZES:
            png = os.path.join(prefix, f"share/icons/hicolor/{s}x{s}/apps/tallyvane.png")
            if os.path.exists(png):
                check(png_size(png) == (s, s), f"{png} is {png_size(png)}, not {s}x{s}")

        # The desktop entry: valid, and everything it names is installed.
        desktop = os.path.join(prefix, "share/applications/tallyvane.desktop")
        if os.path.exists(desktop):
            r = run(["desktop-file-validate", desktop])
            check(r.returncode == 0 and not r.stdout.strip(),
                  f"desktop-file-validate: {r.stdout}{r.stderr}")
            entry = desktop_entry(desktop)
            program = entry.get("Exec", "").split()[0] if entry.get("Exec") else ""
            check(program in PROGRAMS, f"Exec names {program!r}, which is not installed")
            check(entry.get("Icon") == "tallyvane", f"Icon is {entry.get('Icon')!r}")

        # The metainfo: valid without the network, and it points at the
        # installed desktop entry and programs.
        for m in metainfo:
            path = os.path.join(prefix, m)
            r = run(["appstreamcli", "validate", "--no-net", path])
            check(r.returncode == 0, f"appstreamcli validate: {r.stdout}{r.stderr}")
            root = ET.parse(path).getroot()
            launch = root.findtext("launchable")
            check(launch and os.path.exists(os.path.join(prefix, "share/applications", launch)),
                  f"metainfo launches {launch!r}, which is not installed")
            binaries = [b.text for b in root.iter("binary")]
            check(sorted(binaries) == sorted(PROGRAMS), f"metainfo provides {binaries}")
            releases = [r.get("version") for r in root.iter("release")]
            check(args.version in releases, f"metainfo releases {releases} miss {args.version}")

        # The manual pages: no warnings from man, and the version of the build.
        for p in PROGRAMS:
            page = os.path.join(prefix, f"share/man/man1/{p}.1.gz")
            if not os.path.exists(page):
                continue
            r = run(["man", "--warnings", "-l", page])
            check(r.returncode == 0 and not r.stderr.strip(), f"man -l --warnings {p}: {r.stderr}")
            check(p in r.stdout and f"Tallyvane {args.version}" in r.stdout,
                  f"{p}.1 does not show its name and version {args.version}")

        # One version everywhere.
        for p in PROGRAMS:
            r = run([os.path.join(prefix, "bin", p), "--version"])
            check(r.returncode == 0 and r.stdout.strip() == f"{p} {args.version}",
                  f"{p} --version printed {r.stdout!r} (status {r.returncode})")

        # -? without a display says where the installed manual is, and the
        # manual is there.
        r = run([os.path.join(prefix, "bin", "tallyvane"), "-?"], cwd=stage,
                env={"XDG_CONFIG_HOME": stage, "XDG_DATA_HOME": stage, "XDG_RUNTIME_DIR": stage})
        m = re.search(r"The manual: file://(\S+)#command-line", r.stdout)
        check(r.returncode == 0 and "Usage: tallyvane" in r.stdout and m is not None,
              f"tallyvane -? printed {r.stdout!r} {r.stderr!r} (status {r.returncode})")
        if m:
            manual = os.path.realpath(m.group(1))
            check(manual == os.path.realpath(os.path.join(prefix, "share/doc/tallyvane/manual/index.html")),
                  f"tallyvane -? points at {manual}")

    return report()


def report():
    for f in failures:
        print("FAIL:", f)
    if not failures:
        print("installed tree is complete and valid")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
