// The built program from the command line, without a display: exit status,
// report files of each type and style, the log file's last message, silence
// about bad arguments unless asked, and documents of every kind compared with
// the switches that shape their conversion taking effect.

#include "shell/modMain.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

class ProgramRun : public ::testing::Test {
protected:
    struct Result {
        int status = -1;
        QString err;
    };
    Result run(const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove("DISPLAY");
        env.remove("WAYLAND_DISPLAY");
        env.remove("QT_QPA_PLATFORM");
        env.insert("XDG_CONFIG_HOME", dir.qpath() + "/config");
        env.insert("XDG_DATA_HOME", dir.qpath() + "/data");
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.qpath());
        p.start(QString::fromStdString(tvtest::binaryPath("tallyvane")), args);
        if (!p.waitForFinished(60000)) {
            p.kill();
            p.waitForFinished();
            return {};
        }
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2,
                QString::fromLocal8Bit(p.readAllStandardError())};
    }
    QString data(const char* name) const { return tvtest::qDataPath(name); }
    QString at(const QString& name) const { return dir.qpath() + "/" + name; }
    std::string text(const QString& name) const { return readFile(at(name).toStdString()); }
    static bool has(const std::string& s, const std::string& part) { return s.find(part) != std::string::npos; }

    tvtest::TempDir dir;
};

TEST_F(ProgramRun, AFileComparisonWritesEachReportAndEndsWithZero)
{
    writeFile(dir.file("a.txt"), "alpha\nbeta\ngamma\n");
    writeFile(dir.file("b.txt"), "alpha\nBETA\ngamma\ndelta\n");
    const QStringList files{"a.txt", "b.txt"};
    // -G has no effect on a file comparison: differences or not, 0.
    const Result aio = run(files + QStringList{"-T", "aio.htm", "-R1", "-F1", "-X", "-G", "-L", "run.log"});
    EXPECT_EQ(aio.status, 0);
    EXPECT_TRUE(aio.err.isEmpty()) << aio.err.toStdString();
    EXPECT_EQ(text("run.log"), "Successfully Compared " + at("a.txt").toStdString() + " to "
                                   + at("b.txt").toStdString() + "\n");
    EXPECT_EQ(run(files + QStringList{"-T", "sbs.htm", "-F2", "-X", "-G"}).status, 0);
    EXPECT_EQ(run(files + QStringList{"-T", "r.txt", "-R2", "-X"}).status, 0);
    EXPECT_EQ(run(files + QStringList{"-T", "r.csv", "-R3"}).status, 0) << "without a display it ends anyway";
    EXPECT_TRUE(has(text("aio.htm"), "<html"));
    EXPECT_TRUE(has(text("sbs.htm"), "<html"));
    EXPECT_NE(text("aio.htm"), text("sbs.htm"));
    EXPECT_TRUE(has(text("r.txt"), "\n-beta\n+BETA\n"));
    EXPECT_TRUE(has(text("r.csv"), "delta"));
    // Ending at once closes no window: nothing of the run is saved.
    EXPECT_FALSE(QFile::exists(at("config/Tallyvane/Tallyvane.INI")));
}

TEST_F(ProgramRun, BadArgumentsAreSilentUnlessLoggedOrVerbose)
{
    const Result quiet = run({"missing.txt", "gone.txt", "-T", "r.htm", "-X"});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_TRUE(quiet.err.isEmpty()) << quiet.err.toStdString();
    EXPECT_FALSE(QFile::exists(at("r.htm")));

    const Result logged = run({"missing.txt", "gone.txt", "-L", "run.log"});
    EXPECT_EQ(logged.status, 0);
    EXPECT_TRUE(logged.err.isEmpty()) << logged.err.toStdString();
    EXPECT_EQ(text("run.log"), "Missing required command line argument(s)\n");

    const Result verbose = run({"missing.txt", "-V"});
    EXPECT_TRUE(verbose.err.contains("Missing required command line argument(s)")) << verbose.err.toStdString();
}

// Until the folder viewer is part of the build.
TEST_F(ProgramRun, AFolderComparisonSaysItNeedsTheFolderViewer)
{
    QDir().mkpath(at("A"));
    QDir().mkpath(at("B"));
    const Result r = run({"-D", "-M", "A", "-S", "B", "-X", "-G", "-L", "run.log"});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.err.contains(kNoFolderViewerMessage)) << r.err.toStdString();
    EXPECT_EQ(text("run.log"), std::string(kNoFolderViewerMessage) + "\n");
}

TEST_F(ProgramRun, WordAndOpenDocumentLettersCompareByParagraph)
{
    for (const char* ext : {"docx", "odt", "rtf", "html"}) {
        const QString report = QString("letter-%1.txt").arg(ext);
        run({data(QString("letter-original.%1").arg(ext).toUtf8()),
             data(QString("letter-modified.%1").arg(ext).toUtf8()), "-T", report, "-R2", "-X"});
        const std::string t = text(report);
        EXPECT_TRUE(has(t, "-Thank you for your letter of 3 March")) << ext << "\n" << t;
        EXPECT_TRUE(has(t, "+Thank you for your letter of 5 March")) << ext;
        EXPECT_TRUE(has(t, "-As discussed, the monthly fee")) << ext;
        EXPECT_TRUE(has(t, "+In addition, the fire alarm test")) << ext;
        EXPECT_FALSE(has(t, "-Dear Ms Whitfield")) << ext;
    }
}

TEST_F(ProgramRun, PdfLettersCompareAndALockedOneIsReportedWithoutAQuestion)
{
    run({data("letter-original.pdf"), data("letter-modified.pdf"), "-T", "pdf.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("pdf.txt"), "+In addition, the fire alarm test")) << text("pdf.txt");
    // Nobody can be asked for the password: the run ends instead of waiting.
    const Result locked = run({data("letter-password.pdf"), data("letter-original.pdf"), "-X", "-V"});
    EXPECT_EQ(locked.status, 0);
    EXPECT_TRUE(locked.err.contains("password", Qt::CaseInsensitive)) << locked.err.toStdString();
}

TEST_F(ProgramRun, SpreadsheetSwitchesChooseSheetsRowsColumnsAndFormulas)
{
    const QStringList books{data("book-original.xlsx"), data("book-modified.xlsx")};
    run(books + QStringList{"-T", "values.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("values.txt"), "117.60")) << text("values.txt");
    EXPECT_FALSE(has(text("values.txt"), "=D3*E3"));
    EXPECT_FALSE(has(text("values.txt"), "Draft")) << "sheet 1 only by default";

    run(books + QStringList{"-A", "-T", "formulas.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("formulas.txt"), "=D7*E7")) << text("formulas.txt");
    EXPECT_FALSE(has(text("formulas.txt"), "134.40"));

    run(books + QStringList{"-Y2", "-Z", "2", "-T", "summary.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("summary.txt"), "Draft")) << text("summary.txt");
    EXPECT_TRUE(has(text("summary.txt"), "Final"));
    EXPECT_FALSE(has(text("summary.txt"), "Northwind"));

    // Rows 1 to 3 on both sides: only the change in row 3 is left.
    run(books + QStringList{"-1", "1-3", "-3", "1-3", "-T", "rows.csv", "-R3", "-X"});
    EXPECT_TRUE(has(text("rows.csv"), "147.00")) << text("rows.csv");
    EXPECT_FALSE(has(text("rows.csv"), "Quayside"));

    // Columns A and B on both sides: only the added order is left.
    run(books + QStringList{"-2", "1-2", "-4", "1-2", "-T", "cols.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("cols.txt"), "Quayside Books")) << text("cols.txt");
    EXPECT_FALSE(has(text("cols.txt"), "147.00"));
    EXPECT_FALSE(has(text("cols.txt"), "-O-1002"));

    for (const char* ext : {"ods", "xls"}) {
        const QString report = QString("book-%1.txt").arg(ext);
        run({data(QString("book-original.%1").arg(ext).toUtf8()), data(QString("book-modified.%1").arg(ext).toUtf8()),
             "-T", report, "-R2", "-X"});
        EXPECT_TRUE(has(text(report), "Quayside Books")) << ext << "\n" << text(report);
    }
}

TEST_F(ProgramRun, HtmlSourceAndBlankLineSwitchesTakeEffect)
{
    run({data("letter-original.html"), data("letter-modified.html"), "-H", "-T", "source.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("source.txt"), "<")) << "the markup is compared\n" << text("source.txt");

    writeFile(dir.file("a.txt"), "one\n\ntwo\n\n\nthree\n");
    writeFile(dir.file("b.txt"), "one\ntwo\nthree\n");
    run({"a.txt", "b.txt", "-T", "blank.txt", "-R2", "-X"});
    EXPECT_TRUE(has(text("blank.txt"), "@@")) << text("blank.txt");
    run({"a.txt", "b.txt", "-E", "-T", "noblank.txt", "-R2", "-X"});
    EXPECT_FALSE(has(text("noblank.txt"), "@@")) << text("noblank.txt");
    EXPECT_EQ(text("a.txt"), "one\n\ntwo\n\n\nthree\n") << "the user's file is never changed";
}

} // namespace
