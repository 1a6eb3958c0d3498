#include "document/RichTextBox.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QTextDocument>
#include <QTextEdit>
#include <gtest/gtest.h>

#include <memory>

using lexiform::Rgb;

namespace {

constexpr std::int32_t kGreen = 0x00FF00;  // COLORREF: red in the low byte
constexpr std::int32_t kBlue = 0xFF0000;

QString data(const char* name) { return tvtest::qDataPath(QString::fromLatin1(name)); }

} // namespace

TEST(RichTextBox, PositionsCountEveryCharacterAndOneUnitPerBreak)
{
    RichTextBox box;
    box.setText("ab\r\ncd\re\n");
    EXPECT_EQ(box.Text(), QStringLiteral("ab\ncd\ne\n"));
    EXPECT_EQ(box.TextLength(), 8);
    EXPECT_EQ(box.characterAt(2), QChar(u'\n'));

    box.setSelStart(3);
    box.setSelLength(4);
    EXPECT_EQ(box.SelText(), QStringLiteral("cd\ne"));
    // Out of range is clamped, a negative length refused.
    box.setSelStart(100);
    EXPECT_EQ(box.SelStart(), 8);
    box.setSelStart(-4);
    EXPECT_EQ(box.SelStart(), 0);
    box.setSelStart(6);
    EXPECT_TRUE(box.setSelLength(50));
    EXPECT_EQ(box.SelLength(), 2);
    EXPECT_FALSE(box.setSelLength(-1));
    EXPECT_EQ(box.SelStart(), 6);
    EXPECT_EQ(box.SelLength(), 2);
    box.setSelection(0, -1);
    EXPECT_EQ(box.SelLength(), 8);

    // Replacing the selection moves the caret behind the new text, and the
    // text read afterwards is the new one.
    box.setSelection(3, 5);
    box.setSelText("XYZ\nW");
    EXPECT_EQ(box.Text(), QStringLiteral("ab\nXYZ\nW\ne\n"));
    EXPECT_EQ(box.SelStart(), 8);
    EXPECT_EQ(box.SelLength(), 0);

    RichTextBox empty;
    EXPECT_EQ(empty.Text(), QString());
    EXPECT_EQ(empty.TextLength(), 0);

    // The text a box keeps from setText must be what its document holds,
    // also where the document turns a character into a paragraph break.
    for (const QString& given :
         {QStringLiteral("a\tb\u2028c\n\nd\u00A0"), QStringLiteral("a\u2029b"), QStringLiteral("a\uFDD0b\uFDD1c"),
          QStringLiteral("x\r\ny\n")}) {
        RichTextBox kept;
        kept.setText(given);
        QString held = kept.document()->toRawText();
        held.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
        EXPECT_EQ(kept.Text(), held) << given.toStdString();
        EXPECT_EQ(kept.Text().size(), kept.TextLength()) << given.toStdString();
    }
}

TEST(RichTextBox, RichContentMovesBetweenBoxesWithItsFormats)
{
    RichTextBox source;
    source.setText("alpha\nbeta\ngamma");
    source.setSelection(6, 10);
    source.setSelBold(true);
    source.setSelBackColor(kGreen);

    RichTextBox copy;
    copy.setTextRTF(source.TextRTF());
    EXPECT_EQ(copy.Text(), source.Text());
    EXPECT_TRUE(copy.formatAt(7).bold);
    EXPECT_EQ(copy.formatAt(9).backColor, Rgb(0x00FF00));
    EXPECT_FALSE(copy.formatAt(2).bold);
    source.setSelection(0, 5);
    source.setSelText("ALPHA");

    // A selection into the middle of another box, replacing its selection.
    RichTextBox target;
    target.setText("[]");
    source.setSelection(6, 11);  // "beta" and its line feed
    target.setSelection(1, 1);
    target.setSelRTF(source.SelRTF());
    EXPECT_EQ(target.Text(), QStringLiteral("[beta\n]"));
    EXPECT_TRUE(target.formatAt(1).bold);
    EXPECT_EQ(target.SelStart(), 6);

    // Two documents joined arrive one after the other.
    RichTextBox other;
    other.setText("second");
    RichTextBox joined;
    joined.setSelRTF(source.TextRTF() + other.TextRTF());
    EXPECT_EQ(joined.Text(), QStringLiteral("ALPHA\nbeta\ngammasecond"));
    // A line feed as content is a paragraph break.
    joined.setSelStart(0);
    joined.setSelRTF(RichText::fromPlainText("\n"));
    EXPECT_EQ(joined.Text(), QStringLiteral("\nALPHA\nbeta\ngammasecond"));
    // An empty value empties the box.
    joined.setTextRTF(RichText());
    EXPECT_EQ(joined.TextLength(), 0);
}

TEST(RichTextBox, PlainContentCarriesNoFormatIntoItsTarget)
{
    // Shown, as an editor is: its view adds no format of its own.
    RichTextBox plain;
    const std::unique_ptr<QTextEdit> view(plain.createView());
    view->show();
    plain.setText("one\n\ntwo\n");
    plain.setSelection(1, 5);
    const RichText content = plain.TextRTF();
    EXPECT_TRUE(content.isUnformatted());

    RichTextBox target;
    target.setText("bold text");
    target.SelectAll();
    target.setSelBold(true);
    EXPECT_FALSE(target.TextRTF().isUnformatted());
    // Into the middle of a bold run: the plain text stays plain.
    target.setSelection(4, 4);
    target.setSelRTF(content);
    EXPECT_EQ(target.Text(), QStringLiteral("boldone\n\ntwo\n text"));
    EXPECT_FALSE(target.formatAt(5).bold);
    EXPECT_TRUE(target.formatAt(0).bold);
    target.setTextRTF(content);
    EXPECT_EQ(target.Text(), plain.Text());
    EXPECT_FALSE(target.formatAt(0).bold);
}

TEST(RichTextBox, SaveAndLoadKeepTextFormatsAndBackColours)
{
    tvtest::TempDir dir;
    RichTextBox box;
    box.setText(QString::fromUtf8("Première ligne\n\tzweite Zeile €\nlast"));
    box.setSelection(0, 8);
    box.setSelBackColor(kGreen);
    box.setSelColor(kBlue);
    box.setSelection(16, 22);
    box.setSelItalic(true);
    const QString path = dir.qpath() + "/saved.rtf";
    ASSERT_FALSE(box.SaveFile(path));

    RichTextBox back;
    ASSERT_FALSE(back.LoadFile(path));
    EXPECT_EQ(back.Text(), box.Text());
    EXPECT_EQ(back.formatAt(3).backColor, Rgb(0x00FF00));
    EXPECT_EQ(back.formatAt(3).foreColor, Rgb(0x0000FF));
    EXPECT_EQ(back.formatAt(9).backColor, std::nullopt);
    EXPECT_TRUE(back.formatAt(18).italic);
    EXPECT_FALSE(back.formatAt(23).italic);

    // As text, and read back as text even though it looks like nothing else.
    const QString txt = dir.qpath() + "/saved.txt";
    ASSERT_FALSE(box.SaveFile(txt, RichTextBox::PlainTextFile));
    RichTextBox plain;
    ASSERT_FALSE(plain.LoadFile(txt));
    EXPECT_EQ(plain.Text(), box.Text());
}

TEST(RichTextBox, LoadsFilesByTheirContent)
{
    RichTextBox box;
    ASSERT_FALSE(box.LoadFile(data("letter-original.rtf")));
    EXPECT_TRUE(box.Text().startsWith(QString::fromUtf8("Lefèvre Facilities Ltd\n14 Canal Row\n")));
    EXPECT_EQ(box.Text().count('\n'), 15);
    const int at = int(box.Text().indexOf("maintenance contract"));
    EXPECT_TRUE(box.formatAt(at).bold);

    ASSERT_FALSE(box.LoadFile(data("utf16le-original.txt")));
    const QString utf16 = box.Text();
    EXPECT_TRUE(utf16.contains(QString::fromUtf8("Jalapeño")));

    // Failures are numbered and leave the box as it was.
    const auto missing = box.LoadFile(data("no-such-file.rtf"));
    EXPECT_EQ(missing.number, 53);
    const auto folder = box.LoadFile(tvtest::qDataPath(""));
    EXPECT_EQ(folder.number, 75);
    EXPECT_EQ(folder.description, QStringLiteral("Path/File access error"));
    EXPECT_EQ(box.Text(), utf16);
}

TEST(RichTextBox, LinesAreParagraphsUnlessShownAndWrapped)
{
    RichTextBox hidden;
    hidden.setText("first\nsecond line\nthird");
    EXPECT_EQ(hidden.LineFromChar(0), 0);
    EXPECT_EQ(hidden.LineFromChar(8), 1);
    EXPECT_EQ(hidden.LineIndex(2), 18);
    EXPECT_EQ(hidden.LineLength(8), 11);
    hidden.setSelStart(10);
    EXPECT_EQ(hidden.LineIndex(-1), 6);

    RichTextBox box;
    std::unique_ptr<QTextEdit> view(box.createView());
    view->resize(400, 300);
    QString longLine;
    for (int i = 0; i < 40; ++i)
        longLine += "word ";
    box.setText("short\n" + longLine + "\nend");
    box.setRightMargin(1500);  // 100 pixels
    const int endOfLong = 6 + int(longLine.size()) - 1;
    const int wrappedLine = box.LineFromChar(endOfLong);
    EXPECT_GT(wrappedLine, 2);
    EXPECT_EQ(box.LineFromChar(3), 0);
    EXPECT_EQ(box.LineIndex(1), 6);
    EXPECT_GT(box.LineIndex(2), 6);
    EXPECT_LT(box.LineLength(6), int(longLine.size()));
    EXPECT_EQ(box.LineFromChar(box.TextLength()), wrappedLine + 1);
    box.setRightMargin(1000000);
    EXPECT_EQ(box.LineFromChar(box.TextLength()), 2);
}

