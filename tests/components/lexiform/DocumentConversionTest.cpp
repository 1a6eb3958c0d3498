// Word processor and web documents to text, RTF, HTML and DOCX: the text of
// office-written files against independent extraction, formats carried
// through, and hostile or missing input.

#include "LexiformTestUtil.h"
#include "components/lexiform/DocumentWriters.h"
#include "components/lexiform/DocxReader.h"
#include "components/lexiform/HtmlReader.h"
#include "components/lexiform/Lexiform.h"
#include "components/lexiform/OdtReader.h"
#include "components/lexiform/RtfReader.h"
#include "support/testsupport.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace lexiform;
using namespace lexiformtest;
using tvtest::dataPath;

namespace {

// The run holding `needle`, from a document read back from RTF.
const Run* runWith(const Document& doc, const QString& needle)
{
    for (const Paragraph& p : doc.paragraphs)
        for (const Run& r : p.runs)
            if (r.text.contains(needle))
                return &r;
    return nullptr;
}

// The letter's marked words, each its own run, and an unmarked neighbour.
void expectLetterFormats(const Document& doc)
{
    struct Want {
        const char* text;
        bool bold, italic;
        std::optional<Rgb> colour;
    };
    for (const Want& w : {Want{"maintenance contract", true, false, {}}, Want{"pleased", false, true, {}},
                          Want{"Important:", true, false, 0xC9211E}, Want{"accounts office", false, false, 0x2A6099},
                          Want{"at least five working days", true, true, {}}, Want{"Thank you", false, false, {}}}) {
        const Run* r = runWith(doc, w.text);
        ASSERT_TRUE(r) << w.text;
        EXPECT_EQ(r->format.bold, w.bold) << w.text;
        EXPECT_EQ(r->format.italic, w.italic) << w.text;
        EXPECT_FALSE(r->format.underline || r->format.strike) << w.text;
        EXPECT_EQ(r->format.foreColor, w.colour) << w.text;
    }
    EXPECT_EQ(runWith(doc, "maintenance contract")->text.trimmed(), "maintenance contract");
}

std::vector<std::string> withoutUnderlines(std::vector<std::string> lines)
{
    std::erase_if(lines, [](const std::string& l) { return l.find_first_not_of('=') == std::string::npos; });
    return lines;
}

} // namespace

TEST(DocumentText, MatchesIndependentExtractionForEachFormat)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    for (std::string file : {"letter-original.docx", "letter-original.odt", "letter-original.html",
                             "letter-original.rtf", "letter-original.doc"}) {
        SCOPED_TRACE(file);
        const QString out = q(tmp.file(file + ".txt"));
        ASSERT_EQ(lx.ConvertDocument(q(dataPath(file)), out, TypePlainText), Ok);
        EXPECT_EQ(normalisedLines(tvtest::readFile(out.toStdString())),
                  withoutUnderlines(normalisedLines(tvtest::readFile(dataPath(file + ".expected.txt")))));
    }
}

TEST(DocumentText, FormatsSurviveIntoRichText)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    for (std::string file : {"letter-original.docx", "letter-original.odt", "letter-original.html", "letter-original.rtf"}) {
        SCOPED_TRACE(file);
        const QString out = q(tmp.file(file + ".rtf"));
        ASSERT_EQ(lx.ConvertDocument(q(dataPath(file)), out, TypeRichText), Ok);
        expectLetterFormats(readRtf(QByteArray::fromStdString(tvtest::readFile(out.toStdString()))));
    }
}

TEST(DocumentText, RichTextRoundTripsThroughDocxAndHtmlWriters)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString rtf = q(dataPath("letter-original.rtf"));
    const QString docx = q(tmp.file("saved.docx"));
    const QString html = q(tmp.file("saved.html"));
    ASSERT_EQ(lx.ConvertDocument(rtf, docx, TypeWordDocument), Ok);
    ASSERT_EQ(lx.ConvertDocument(rtf, html, TypeHtml), Ok);
    Document fromDocx;
    ASSERT_EQ(readDocx(docx, {}, fromDocx), Ok);
    expectLetterFormats(fromDocx);
    expectLetterFormats(readHtml(QByteArray::fromStdString(tvtest::readFile(html.toStdString()))));
    EXPECT_EQ(fromDocx.plainText(), readRtf(QByteArray::fromStdString(tvtest::readFile(rtf.toStdString()))).plainText());
}

TEST(DocumentText, WritersKeepEveryFormatOfTheModel)
{
    Document doc;
    CharFormat all;
    all.bold = all.italic = all.underline = all.strike = true;
    all.foreColor = 0x123456;
    all.backColor = 0xFFFF00;
    all.fontName = "Liberation Mono";
    all.fontSize = 13;
    doc.paragraphs.push_back({{{"plain <&> \"q\" ", {}}, {QString("all\tof") + QChar(0x2028) + "them", all}}});
    doc.paragraphs.push_back({});
    doc.paragraphs.push_back({{{"Zoë €", {}}}});
    tvtest::TempDir tmp;
    ASSERT_TRUE(writeDocx(doc, q(tmp.file("w.docx"))));
    Document back;
    ASSERT_EQ(readDocx(q(tmp.file("w.docx")), {}, back), Ok);
    EXPECT_EQ(back, doc);
    EXPECT_EQ(readHtml(writeHtml(doc)), doc);
    EXPECT_EQ(writePlainText(doc), QByteArray("plain <&> \"q\" all\tof\nthem\n\nZo\xC3\xAB \xE2\x82\xAC\n"));
}

TEST(DocxReader, TablesNotesTextBoxesAndTrackedChanges)
{
    tvtest::TempDir tmp;
    const std::string w = R"(xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main" xmlns:mc="http://schemas.openxmlformats.org/markup-compatibility/2006")";
    writeZip(tmp.file("t.docx"), {
        {"word/document.xml", "<w:document " + w + R"(><w:body>
<w:p><w:pPr><w:pStyle w:val="Heading1"/></w:pPr><w:r><w:t>Title</w:t></w:r></w:p>
<w:p><w:r><w:rPr><w:rStyle w:val="Strong"/></w:rPr><w:t xml:space="preserve">strong </w:t></w:r><w:r><w:t>a</w:t></w:r><w:r><w:tab/><w:t>b</w:t><w:br/><w:t>c</w:t></w:r><w:r><w:rPr><w:vanish/></w:rPr><w:t>hidden</w:t></w:r><w:del><w:r><w:delText>gone</w:delText></w:r></w:del><w:ins><w:r><w:t>new</w:t></w:r></w:ins><w:r><w:rPr><w:highlight w:val="yellow"/><w:u w:val="none"/></w:rPr><w:t>lit</w:t></w:r><w:r><w:footnoteReference w:id="2"/></w:r></w:p>
<w:tbl><w:tblPr/><w:tr><w:tc><w:p><w:r><w:t>A1</w:t></w:r></w:p><w:p><w:r><w:t>more</w:t></w:r></w:p></w:tc><w:tc><w:p><w:r><w:t>B1</w:t></w:r></w:p></w:tc></w:tr>
<w:tr><w:tc><w:p/></w:tc><w:tc><w:p><w:r><w:t>B2</w:t></w:r></w:p></w:tc></w:tr></w:tbl>
<w:p><w:r><mc:AlternateContent><mc:Choice><w:drawing><w:txbxContent><w:p><w:r><w:t>boxed</w:t></w:r></w:p></w:txbxContent></w:drawing></mc:Choice><mc:Fallback><w:pict><w:txbxContent><w:p><w:r><w:t>boxed</w:t></w:r></w:p></w:txbxContent></w:pict></mc:Fallback></mc:AlternateContent></w:r><w:r><w:t>anchor</w:t></w:r></w:p>
<w:sectPr/></w:body></w:document>)"},
        {"word/styles.xml", "<w:styles " + w + R"(><w:style w:styleId="Heading1"><w:basedOn w:val="Base"/></w:style><w:style w:styleId="Base"><w:rPr><w:b/><w:color w:val="FF0000"/></w:rPr></w:style><w:style w:styleId="Strong"><w:rPr><w:i/></w:rPr></w:style></w:styles>)"},
        {"word/footnotes.xml", "<w:footnotes " + w + R"(><w:footnote w:type="separator" w:id="0"><w:p><w:r><w:t>---</w:t></w:r></w:p></w:footnote><w:footnote w:id="2"><w:p><w:r><w:t>The note.</w:t></w:r></w:p></w:footnote></w:footnotes>)"},
    });
    Document doc;
    ASSERT_EQ(readDocx(q(tmp.file("t.docx")), {}, doc), Ok);
    EXPECT_EQ(doc.plainText(), QString("Title\nstrong a\tb") + QChar(0x2028) + "cnewlit\nA1 more\tB1\n\tB2\nanchor\nboxed\nThe note.");
    const lexiform::Run* title = runWith(doc, "Title");
    EXPECT_TRUE(title->format.bold);
    EXPECT_EQ(title->format.foreColor, std::optional<Rgb>(0xFF0000));
    EXPECT_TRUE(runWith(doc, "strong")->format.italic);
    EXPECT_EQ(runWith(doc, "lit")->format.backColor, std::optional<Rgb>(0xFFFF00));
    EXPECT_FALSE(runWith(doc, "lit")->format.underline);
}

TEST(OdtReader, SpacesTablesAndNotes)
{
    tvtest::TempDir tmp;
    writeZip(tmp.file("t.odt"), {
        {"mimetype", "application/vnd.oasis.opendocument.text"},
        {"content.xml", R"(<?xml version="1.0"?><office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" xmlns:style="urn:oasis:names:tc:opendocument:xmlns:style:1.0" xmlns:fo="urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0"><office:automatic-styles><style:style style:name="T1" style:family="text"><style:text-properties fo:font-weight="bold" style:text-line-through-style="solid"/></style:style></office:automatic-styles><office:body><office:text>
<text:p>  two<text:s text:c="2"/>spaces
   and a <text:span text:style-name="T1">bold<text:tab/>one</text:span><text:note text:note-class="footnote"><text:note-citation>1</text:note-citation><text:note-body><text:p>Note text.</text:p></text:note-body></text:note></text:p>
<text:list><text:list-item><text:p>item</text:p></text:list-item></text:list>
<table:table><table:table-column/><table:table-row><table:table-cell><text:p>x</text:p></table:table-cell><table:table-cell><text:p>y</text:p></table:table-cell></table:table-row></table:table>
<text:p>end<office:annotation><text:p>comment</text:p></office:annotation></text:p>
</office:text></office:body></office:document-content>)"},
    });
    Document doc;
    ASSERT_EQ(readOdt(q(tmp.file("t.odt")), {}, doc), Ok);
    EXPECT_EQ(doc.plainText(), "two  spaces and a bold\tone\nitem\nx\ty\nend\nNote text.");
    const lexiform::Run* bold = runWith(doc, "bold");
    ASSERT_TRUE(bold);
    EXPECT_TRUE(bold->format.bold && bold->format.strike);
}

TEST(HtmlReader, RendersWhatABrowserShows)
{
    const QByteArray html = R"(<html><head><title>T</title><style>p{}</style><script>var x=1;</script></head>
<body><h2>Head &amp; <em>line</em></h2><p>one
   two<br>three&nbsp;four</p><div>a<div>b</div>c</div>
<table><tr><th>H1</th><td><p>c1</p><p>c2</p></td></tr><tr><td>x</td><td style="color: rgb(255, 0, 0); font-weight: 700">y</td></tr></table>
<pre>  keep
    this</pre><p><font color="#00ff00">green</font> <span style="text-decoration:line-through">gone</span> <u>under)";
    const Document doc = readHtml(html);
    EXPECT_EQ(doc.plainText(), QString("Head & line\none two") + QChar(0x2028) + QString("three") + QChar(0xA0)
                                   + "four\na\nb\nc\nH1\tc1 c2\nx\ty\n  keep\n    this\ngreen gone under");
    EXPECT_TRUE(runWith(doc, "Head")->format.bold);
    EXPECT_TRUE(runWith(doc, "line")->format.italic && runWith(doc, "line")->format.bold);
    EXPECT_TRUE(runWith(doc, "H1")->format.bold);
    EXPECT_EQ(runWith(doc, "y")->format.foreColor, std::optional<Rgb>(0xFF0000));
    EXPECT_TRUE(runWith(doc, "y")->format.bold);
    EXPECT_EQ(runWith(doc, "green")->format.foreColor, std::optional<Rgb>(0x00FF00));
    EXPECT_TRUE(runWith(doc, "gone")->format.strike);
    EXPECT_TRUE(runWith(doc, "under")->format.underline);
    // Encodings: Windows-1252 bytes without a declaration, and a declared one.
    EXPECT_EQ(readHtml("<p>caf\xe9 \x80</p>").plainText(), QString("café €"));
    EXPECT_EQ(readHtml("<meta charset=\"iso-8859-1\"><p>\xe9</p>").plainText(), QString("é"));
    EXPECT_EQ(readHtml("").plainText(), "");
}

TEST(HtmlReader, DeeplyNestedUnclosedTagsKeepEveryLine)
{
    // Old pages never close their font tags: every line is one level deeper.
    for (int lines : {400, 5000}) {
        QByteArray html = "<html><body>";
        for (int i = 0; i < lines; ++i)
            html += "<font color=\"#0000ff\"><p>line " + QByteArray::number(i) + "<b>!</b>\n";
        const QString text = readHtml(html).plainText();
        EXPECT_EQ(text.count(QStringLiteral("line ")), lines);
        EXPECT_TRUE(text.contains(QStringLiteral("line %1!").arg(lines - 1))) << lines;
    }
}

TEST(DocumentErrors, ResultCodes)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString src = q(dataPath("letter-original.docx"));
    EXPECT_EQ(lx.ConvertDocument("", q(tmp.file("o.rtf")), TypeRichText), PathEmpty);
    EXPECT_EQ(lx.ConvertDocument(src, "", TypeRichText), PathEmpty);
    EXPECT_EQ(lx.ConvertDocument(src, src, TypeRichText), SameFile);
    EXPECT_EQ(lx.ConvertDocument(src, q(tmp.file("o.rtf")), 5), ConversionFailed);
    EXPECT_EQ(lx.ConvertDocument(q(tmp.file("none.docx")), q(tmp.file("o.rtf")), TypeRichText), SourceInvalid);
    EXPECT_EQ(lx.ConvertDocument(src, q(tmp.file("no/dir/o.rtf")), TypeRichText), ConversionFailed);
    EXPECT_EQ(lx.ConvertDocument(src, q(tmp.file("no/dir/o.docx")), TypeWordDocument), ConversionFailed);
}

TEST(DocumentErrors, DamagedDocumentsNeverCrashOrChange)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const std::string docx = tvtest::readFile(dataPath("letter-original.docx"));
    const std::string odt = tvtest::readFile(dataPath("letter-original.odt"));
    tvtest::writeFile(tmp.file("truncated.docx"), docx.substr(0, docx.size() / 2));
    tvtest::writeFile(tmp.file("truncated.odt"), odt.substr(0, odt.size() / 2));
    const std::string w = R"(xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main")";
    writeZip(tmp.file("malformed.docx"), {{"word/document.xml", "<w:document " + w + "><w:body><w:p><w:r><w:t>x</w:p>"}});
    writeZip(tmp.file("nobody.docx"), {{"word/document.xml", "<w:document " + w + "/>"}});
    writeZip(tmp.file("sheet.odt"), {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"}, {"content.xml", "<x/>"}});
    for (std::string name : {"truncated.docx", "truncated.odt", "malformed.docx", "nobody.docx", "sheet.odt"}) {
        const QByteArray digest = fileDigest(tmp.file(name));
        EXPECT_EQ(lx.ConvertDocument(q(tmp.file(name)), q(tmp.file("o.rtf")), TypeRichText), SourceInvalid) << name;
        EXPECT_EQ(fileDigest(tmp.file(name)), digest);
    }
    // An empty file named .docx is no zip: it is read as the empty text it is.
    tvtest::writeFile(tmp.file("zip-of-nothing.docx"), "");
    EXPECT_EQ(lx.ConvertDocument(q(tmp.file("zip-of-nothing.docx")), q(tmp.file("o.txt")), TypePlainText), Ok);

    // Entity expansion ("billion laughs") is never performed.
    std::string laughs = "<?xml version=\"1.0\"?><!DOCTYPE w:document [<!ENTITY l0 \"ha\">";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k)
            laughs += "&l" + std::to_string(i - 1) + ";";
        laughs += "\">";
    }
    laughs += "]><w:document " + w + "><w:body><w:p><w:r><w:t>a&l9;b</w:t></w:r></w:p></w:body></w:document>";
    writeZip(tmp.file("laughs.docx"), {{"word/document.xml", laughs}});
    const int laughRc = lx.ConvertDocument(q(tmp.file("laughs.docx")), q(tmp.file("o.txt")), TypePlainText);
    EXPECT_TRUE(laughRc == SourceInvalid || (laughRc == Ok && tvtest::readFile(tmp.file("o.txt")).size() < 100u))
        << laughRc;
}

TEST(DocumentErrors, BinaryAndOddTextFilesComeThroughAsText)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    tvtest::writeFile(tmp.file("a.reg"), std::string("\xFF\xFE" "W\0i\0n\0\r\0\n\0[\0x\0]\0", 18));
    ASSERT_EQ(lx.ConvertDocument(q(tmp.file("a.reg")), q(tmp.file("o.txt")), TypePlainText), Ok);
    EXPECT_EQ(tvtest::readFile(tmp.file("o.txt")), "Win\n[x]\n");
    tvtest::writeFile(tmp.file("a.asc"), "caf\xe9\n");
    ASSERT_EQ(lx.ConvertDocument(q(tmp.file("a.asc")), q(tmp.file("o.txt")), TypePlainText), Ok);
    EXPECT_EQ(tvtest::readFile(tmp.file("o.txt")), "caf\xc3\xa9\n");
}
