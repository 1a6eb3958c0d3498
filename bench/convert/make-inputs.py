#!/usr/bin/env python3
"""Large inputs for the conversion benchmark, written directly as the files
office programs write (zip packages of XML, and a PDF through ReportLab):
no office suite is needed. Usage: make-inputs.py OUTDIR [SCALE]."""
import datetime
import os
import random
import sys
import zipfile

out = sys.argv[1]
scale = float(sys.argv[2]) if len(sys.argv) > 2 else 1.0
os.makedirs(out, exist_ok=True)
rnd = random.Random(7)
WORDS = ("contract invoice warehouse schedule renewal maintenance delivery customer account payment "
         "agreement inspection filter report quarterly budget north south office staff badge").split()


def sentence(n):
    return " ".join(rnd.choice(WORDS) for _ in range(n)).capitalize() + "."


def esc(s):
    return s.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def docx(path, paragraphs):
    W = 'xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"'
    parts = []
    for i in range(paragraphs):
        runs = []
        for k in range(4):
            props = ["", "<w:b/>", "<w:i/>", '<w:color w:val="C9211E"/>'][k]
            text = esc(sentence(8)) + " "
            runs.append(f'<w:r><w:rPr>{props}</w:rPr><w:t xml:space="preserve">{text}</w:t></w:r>')
        parts.append(f'<w:p><w:pPr><w:pStyle w:val="Normal"/></w:pPr>{"".join(runs)}</w:p>')
        if i % 50 == 0:
            cells = "".join(f"<w:tc><w:p><w:r><w:t>cell {i}.{c}</w:t></w:r></w:p></w:tc>" for c in range(4))
            parts.append(f"<w:tbl><w:tr>{cells}</w:tr></w:tbl>")
    doc = f'<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n<w:document {W}><w:body>{"".join(parts)}<w:sectPr/></w:body></w:document>'
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("[Content_Types].xml", '<?xml version="1.0" encoding="UTF-8"?><Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/><Override PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>')
        z.writestr("_rels/.rels", '<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="word/document.xml"/></Relationships>')
        z.writestr("word/document.xml", doc)
        z.writestr("word/styles.xml", f'<w:styles {W}><w:style w:type="paragraph" w:styleId="Normal"><w:rPr><w:sz w:val="22"/></w:rPr></w:style></w:styles>')


def rows(count):
    base = datetime.date(2024, 1, 1)
    for r in range(count):
        yield (f"O-{100000 + r}", rnd.choice(WORDS).capitalize() + " " + rnd.choice(WORDS).capitalize(),
               (base + datetime.timedelta(days=r % 700)), rnd.randint(1, 500), round(rnd.uniform(1, 999), 2))


def col(c):
    return "ABCDEFGH"[c]


def xlsx(path, count):
    strings, index = [], {}

    def sid(s):
        if s not in index:
            index[s] = len(strings)
            strings.append(s)
        return index[s]

    header = ["Order", "Customer", "Date", "Quantity", "Unit price", "Total"]
    body = ['<row r="1">' + "".join(f'<c r="{col(c)}1" t="s"><v>{sid(h)}</v></c>' for c, h in enumerate(header)) + "</row>"]
    epoch = datetime.date(1899, 12, 30)
    for i, (order, cust, date, qty, price) in enumerate(rows(count), start=2):
        body.append(
            f'<row r="{i}"><c r="A{i}" t="s"><v>{sid(order)}</v></c><c r="B{i}" t="s"><v>{sid(cust)}</v></c>'
            f'<c r="C{i}" s="1"><v>{(date - epoch).days}</v></c><c r="D{i}"><v>{qty}</v></c>'
            f'<c r="E{i}" s="2"><v>{price}</v></c><c r="F{i}" s="2"><f>D{i}*E{i}</f><v>{qty * price}</v></c></row>')
    sheet = ('<?xml version="1.0" encoding="UTF-8"?><worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>'
             + "".join(body) + "</sheetData></worksheet>")
    sst = ('<?xml version="1.0" encoding="UTF-8"?><sst xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">'
           + "".join(f"<si><t>{esc(s)}</t></si>" for s in strings) + "</sst>")
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("[Content_Types].xml", '<?xml version="1.0" encoding="UTF-8"?><Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/><Override PartName="/xl/workbook.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/><Override PartName="/xl/worksheets/sheet1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/><Override PartName="/xl/sharedStrings.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml"/><Override PartName="/xl/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml"/></Types>')
        z.writestr("_rels/.rels", '<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/></Relationships>')
        z.writestr("xl/workbook.xml", '<?xml version="1.0" encoding="UTF-8"?><workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships"><sheets><sheet name="Orders" sheetId="1" r:id="rId1"/></sheets></workbook>')
        z.writestr("xl/_rels/workbook.xml.rels", '<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet1.xml"/><Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings" Target="sharedStrings.xml"/><Relationship Id="rId3" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/></Relationships>')
        z.writestr("xl/styles.xml", '<?xml version="1.0" encoding="UTF-8"?><styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><numFmts count="1"><numFmt numFmtId="164" formatCode="YYYY\\-MM\\-DD"/></numFmts><cellXfs count="3"><xf numFmtId="0"/><xf numFmtId="164"/><xf numFmtId="2"/></cellXfs></styleSheet>')
        z.writestr("xl/sharedStrings.xml", sst)
        z.writestr("xl/worksheets/sheet1.xml", sheet)


def ods(path, count):
    T = ('xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" '
         'xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.3"')
    body = []
    header = ["Order", "Customer", "Date", "Quantity", "Unit price", "Total"]
    body.append("<table:table-row>" + "".join(f'<table:table-cell office:value-type="string"><text:p>{h}</text:p></table:table-cell>' for h in header) + "</table:table-row>")
    for i, (order, cust, date, qty, price) in enumerate(rows(count), start=2):
        body.append(
            "<table:table-row>"
            f'<table:table-cell office:value-type="string"><text:p>{order}</text:p></table:table-cell>'
            f'<table:table-cell office:value-type="string"><text:p>{cust}</text:p></table:table-cell>'
            f'<table:table-cell office:value-type="date" office:date-value="{date.isoformat()}"><text:p>{date.isoformat()}</text:p></table:table-cell>'
            f'<table:table-cell office:value-type="float" office:value="{qty}"><text:p>{qty}</text:p></table:table-cell>'
            f'<table:table-cell office:value-type="float" office:value="{price}"><text:p>{price:.2f}</text:p></table:table-cell>'
            f'<table:table-cell table:formula="of:=[.D{i}]*[.E{i}]" office:value-type="float" office:value="{qty * price}"><text:p>{qty * price:.2f}</text:p></table:table-cell>'
            "<table:table-cell table:number-columns-repeated=\"1018\"/></table:table-row>")
    body.append('<table:table-row table:number-rows-repeated="1048000"><table:table-cell table:number-columns-repeated="1024"/></table:table-row>')
    content = (f'<?xml version="1.0" encoding="UTF-8"?><office:document-content {T}><office:body><office:spreadsheet>'
               f'<table:table table:name="Orders">{"".join(body)}</table:table></office:spreadsheet></office:body></office:document-content>')
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr(zipfile.ZipInfo("mimetype"), "application/vnd.oasis.opendocument.spreadsheet")
        z.writestr("META-INF/manifest.xml", '<?xml version="1.0" encoding="UTF-8"?><manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.3"><manifest:file-entry manifest:full-path="/" manifest:media-type="application/vnd.oasis.opendocument.spreadsheet"/><manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/></manifest:manifest>')
        z.writestr("content.xml", content)


def pdf(path, pages):
    from reportlab.lib.pagesizes import A4
    from reportlab.pdfgen import canvas
    c = canvas.Canvas(path, pagesize=A4)
    for p in range(pages):
        y = 800
        c.setFont("Helvetica-Bold", 14)
        c.drawString(60, y, f"Section {p + 1}: {sentence(4)}")
        c.setFont("Helvetica", 10)
        for _ in range(58):
            y -= 13
            c.drawString(60, y, sentence(12))
        c.showPage()
    c.save()


docx(os.path.join(out, "large.docx"), int(40000 * scale))
xlsx(os.path.join(out, "large.xlsx"), int(200000 * scale))
ods(os.path.join(out, "large.ods"), int(100000 * scale))
pdf(os.path.join(out, "large.pdf"), int(1000 * scale))
