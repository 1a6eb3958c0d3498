#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>
#include <random>

using namespace lexiform;

namespace {

QByteArray fixture(const std::string& name)
{
    const std::string s = tvtest::readFile(tvtest::dataPath(name));
    return QByteArray(s.data(), qsizetype(s.size()));
}

QStringList paragraphTexts(const Document& doc)
{
    QStringList out;
    for (const auto& p : doc.paragraphs)
        out << p.text();
    return out;
}

// The run holding `needle` (which must not straddle runs).
const lexiform::Run* runWith(const Document& doc, const QString& needle)
{
    for (const auto& p : doc.paragraphs)
        for (const auto& r : p.runs)
            if (r.text.contains(needle))
                return &r;
    return nullptr;
}

Document rtf(const char* body)
{
    return readRtf(QByteArray("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}"
                              "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}")
                   + body + "}");
}

} // namespace

// The marked words of this letter are checked with those of the other
// formats in the conversion tests; here the paragraphs and the fonts.
TEST(RtfReader, LibreOfficeLetterGivesTheExpectedParagraphsAndFonts)
{
    const Document doc = readRtf(fixture("letter-original.rtf"));
    QStringList expected = QString::fromUtf8(fixture("letter-original.rtf.expected.txt")).split('\n');
    if (expected.last().isEmpty())
        expected.removeLast();
    QStringList got = paragraphTexts(doc);
    ASSERT_EQ(got.size(), expected.size()) << got.join('|').toStdString();
    for (int i = 0; i < got.size(); ++i)
        EXPECT_EQ(got[i].trimmed(), expected[i].trimmed()) << i;
    EXPECT_TRUE(got[6].contains(QString::fromUtf8("€450")));

    // Body text is in the default font; the heading names its own.
    const lexiform::Run* body = runWith(doc, "14 Canal Row");
    EXPECT_TRUE(body->format.fontName.isEmpty());
    EXPECT_EQ(body->format.fontSize, 12.0);
    const lexiform::Run* heading = runWith(doc, "Enclosure");
    EXPECT_EQ(heading->format.fontName, QStringLiteral("Liberation Sans"));
    EXPECT_EQ(heading->format.fontSize, 17.0);
    EXPECT_TRUE(heading->format.bold);
}

TEST(RtfReader, CodePagesOfDocumentAndFonts)
{
    // Document code page.
    EXPECT_EQ(readRtf("{\\rtf1\\ansi\\ansicpg1251 \\'c0\\'e1}").plainText(), QString::fromUtf8("Аб"));
    EXPECT_EQ(readRtf("{\\rtf1\\ansi\\ansicpg1250 \\'8a}").plainText(), QString::fromUtf8("Š"));
    // A font's charset overrides it, and only for that font's text.
    EXPECT_EQ(readRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset161 Greek;}}"
                      "\\'e1{\\f1\\'e1}\\'e1}").plainText(),
              QString::fromUtf8("áαá"));
    // Two escapes of one double-byte character stay one character.
    EXPECT_EQ(readRtf("{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0 \\'82\\'a0x}").plainText(),
              QString::fromUtf8("あx"));
    // An unknown code page reads as Windows-1252.
    EXPECT_EQ(readRtf("{\\rtf1\\ansi\\ansicpg99999 \\'80}").plainText(), QString::fromUtf8("€"));
    // Font names can be escaped too.
    const Document named = readRtf("{\\rtf1{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 \\'cc\\'ee\\'e9;}}{\\f1 x}}");
    EXPECT_EQ(named.paragraphs[0].runs[0].format.fontName, QString::fromUtf8("Мой"));
}

TEST(RtfReader, UnicodeEscapesAndTheirFallbacks)
{
    EXPECT_EQ(rtf("caf\\u233\\'e9!").plainText(), QString::fromUtf8("café!"));
    EXPECT_EQ(rtf("\\uc2\\u8364\\'80\\'80x").plainText(), QString::fromUtf8("€x"));
    EXPECT_EQ(rtf("\\uc0\\u8364 x").plainText(), QString::fromUtf8("€x"));
    // Negative numbers are the upper half; surrogates pair up.
    EXPECT_EQ(rtf("\\u-10179?\\u-8704?").plainText(), QString::fromUtf8("😀"));
    // A fallback control word counts as one unit; the group's end stops skipping.
    EXPECT_EQ(rtf("\\u8212\\endash x").plainText(), QString::fromUtf8("—x"));
    EXPECT_EQ(rtf("{\\uc3\\u233 a}bc").plainText(), QString::fromUtf8("ébc"));
    // \uc is group-scoped.
    EXPECT_EQ(rtf("{\\uc2 a}\\u233\\'e9z").plainText(), QString::fromUtf8("aéz"));
}

TEST(RtfReader, HiddenDestinationsAreSkipped)
{
    const Document doc = rtf(
        "{\\*\\generator Some Writer;}{\\info{\\title T}{\\author A}}"
        "{\\stylesheet{\\s0 Normal;}}"
        "A{\\*\\unknowndest secret}B"
        "{\\pict\\pngblip 89504e470d0a1a0a}C"
        "{\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt link}}"
        "{\\header page head}D"
        "\\bin4 {}\\}E"
        "{\\v hidden}F");
    EXPECT_EQ(doc.plainText(), QStringLiteral("ABClinkDEF"));
}

TEST(RtfReader, CharacterFormatsFollowGroupsAndResets)
{
    const Document doc = rtf(
        "n{\\b b{\\i bi}}{\\ul u\\ulnone n}{\\ulw w}{\\ulc2 c}{\\strike s\\strike0 n}"
        "{\\cf1 red}{\\highlight2 hl}{\\chcbpat1 sh}{\\cb2 cb}"
        "{\\b\\cf1\\f1\\fs20 \\plain p}{\\f1\\fs21 mono}{\\b0 x}");
    auto fmt = [&](const char* t) { return runWith(doc, t)->format; };
    EXPECT_TRUE(fmt("b").bold);
    EXPECT_TRUE(fmt("bi").bold && fmt("bi").italic);
    EXPECT_TRUE(fmt("u").underline);
    EXPECT_TRUE(fmt("w").underline);
    EXPECT_FALSE(fmt("c").underline);  // underline colour alone underlines nothing
    EXPECT_TRUE(fmt("s").strike);
    EXPECT_EQ(fmt("red").foreColor, Rgb(0xFF0000));
    EXPECT_EQ(fmt("hl").backColor, Rgb(0x0000FF));
    EXPECT_EQ(fmt("sh").backColor, Rgb(0xFF0000));
    EXPECT_EQ(fmt("cb").backColor, Rgb(0x0000FF));
    EXPECT_EQ(fmt("p"), CharFormat{});
    EXPECT_EQ(fmt("mono").fontName, QStringLiteral("Courier New"));
    EXPECT_EQ(fmt("mono").fontSize, 10.5);
    // Unformatted neighbours merge into one run.
    const auto& runs = doc.paragraphs[0].runs;
    EXPECT_EQ(runs.back().text, QStringLiteral("x"));
    int plainRuns = 0;
    for (const auto& r : runs)
        plainRuns += r.format == CharFormat{};
    EXPECT_EQ(plainRuns, 6);  // "n", "n" after \ulnone, "c", "n" after \strike0, "p", "x"
}

TEST(RtfReader, ParagraphsLinesTabsAndTables)
{
    EXPECT_EQ(paragraphTexts(rtf("a\\par b\\par")), (QStringList{"a", "b"}));
    EXPECT_EQ(paragraphTexts(rtf("a\\par\\par")), (QStringList{"a", ""}));
    EXPECT_EQ(paragraphTexts(rtf("")), QStringList{""});
    EXPECT_EQ(paragraphTexts(rtf("a\\\nb")), (QStringList{"a", "b"}));
    EXPECT_EQ(rtf("a\\line b\\tab c\\~d\\{\\}\\\\").plainText(),
              QString::fromUtf16(u"a\x2028" u"b\tc\x00A0" u"d{}\\"));
    // Source line breaks are not text; escaped ones are line breaks.
    EXPECT_EQ(rtf("a\r\nb").plainText(), QStringLiteral("ab"));
    EXPECT_EQ(paragraphTexts(rtf("a\\'0db\\u10?c")), QStringList{QString::fromUtf16(u"a\x2028" u"b\x2028" u"c")});

    const Document table = rtf(
        "before\\par"
        "\\trowd\\cellx1000\\cellx2000\\cellx3000"
        "\\pard\\intbl one\\cell two\\cell three\\cell\\row"
        "\\trowd\\cellx1000\\cellx2000\\cellx3000"
        "\\pard\\intbl \\cell x\\par y\\cell z\\cell\\row"
        "\\pard after\\par");
    EXPECT_EQ(paragraphTexts(table),
              (QStringList{"before", "one\ttwo\tthree", "\tx y\tz", "after"}));
}

TEST(RtfReader, DamagedInputReadsWhatItCanAndNeverHangs)
{
    // Unbalanced braces both ways.
    EXPECT_EQ(readRtf("{\\rtf1 a}}}b}").plainText(), QStringLiteral("ab"));
    EXPECT_EQ(readRtf("{\\rtf1 {\\b a{\\i b").plainText(), QStringLiteral("ab"));
    // Every truncation of a real file.
    const QByteArray letter = fixture("letter-original.rtf");
    const QString full = readRtf(letter).plainText();
    for (qsizetype n = 0; n < letter.size(); n += 7) {
        const QString part = readRtf(letter.left(n)).plainText();
        ASSERT_TRUE(full.startsWith(part.left(part.size() - 1))) << n;
    }
    // Absurd numbers.
    const Document absurd = readRtf(
        "{\\rtf1{\\colortbl;\\red99999999999\\green-5\\blue3;}"
        "\\fs99999999999999999 \\cf99999 \\f-77 a\\u99999999999 \\uc999999999 b\\par"
        "\\ucN\\u-99999999999 c\\bin99999999999999 ignored}");
    ASSERT_GE(absurd.paragraphs.size(), 1u);
    EXPECT_TRUE(absurd.paragraphs[0].text().startsWith('a'));
    // A deep flood of groups and a long control word.
    QByteArray deep = "{\\rtf1 ";
    deep += QByteArray(200000, '{') + "\\b deep" + QByteArray(200000, '}') + " end";
    deep += "\\" + QByteArray(100000, 'x') + " tail}";
    EXPECT_EQ(readRtf(deep).plainText(), QStringLiteral("deep endtail"));
    EXPECT_FALSE(looksLikeRtf("plain {\\rtf1"));
    EXPECT_TRUE(looksLikeRtf("\xEF\xBB\xBF \r\n{\\rtf1\\ansi"));
}

namespace {

// A document that the reader would give back as it is: runs merged where
// their formats are equal, no empty runs.
Document normalised(const Document& in)
{
    Document out;
    for (const auto& p : in.paragraphs) {
        Paragraph q;
        for (const auto& r : p.runs) {
            if (r.text.isEmpty())
                continue;
            if (!q.runs.empty() && q.runs.back().format == r.format)
                q.runs.back().text += r.text;
            else
                q.runs.push_back(r);
        }
        out.paragraphs.push_back(q);
    }
    return out;
}

Document randomDocument(std::mt19937& rng)
{
    static const QStringList pieces = {
        "plain", " leading blank", "trailing blank ", "  ", "{braces}", "back\\slash",
        "tab\there", QString::fromUtf16(u"line\x2028" u"break"), QString::fromUtf8("café €5"),
        QString::fromUtf8("Привет"), QString::fromUtf8("日本語"), QString::fromUtf8("emoji 😀"),
        QString::fromUtf16(u"nb\x00A0sp"), "semi;colon", "\\par not a word",
    };
    static const QStringList fonts = {"", "", "Arial", "Courier New", "DejaVu Sans"};
    Document doc;
    const int paras = 1 + int(rng() % 6);
    for (int i = 0; i < paras; ++i) {
        Paragraph p;
        const int runs = int(rng() % 5);
        for (int j = 0; j < runs; ++j) {
            lexiform::Run r;
            r.text = pieces[int(rng() % pieces.size())];
            r.format.bold = rng() % 2;
            r.format.italic = rng() % 3 == 0;
            r.format.underline = rng() % 4 == 0;
            r.format.strike = rng() % 5 == 0;
            if (rng() % 2)
                r.format.foreColor = Rgb(rng() & 0xFFFFFF);
            if (rng() % 2)
                r.format.backColor = Rgb(rng() & 0xFFFFFF);
            r.format.fontName = fonts[int(rng() % fonts.size())];
            r.format.fontSize = (rng() % 3) ? 0 : (8 + int(rng() % 40)) / 2.0;
            p.runs.push_back(r);
        }
        doc.paragraphs.push_back(p);
    }
    return doc;
}

} // namespace

TEST(RtfWriter, WhatIsWrittenReadsBackRunByRun)
{
    std::mt19937 rng(12345);
    for (int round = 0; round < 300; ++round) {
        const Document doc = normalised(randomDocument(rng));
        const QByteArray written = writeRtf(doc);
        const Document back = readRtf(written);
        ASSERT_EQ(back, doc) << "round " << round << "\n" << written.constData();
    }
}

TEST(RtfWriter, OutputIsSevenBitAndReadableByOthers)
{
    Document doc;
    doc.paragraphs.push_back(Paragraph{{lexiform::Run{QString::fromUtf8("é€ж"), {}}}});
    CharFormat marked;
    marked.backColor = Rgb(0x00FF00);
    doc.paragraphs.push_back(Paragraph{{lexiform::Run{"x", marked}}});
    const QByteArray out = writeRtf(doc);
    for (char c : out)
        ASSERT_LT(static_cast<unsigned char>(c), 0x80);
    EXPECT_TRUE(out.startsWith("{\\rtf1\\ansi\\ansicpg1252"));
    // Readers that skip \u see the 1252 fallback, or '?' where there is none.
    EXPECT_TRUE(out.contains("\\u233\\'e9\\u8364\\'80\\u1078?"));
    EXPECT_TRUE(out.contains("\\highlight1\\chcbpat1\\cb1 x"));
    EXPECT_TRUE(out.contains("\\red0\\green255\\blue0;"));
    // An empty document is one empty paragraph both ways.
    EXPECT_EQ(paragraphTexts(readRtf(writeRtf(Document{}))), QStringList{""});
}
