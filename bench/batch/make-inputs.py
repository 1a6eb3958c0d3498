#!/usr/bin/env python3
"""Writes a pair of text files for the batch benchmark: ORIGINAL of LINES lines
of prose-like text and MODIFIED with about one edited section in a hundred
lines (a changed word in most, a deleted line, an added line, two changed
lines), so that a comparison finds about LINES / 100 differences.

    make-inputs.py OUT_DIR [LINES]
"""
import os
import random
import sys

out = sys.argv[1]
lines = int(sys.argv[2]) if len(sys.argv) > 2 else 100000
os.makedirs(out, exist_ok=True)
rng = random.Random(20240311)
words = ("contract clause party notice payment invoice schedule delivery warehouse routing "
         "report assessment term renewal supplier customer quantity price total order").split()

def line(i):
    picked = " ".join(rng.choice(words) for _ in range(8))
    return f"{i + 1}. The {picked} stands as agreed in section {i // 100 + 1}."

original, modified = [], []
for i in range(lines):
    text = line(i)
    original.append(text)
    if i % 100 != 42:
        modified.append(text)
        continue
    kind = (i // 100) % 10
    if kind == 3:                      # the line is deleted
        continue
    if kind == 6:                      # a line is added behind it
        modified.append(text)
        modified.append(f"An added sentence behind line {i + 1}, on delivery times.")
        continue
    modified.append(text.replace(" stands ", " stands amended ", 1))

with open(os.path.join(out, "original.txt"), "w", encoding="utf-8") as f:
    f.write("\n".join(original) + "\n")
with open(os.path.join(out, "modified.txt"), "w", encoding="utf-8") as f:
    f.write("\n".join(modified) + "\n")
