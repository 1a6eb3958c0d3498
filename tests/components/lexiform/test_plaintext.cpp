#include "components/lexiform/PlainTextReader.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

using namespace lexiform;

namespace {

QByteArray bytes(const std::string& s) { return QByteArray(s.data(), qsizetype(s.size())); }

QStringList paragraphTexts(const Document& doc)
{
    QStringList out;
    for (const auto& p : doc.paragraphs)
        out << p.text();
    return out;
}

QStringList expectedLines(const std::string& file)
{
    return QString::fromUtf8(bytes(tvtest::readFile(tvtest::dataPath(file)))).split(QLatin1Char('\n'));
}

} // namespace

TEST(PlainTextReader, FixturesInEveryEncodingGiveTheExpectedParagraphs)
{
    struct Case { const char* file; TextEncoding encoding; const char* expected; };
    const Case cases[] = {
        {"latin1-original.txt", TextEncoding::Windows1252, "latin1-original.txt.expected.txt"},
        {"utf16le-original.txt", TextEncoding::Utf16LE, "utf16le-original.txt.expected.txt"},
        {"text-crlf-original.txt", TextEncoding::Utf8, "text-crlf-original.txt.expected.txt"},
        {"text-lf-original.txt", TextEncoding::Utf8, "text-crlf-original.txt.expected.txt"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const QByteArray raw = bytes(tvtest::readFile(tvtest::dataPath(c.file)));
        EXPECT_EQ(detectTextEncoding(raw), c.encoding);
        const Document doc = readPlainText(raw);
        // Each file ends in a line end, as does its expected text: both end
        // in an empty paragraph.
        EXPECT_EQ(paragraphTexts(doc), expectedLines(c.expected));
    }
}

TEST(PlainTextReader, ByteOrderMarksDecideAndAreDropped)
{
    // "é€" in each encoding, behind its mark.
    struct Case { QByteArray raw; TextEncoding encoding; };
    const Case cases[] = {
        {QByteArray("\xEF\xBB\xBF\xC3\xA9\xE2\x82\xAC"), TextEncoding::Utf8Bom},
        {QByteArray("\xFF\xFE\xE9\x00\xAC\x20", 6), TextEncoding::Utf16LE},
        {QByteArray("\xFE\xFF\x00\xE9\x20\xAC", 6), TextEncoding::Utf16BE},
        {QByteArray("\xFF\xFE\x00\x00\xE9\x00\x00\x00\xAC\x20\x00\x00", 12), TextEncoding::Utf32LE},
        {QByteArray("\x00\x00\xFE\xFF\x00\x00\x00\xE9\x00\x00\x20\xAC", 12), TextEncoding::Utf32BE},
        {QByteArray("\xC3\xA9\xE2\x82\xAC"), TextEncoding::Utf8},
        {QByteArray("\xE9\x80"), TextEncoding::Windows1252},
    };
    for (const Case& c : cases) {
        TextEncoding got{};
        EXPECT_EQ(decodeText(c.raw, &got), QString::fromUtf8("é€")) << int(c.encoding);
        EXPECT_EQ(got, c.encoding);
    }
}

TEST(PlainTextReader, AlmostUtf8FallsBackToWindows1252)
{
    // One stray byte in otherwise valid UTF-8 makes the whole file 1252, so
    // the valid sequences turn into their two 1252 characters.
    const QByteArray raw("caf\xC3\xA9 \x96 done");
    EXPECT_EQ(detectTextEncoding(raw), TextEncoding::Windows1252);
    EXPECT_EQ(decodeText(raw), QString::fromUtf8("cafÃ© – done"));
    // Unassigned 1252 bytes still decode to something, one character each.
    EXPECT_EQ(decodeWindows1252(QByteArray("\x81\x8D\x9F")), QString::fromUtf16(u"\x0081\x008D\x0178"));
}

TEST(PlainTextReader, EveryLineEndConventionEndsOneParagraph)
{
    EXPECT_EQ(paragraphTexts(plainTextToDocument(QStringLiteral("a\r\nb\rc\nd\n"))),
              (QStringList{"a", "b", "c", "d", ""}));
    EXPECT_EQ(paragraphTexts(plainTextToDocument(QStringLiteral("\r\n\r\n"))), (QStringList{"", "", ""}));
    EXPECT_EQ(paragraphTexts(plainTextToDocument(QStringLiteral("\n\r"))), (QStringList{"", "", ""}));
    const Document empty = plainTextToDocument(QString());
    ASSERT_EQ(empty.paragraphs.size(), 1u);
    EXPECT_TRUE(empty.paragraphs[0].runs.empty());
    // Tabs and other controls stay in the text.
    EXPECT_EQ(plainTextToDocument(QStringLiteral("a\tb\fc")).plainText(), QStringLiteral("a\tb\fc"));
}
