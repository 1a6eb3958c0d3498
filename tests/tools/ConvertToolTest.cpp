// tallyvane-convert as scripts use it: exit status, output and messages.

#include "support/testsupport.h"

#include <QDir>
#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>
#include <unistd.h>

using tvtest::dataPath;

namespace {

struct Outcome {
    int status = -1;
    std::string err;
};

// `fileSizeLimit`, when given, is all the tool may write to a file.
Outcome convert(const QStringList& args, long fileSizeLimit = 0)
{
    QProcess p;
    if (fileSizeLimit > 0)
        p.setChildProcessModifier([fileSizeLimit] { tvtest::limitFileSize(fileSizeLimit); });
    p.start(QString::fromStdString(tvtest::binaryPath("tallyvane-convert")), args);
    Outcome o;
    if (!p.waitForFinished(60000))
        return o;
    o.status = p.exitCode();
    o.err = p.readAllStandardError().toStdString();
    return o;
}

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

} // namespace

TEST(ConvertTool, DocumentsSpreadsheetsAndPdf)
{
    tvtest::TempDir tmp;
    const QString out = q(tmp.file("o"));
    ASSERT_EQ(convert({q(dataPath("letter-original.docx")), out}).status, 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()).rfind("Lefèvre Facilities Ltd\n14 Canal Row\n", 0), 0u);
    ASSERT_EQ(convert({q(dataPath("letter-original.odt")), out, "--type", "6"}).status, 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()).rfind("{\\rtf1", 0), 0u);

    ASSERT_EQ(convert({q(dataPath("book-modified.ods")), out, "--sheets", "1", "--rows", "1,7", "--cols", "2-3"}).status, 0);
    // Padding comes before cropping, so the last column kept is padded to
    // its width too where its cells were not the last of their rows.
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "Customer         ,Date      \nQuayside Books   ,2024-03-11\n");
    ASSERT_EQ(convert({q(dataPath("book-original.xlsx")), out, "--sheets", "2", "--formulas", "--rows", "3"}).status, 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "Total value     ,=SUM(Orders!F2:F6)     ,sum of column F\n");

    EXPECT_EQ(convert({q(dataPath("letter-password.pdf")), out, "--password", "secret"}).status, 0);
    EXPECT_NE(tvtest::readFile(out.toStdString()).find("Kind regards,"), std::string::npos);
}

TEST(ConvertTool, FailuresGiveTheResultCodeAndAMessage)
{
    tvtest::TempDir tmp;
    const QString out = q(tmp.file("o"));
    Outcome o = convert({q(dataPath("letter-password.pdf")), out});
    EXPECT_EQ(o.status, 1);
    EXPECT_NE(o.err.find("password protected"), std::string::npos);
    o = convert({q(dataPath("book-original.xlsx")), out, "--sheets", "7"});
    EXPECT_EQ(o.status, 5);
    EXPECT_NE(o.err.find("Invalid sheet number specified"), std::string::npos);
    EXPECT_EQ(convert({q(dataPath("book-original.xlsx")), out, "--rows", "x"}).status, 5);
    EXPECT_EQ(convert({q(tmp.file("missing.docx")), out}).status, 3);
    EXPECT_EQ(convert({q(dataPath("letter-original.docx")), q(dataPath("letter-original.docx"))}).status, 6);
    EXPECT_EQ(convert({q(dataPath("letter-nocopy.pdf")), out}).status, 3);
    EXPECT_EQ(convert({"only-one"}).status, 64);
    EXPECT_EQ(convert({"a", "b", "--type", "3"}).status, 64);
    EXPECT_EQ(convert({"--help"}).status, 0);
}

TEST(ConvertTool, NeitherAFullDiskNorTheSourceAsTargetLosesAFile)
{
    tvtest::TempDir tmp;
    const std::string before = tvtest::sha256(dataPath("letter-original.docx"));
    const QString out = q(tmp.file("o.rtf"));
    tvtest::writeFile(out.toStdString(), "yesterday's conversion");
    // Each route: a document, a sheet, a PDF's text.
    const QStringList sources{q(dataPath("letter-original.docx")), q(dataPath("book-original.xlsx")), q(dataPath("letter-original.pdf"))};
    for (const QString& source : sources) {
        const Outcome o = convert({source, out}, 200);
        EXPECT_NE(o.status, 0) << source.toStdString();
        EXPECT_EQ(tvtest::readFile(out.toStdString()), "yesterday's conversion") << source.toStdString();
    }
    EXPECT_EQ(QDir(tmp.qpath()).entryList(QDir::Files | QDir::Hidden).size(), 1);

    // The source named again through a link is still the source.
    const std::string link = tmp.file("link.docx");
    ASSERT_EQ(::symlink(dataPath("letter-original.docx").c_str(), link.c_str()), 0);
    const Outcome same = convert({q(dataPath("letter-original.docx")), q(link)});
    EXPECT_NE(same.status, 0);
    EXPECT_EQ(tvtest::sha256(dataPath("letter-original.docx")), before);
}
