// Saving an editor's document in each format of the save dialog, read back
// through our own readers; and the two ways a save must leave an old file
// alone: a read-only target and a disk that fills up half-way.

#include "document/RichTextBox.h"
#include "document/SaveRichText.h"

#include "components/lexiform/Lexiform.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QFile>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

const QString kText = QStringLiteral("First paragraph\n\tIndented <markup> & more\n\nLast: \u00e9t\u00e9 \u2013 fin");

lexiform::Document readBack(const QString& path)
{
    lexiform::Lexiform reader;
    lexiform::Document doc;
    EXPECT_EQ(reader.readDocument(path, doc), 0) << path.toStdString();
    return doc;
}

class SaveAs : public ::testing::TestWithParam<std::pair<tv::SaveFormat, const char*>> {};

TEST_P(SaveAs, WritesTheTextThatReadsBackTheSame)
{
    tvtest::TempDir dir;
    RichTextBox box;
    box.setText(kText);
    box.setSelection(6, 15);
    box.setSelBold(true);
    const QString target = dir.qpath() + QStringLiteral("/saved.") + QLatin1String(GetParam().second);
    const tv::SaveOutcome out = tv::SaveDocumentAs(*box.document(), target, GetParam().first);
    ASSERT_TRUE(out) << out.reason.toStdString();
    const lexiform::Document doc = readBack(target);
    EXPECT_EQ(doc.plainText(), kText);
    if (GetParam().first != tv::SaveFormat::PlainText) {
        ASSERT_GE(doc.paragraphs.size(), 1u);
        bool boldWord = false;
        for (const auto& run : doc.paragraphs.front().runs)
            boldWord |= run.format.bold && run.text == QStringLiteral("paragraph");
        EXPECT_TRUE(boldWord) << "the formats travel with the text";
    }
}

INSTANTIATE_TEST_SUITE_P(EachFormat, SaveAs,
                         ::testing::Values(std::make_pair(tv::SaveFormat::RichText, "rtf"),
                                           std::make_pair(tv::SaveFormat::PlainText, "txt"),
                                           std::make_pair(tv::SaveFormat::Word, "docx"),
                                           std::make_pair(tv::SaveFormat::Html, "html")));

TEST(SaveAsRefusal, AReadOnlyFileIsLeftAsItWas)
{
    tvtest::TempDir dir;
    const std::string target = dir.file("kept.rtf");
    tvtest::writeFile(target, "the user's own words\n");
    ASSERT_EQ(::chmod(target.c_str(), 0444), 0);
    const std::string before = tvtest::sha256(target);

    RichTextBox box;
    box.setText(QStringLiteral("something else"));
    for (tv::SaveFormat f : {tv::SaveFormat::RichText, tv::SaveFormat::Word}) {
        const tv::SaveOutcome out = tv::SaveDocumentAs(*box.document(), QString::fromStdString(target), f);
        EXPECT_EQ(out.result, -4);
        EXPECT_TRUE(out.reason.contains(QStringLiteral("read-only"))) << out.reason.toStdString();
    }
    EXPECT_EQ(tvtest::sha256(target), before);
    struct stat st {};
    ASSERT_EQ(::stat(target.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0444u);
}

TEST(SaveAsRefusal, AFullDiskKeepsTheOldFileAndSaysWhy)
{
    tvtest::TempDir dir;
    const std::string target = dir.file("old.txt");
    tvtest::writeFile(target, "old content\n");
    const std::string before = tvtest::sha256(target);
    const int rc = tvtest::runWithFileSizeLimit(4096, [&] {
        QTextDocument doc;
        doc.setPlainText(QString(20000, QLatin1Char('x')));
        const tv::SaveOutcome out = tv::SaveDocumentAs(doc, QString::fromStdString(target), tv::SaveFormat::PlainText);
        return out.result == -4 && !out.reason.isEmpty() ? 0 : 1;
    });
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(tvtest::sha256(target), before);
}

} // namespace
