// Legacy formats through the programs that read them: the order in which
// they are tried, what their absence gives, and the time limit.

#include "LexiformTestUtil.h"
#include "components/lexiform/Lexiform.h"
#include "support/testsupport.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

using namespace lexiform;
using namespace lexiformtest;
using tvtest::dataPath;

namespace {

// PATH holds only a folder of fake programs while the object lives.
class FakePrograms {
public:
    FakePrograms() : saved_(qgetenv("PATH")) { qputenv("PATH", QByteArray::fromStdString(dir_.path())); }
    ~FakePrograms() { qputenv("PATH", saved_); }

    void add(const std::string& name, const std::string& script)
    {
        const std::string path = dir_.file(name);
        tvtest::writeFile(path, "#!/bin/sh\n" + script + "\n");
        QFile::setPermissions(q(path), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    std::string log() const
    {
        return QFile::exists(q(dir_.file("calls"))) ? tvtest::readFile(dir_.file("calls")) : std::string();
    }
    std::string file(const std::string& n) const { return dir_.file(n); }

private:
    tvtest::TempDir dir_;
    QByteArray saved_;
};

} // namespace

TEST(ExternalPrograms, NothingInstalledGivesProgramMissing)
{
    tvtest::TempDir tmp;
    FakePrograms none;
    Lexiform lx;
    for (std::string name : {"a.doc", "a.wpd", "a.wps", "a.mcw"}) {
        tvtest::writeFile(tmp.file(name), std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + "rest");
        EXPECT_EQ(lx.ConvertDocument(q(tmp.file(name)), q(tmp.file("o.rtf")), TypeRichText), ProgramMissing) << name;
    }
}

TEST(ExternalPrograms, TriedInTurnThenTheOfficeSuite)
{
    tvtest::TempDir tmp;
    FakePrograms fake;
    const std::string calls = fake.file("calls");
    fake.add("antiword", "echo antiword >> " + calls + "; exit 1");
    fake.add("catdoc", "echo catdoc >> " + calls + "; echo 'from catdoc'");
    Lexiform lx;
    const QString doc = q(dataPath("letter-original.doc"));
    ASSERT_EQ(lx.ConvertDocument(doc, q(tmp.file("o.txt")), TypePlainText), Ok);
    EXPECT_EQ(tvtest::readFile(tmp.file("o.txt")), "from catdoc\n");
    EXPECT_EQ(fake.log(), "antiword\ncatdoc\n");

    // Both fail: the office suite is asked, here a stand-in writing the text file.
    fake.add("catdoc", "exit 3");
    fake.add("soffice", "echo \"$@\" >> " + calls
                            + "; for a; do out=$prev; prev=$a; done; "
                              "printf '\\357\\273\\277from suite\\n' > \"$out/letter-original.txt\"");
    ASSERT_EQ(lx.ConvertDocument(doc, q(tmp.file("o.txt")), TypePlainText), Ok);
    EXPECT_EQ(tvtest::readFile(tmp.file("o.txt")), "from suite\n");
    EXPECT_NE(fake.log().find("--headless"), std::string::npos);

    // Everything that is there fails: the file is taken as invalid.
    fake.add("soffice", "exit 1");
    EXPECT_EQ(lx.ConvertDocument(doc, q(tmp.file("o.txt")), TypePlainText), SourceInvalid);
}

TEST(ExternalPrograms, AHangingProgramIsStoppedAtTheTimeLimit)
{
    tvtest::TempDir tmp;
    FakePrograms fake;
    fake.add("wpd2text", "exec sleep 30");
    tvtest::writeFile(tmp.file("a.wpd"), "\xFFWPC....");
    Lexiform lx;
    lx.setExternalTimeoutMs(300);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(lx.ConvertDocument(q(tmp.file("a.wpd")), q(tmp.file("o.txt")), TypePlainText), SourceInvalid);
    EXPECT_LT(timer.elapsed(), 10000);
}
