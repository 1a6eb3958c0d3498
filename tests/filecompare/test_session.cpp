// The compare session on its own, without a form: the result of a run with
// the word-level records of its changes, and the rule for requests that
// come in during a run.

#include "core/modGlobal.h"
#include "document/RichTextBox.h"
#include "filecompare/FileCompareSession.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

using filecompare::FileCompareSession;

namespace {

TEST(FileCompareSession, AChangeCarriesItsWordRecordsAndTheResultLinesTheSidesUp)
{
    tvtest::TempDir dir;
    const QString savedMaster = gsMasterTextFile, savedSource = gsSourceTextFile;
    gsMasterTextFile = dir.qpath() + "/m.txt";
    gsSourceTextFile = dir.qpath() + "/s.txt";
    const QStringList original{"alpha", "the quick brown fox", "middle", "gone", "omega"};
    const QStringList modified{"alpha", "the quick red fox", "middle", "omega", "added"};
    auto section = [&](bool o, qint32 first, qint32 last) {
        return (o ? original : modified).mid(first - 1, last - first + 1).join('\n');
    };
    FileCompareSession session;
    const auto& r = session.compare(original.join('\n'), modified.join('\n'), section);
    gsMasterTextFile = savedMaster;
    gsSourceTextFile = savedSource;

    ASSERT_TRUE(r.ok());
    ASSERT_EQ(r.count(), 3);
    EXPECT_EQ(r.changes() + r.deletions() + r.additions(), 3);
    EXPECT_EQ(r.counterpartParagraph(4, true), 4) << "a deleted paragraph stands beside what follows the gap";
    const filecompare::Difference& change = *r.at(0);
    EXPECT_EQ(change.kind, filecompare::kKindChange);
    // "brown " against "red ": word 3 of each side.
    ASSERT_EQ(change.words.size(), 1u);
    EXPECT_EQ(change.words[0].kind, filecompare::kKindChange);
    EXPECT_EQ(change.words[0].lf, 3);
    EXPECT_EQ(change.words[0].rf, 3);
    EXPECT_TRUE(r.at(1)->words.empty()) << "only changes are compared word by word";
    EXPECT_EQ(r.at(3), nullptr);
}

TEST(FileCompareSession, ARequestDuringARunIsKeptOnceAndAnAbortDropsIt)
{
    FileCompareSession session;
    EXPECT_FALSE(session.deferIfBusy(true, true)) << "no run: the request runs now";
    bool reload = false, show = false;
    {
        FileCompareSession::Run run(session);
        FileCompareSession::Run nested(session);
        EXPECT_TRUE(nested.outermost() == false && run.outermost());
        EXPECT_TRUE(session.deferIfBusy(true, false));
        EXPECT_TRUE(session.deferIfBusy(false, true)) << "the last request wins";
    }
    EXPECT_FALSE(session.busy());
    ASSERT_TRUE(session.takeRerun(reload, show));
    EXPECT_FALSE(reload);
    EXPECT_TRUE(show);
    EXPECT_FALSE(session.takeRerun(reload, show)) << "repeated once";

    {
        FileCompareSession::Run run(session);
        session.deferIfBusy(true, true);
        session.abort();
    }
    EXPECT_FALSE(session.takeRerun(reload, show));
}

TEST(FileCompareSession, ATextOnlyLoadReadsWhatAnEditorWouldHold)
{
    tvtest::TempDir dir;
    auto written = [&](const char* name, const QByteArray& bytes) {
        const QString path = dir.qpath() + "/" + name;
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return path;
    };
    const QStringList files{tvtest::qDataPath("text-crlf-original.txt"), tvtest::qDataPath("latin1-original.txt"),
                            tvtest::qDataPath("utf16le-original.txt"),
                            written("mixed.txt", "lone\rcr\r\ncrlf\n\ttab \xe2\x80\xa8 line separator\n\n")};
    for (const QString& file : files) {
        RichTextBox editor;
        ASSERT_FALSE(editor.LoadFile(file)) << file.toStdString();
        QString text;
        ASSERT_TRUE(FileCompareSession::PlainTextOf(file, text)) << file.toStdString();
        EXPECT_EQ(text, editor.Text()) << file.toStdString();
    }
    // Where a document would break a paragraph that the file's lines do not,
    // and for rich text, the editor's own road is taken.
    QString text;
    EXPECT_FALSE(FileCompareSession::PlainTextOf(written("sep.txt", "a\xe2\x80\xa9" "b\n"), text));
    EXPECT_FALSE(FileCompareSession::PlainTextOf(written("r.rtf", "{\\rtf1 x}"), text));
    EXPECT_FALSE(FileCompareSession::PlainTextOf(dir.qpath() + "/missing.txt", text));
}

TEST(FileCompareSession, AWorkFileHoldsTheTextWholeAcrossItsPieces)
{
    // The text is written a megabyte at a time: a character outside the
    // basic plane that straddles a piece must come out whole.
    tvtest::TempDir dir;
    const QString path = dir.qpath() + "/work.txt";
    const QString text = QString((1 << 20) - 1, QLatin1Char('a')) + QString::fromUtf8("\xF0\x9F\x98\x80 end");
    ASSERT_TRUE(FileCompareSession::WriteWholeText(text, path));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), text.toUtf8() + "\r\n");
    ASSERT_TRUE(FileCompareSession::WriteWholeText(QStringLiteral("ends\n"), path));
    f.close();
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("ends\n"));
}

} // namespace
