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
