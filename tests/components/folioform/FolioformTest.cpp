// PDF text: reading order, the password cases, the copy restriction, and
// files that are no PDF at all.

#include "components/folioform/Folioform.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <gtest/gtest.h>

using namespace folioform;
using tvtest::dataPath;

namespace {

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

// Non-blank lines with their blanks collapsed: page layout differs between
// extractors in line ends and spacing only.
std::vector<std::string> words(const std::string& text)
{
    std::vector<std::string> out;
    for (const QString& l : QString::fromStdString(text).split(QRegularExpression("[\n\f]"))) {
        QString t = l.simplified();
        if (!t.isEmpty())
            out.push_back(t.toStdString());
    }
    return out;
}

} // namespace

TEST(Folioform, TextMatchesIndependentExtraction)
{
    tvtest::TempDir tmp;
    Folioform pdf;
    const QString out = q(tmp.file("o.txt"));
    ASSERT_EQ(pdf.ConvertPdfDocument(q(dataPath("letter-original.pdf")), out, "", 1), Ok);
    const std::string text = tvtest::readFile(out.toStdString());
    EXPECT_EQ(words(text), words(tvtest::readFile(dataPath("letter-original.pdf.expected.txt"))));
    // Pages are separated by a blank line, no form feed.
    EXPECT_EQ(text.find('\f'), std::string::npos);
    EXPECT_NE(text.find("Facilities Manager\n\nEnclosure: visit schedule"), std::string::npos);
}

TEST(Folioform, PasswordsAndTheCopyRestriction)
{
    tvtest::TempDir tmp;
    Folioform pdf;
    const QString src = q(dataPath("letter-password.pdf"));
    const QString out = q(tmp.file("o.txt"));
    EXPECT_EQ(pdf.ConvertPdfDocument(src, out, "", 1), PasswordNeeded);
    EXPECT_EQ(pdf.ConvertPdfDocument(src, out, "wrong", 1), PasswordNeeded);
    EXPECT_FALSE(QFile::exists(out));
    ASSERT_EQ(pdf.ConvertPdfDocument(src, out, "secret", 1), Ok);
    EXPECT_EQ(words(tvtest::readFile(out.toStdString())),
              words(tvtest::readFile(dataPath("letter-password.pdf.expected.txt"))));
    // The owner password opens it as well.
    EXPECT_EQ(pdf.ConvertPdfDocument(src, out, "owner-A7x", 1), Ok);

    // Copying forbidden: only whoever holds the owner password may extract.
    const QString nocopy = q(dataPath("letter-nocopy.pdf"));
    EXPECT_EQ(pdf.ConvertPdfDocument(nocopy, out, "", 1), ExtractionForbidden);
    EXPECT_EQ(pdf.ConvertPdfDocument(nocopy, out, "owner-B9q", 1), Ok);
}

TEST(Folioform, BadArgumentsAndBadFiles)
{
    tvtest::TempDir tmp;
    Folioform pdf;
    const QString good = q(dataPath("letter-original.pdf"));
    EXPECT_EQ(pdf.ConvertPdfDocument("", q(tmp.file("o.txt")), "", 1), BadArguments);
    EXPECT_EQ(pdf.ConvertPdfDocument(good, "", "", 1), BadArguments);
    EXPECT_EQ(pdf.ConvertPdfDocument(good, q(tmp.file("o.txt")), "", 2), BadArguments);
    EXPECT_EQ(pdf.ConvertPdfDocument(good, good, "", 1), BadArguments);
    EXPECT_EQ(pdf.ConvertPdfDocument(q(tmp.file("missing.pdf")), q(tmp.file("o.txt")), "", 1), Unopenable);
    EXPECT_EQ(pdf.ConvertPdfDocument(good, q(tmp.file("no/folder/o.txt")), "", 1), Unopenable);

    const std::string bytes = tvtest::readFile(dataPath("letter-original.pdf"));
    const std::vector<std::pair<std::string, std::string>> bad = {
        {"empty.pdf", ""},
        {"text.pdf", "just some text\n"},
        {"header-only.pdf", "%PDF-1.7\n%%EOF\n"},
        {"truncated.pdf", bytes.substr(0, 2000)},
    };
    for (const auto& [name, content] : bad) {
        const std::string path = tmp.file(name);
        tvtest::writeFile(path, content);
        int rc = pdf.ConvertPdfDocument(q(path), q(tmp.file("o.txt")), "", 1);
        EXPECT_EQ(rc, Unopenable) << name;
        EXPECT_EQ(tvtest::readFile(path), content) << name;
    }
}
