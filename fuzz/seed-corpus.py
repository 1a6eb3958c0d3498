#!/usr/bin/env python3
"""Writes seed inputs for the document, spreadsheet and CSV fuzz targets from
the test fixtures, in the input layouts the targets expect (a mode byte, then
a raw file or package members separated by 01 02)."""
import os
import sys
import zipfile

data = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "data")
out = sys.argv[1] if len(sys.argv) > 1 else "fuzz-corpus"
SEP = b"\x01\x02"


def put(target, name, payload):
    d = os.path.join(out, target)
    os.makedirs(d, exist_ok=True)
    with open(os.path.join(d, name), "wb") as f:
        f.write(payload)


def members(path, names):
    with zipfile.ZipFile(os.path.join(data, path)) as z:
        return SEP.join(z.read(n) if n in z.namelist() else b"" for n in names)


def raw(path):
    with open(os.path.join(data, path), "rb") as f:
        return f.read()


for v in ("original", "modified"):
    put("docx", f"raw-{v}", b"\x00" + raw(f"letter-{v}.docx"))
    put("docx", f"xml-{v}", b"\x01" + members(f"letter-{v}.docx", ["word/document.xml", "word/styles.xml"]))
    put("docx", f"odt-{v}", b"\x02" + members(f"letter-{v}.odt", ["content.xml", "styles.xml"]))
    put("docx", f"html-{v}", b"\x04" + raw(f"letter-{v}.html"))
    put("spreadsheet", f"raw-{v}", b"\x00" + raw(f"book-{v}.xlsx"))
    put("spreadsheet", f"xml-{v}", b"\x01" + members(f"book-{v}.xlsx", [
        "xl/worksheets/sheet1.xml", "xl/sharedStrings.xml", "xl/styles.xml", "xl/workbook.xml",
        "xl/_rels/workbook.xml.rels"]))
    put("spreadsheet", f"ods-{v}", b"\x02" + members(f"book-{v}.ods", ["content.xml"]))
for name in os.listdir(data):
    if name.startswith("book-original") and name.endswith(".expected.txt"):
        put("csv", name, b"1-3, 5|#,##0.00\n" + raw(name))

# The readers and parsers that take their input as it stands.
for v in ("original", "modified"):
    put("rtf", f"letter-{v}", raw(f"letter-{v}.rtf"))
    put("xls", f"book-{v}", raw(f"book-{v}.xls"))
    put("pdf", f"letter-{v}", raw(f"letter-{v}.pdf"))
    put("plaintext", f"latin1-{v}", raw(f"latin1-{v}.txt"))
    put("plaintext", f"utf16le-{v}", raw(f"utf16le-{v}.txt"))
    put("plaintext", f"crlf-{v}", raw(f"text-crlf-{v}.txt"))
put("pdf", "password", raw("letter-password.pdf"))

# Line diff: options, horizon and the split point, then both texts.
for i, (a, b) in enumerate([("text-lf-original.txt", "text-lf-modified.txt"),
                            ("text-crlf-original.txt", "text-crlf-modified.txt"),
                            ("letter-original.html", "letter-modified.html")]):
    one, two = raw(a), raw(b)
    cut = len(one) * 255 // max(1, len(one) + len(two))
    for flags in (0, 1, 2, 7):
        put("linediff", f"pair{i}-{flags}", bytes([flags, 3, cut]) + one + two)

put("ini", "settings", b"[File Compare]\nsFileOriginal=/home/a/x.txt\nbIgnoreCase=1\n\n[MRU]\nItem1=a\r\nItem2=\n")
put("ini", "odd", b"\xef\xbb\xbf; comment\n[ spaced ]\n key = value \n=novalue\n[unterminated\nk=v")
put("cmdline", "file-report", b"a.txt\0b.txt\0-T\0r.htm\0-R1\0-F2\0-X\0-G\0-L\0run.log")
put("cmdline", "folders", b"-D\0-M\0A\0-S\0B\0-X\0-V\0-I\0-W")
put("cmdline", "sheets", b"a.xlsx\0b.xlsx\0-ES1\0-EM2\0-ERM1-3\0-ECS2,4")
put("pattern", "several", b"*.txt *.c?? ;readme*\nREADME.md")
put("pattern", "stars", b"a*b*c*d*e*f*?\naxbxcxdxexfxg")

# What the .xls reader sends back: a book of two sheets, every kind of cell.
import struct
def cell(tag, row, col, tail=b""):
    return tag + struct.pack("<IH", row, col) + tail
def text(s):
    b = s.encode()
    return struct.pack("<I", len(b)) + b
frames = (b"B" + struct.pack("<I", 2)
          + b"S" + struct.pack("<I", 1) + text("Costs")
          + cell(b"T", 0, 0, text("Item")) + cell(b"I", 0, 1, struct.pack("<q", -42))
          + cell(b"D", 1, 0, struct.pack("<d", 1.5)) + cell(b"N", 1, 1)
          + b"S" + struct.pack("<I", 2) + text("") + cell(b"T", 3, 2, text("Zürich"))
          + b"Z")
put("xlsframes", "two-sheets", frames)
