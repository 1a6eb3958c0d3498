// The road of a file into the viewer's editors: the fixture files of each
// encoding, line-end convention and office format arriving with the right
// text, and bad input refused with its message while the editor keeps what
// it held and the user's file stays as it was.

#include "filecompare/viewer_fixture.h"

#include <QComboBox>
#include <QFile>

using tvtest::ViewerTest;

namespace {

class LoadPipelineTest : public ViewerTest {
protected:
    static QString fixture(const char* name) { return tvtest::qDataPath(QLatin1String(name)); }
};

TEST_F(LoadPipelineTest, TheRtfLetterKeepsItsFormatsUnderTheMarks)
{
    compare(fixture("letter-original.rtf"), fixture("letter-modified.rtf"));
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->Text().contains("Lefèvre Facilities Ltd"));
    const int bold = int(box(frmCompareFiles::kOriginal)->Text().indexOf("maintenance contract"));
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->formatAt(bold).bold);
    RichTextBox* right = box(frmCompareFiles::kModifiedDiffFinal);
    EXPECT_TRUE(right->formatAt(int(right->Text().indexOf("south"))).underline);
}

TEST_F(LoadPipelineTest, LoadsAreRememberedInTheRecentListsAndOptions)
{
    const QString a = fixture("text-lf-original.txt");
    const QString b = fixture("text-crlf-original.txt");
    ASSERT_TRUE(viewer->LoadOriginalFile(a));
    ASSERT_TRUE(viewer->LoadOriginalFile(b));
    EXPECT_EQ(viewer->Options().sFileOriginal.Data(), b);
    EXPECT_EQ(ui<QComboBox>("cbSelectOriginal")->count(), 2);
    EXPECT_EQ(ui<QComboBox>("cbSelectOriginal")->itemText(0), b) << "the newest on top";
    EXPECT_EQ(ui<QComboBox>("cbSelectOriginal")->currentText(), b);
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kOriginal));
}

TEST_F(LoadPipelineTest, BadInputGetsItsMessageAndTheEditorKeepsItsText)
{
    ASSERT_TRUE(viewer->LoadOriginalFile(fixture("text-lf-original.txt")));
    const QString before = box(frmCompareFiles::kOriginal)->Text();

    // A missing file.
    const QString missing = dir.qpath() + "/missing.txt";
    EXPECT_FALSE(viewer->LoadOriginalFile(missing));
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_EQ(dialogs.boxes[0], "Error | File does not exist:\n\n" + missing);

    // An empty path: the file check says so, and the editor's own load too.
    EXPECT_FALSE(viewer->LoadOriginalFile(""));
    EXPECT_EQ(dialogs.boxes.last(), "Error | File does not exist:\n\n");
    EXPECT_FALSE(viewer->LoadFileIntoEditor("", frmCompareFiles::kOriginal));
    EXPECT_EQ(dialogs.logged.last(), "Unable to load file. Filename empty");

    // A binary file.
    const QString binary = dir.qpath() + "/program.bin";
    tvtest::writeFile(binary.toStdString(), std::string("\x7f" "ELF\x02\x01\x01\x00\x00\x00 junk", 16));
    EXPECT_FALSE(viewer->LoadOriginalFile(binary));
    EXPECT_EQ(dialogs.logged.last(), "LoadFileIntoEditor(): Unable to load file: it holds no text.\n\n" + binary);
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->Text(), before);

    // A damaged office document: its converter's message, and the same.
    const QString broken = dir.qpath() + "/broken.docx";
    tvtest::writeFile(broken.toStdString(), "PK\x03\x04 this is no zip archive");
    EXPECT_FALSE(viewer->LoadOriginalFile(broken));
    EXPECT_TRUE(dialogs.logged.last().startsWith("LoadFileIntoEditor(): Unable to convert Word file."))
        << dialogs.logged.last().toStdString();
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->Text(), before);
    EXPECT_EQ(viewer->Options().sFileOriginal.Data(), broken) << "the name is kept even so";
}

TEST_F(LoadPipelineTest, ACorruptRtfLoadsWhatCanBeReadAndLeavesTheFileAlone)
{
    const std::string whole = tvtest::readFile(tvtest::dataPath("letter-original.rtf"));
    const QString cut = dir.qpath() + "/cut.rtf";
    // Cut in the middle of the letter's text, with garbage behind.
    const size_t middle = whole.find("Thank you");
    ASSERT_NE(middle, std::string::npos);
    const std::string truncated = whole.substr(0, middle + 20) + "{{{\\b\\u99999999 \\'zz";
    tvtest::writeFile(cut.toStdString(), truncated);
    QFile::setPermissions(cut, QFile::ReadOwner);
    ASSERT_TRUE(viewer->LoadOriginalFile(cut));
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->Text().startsWith("Lefèvre Facilities Ltd"));
    EXPECT_EQ(tvtest::readFile(cut.toStdString()), truncated);
    EXPECT_FALSE(QFile::permissions(cut) & QFile::WriteOwner) << "still read-only";
}

TEST_F(LoadPipelineTest, ThePickerLoadsIntoTheEditorAndRemembersItsFilter)
{
    dialogs.nextFile = fixture("text-crlf-original.txt");
    dialogs.nextFilterIndex = 2;
    viewer->PickFileForEditor(frmCompareFiles::kModified);
    ASSERT_EQ(dialogs.filePicks.size(), 1u);
    EXPECT_EQ(viewer->LastFileFilterIndex(), 2);
    EXPECT_TRUE(box(frmCompareFiles::kModified)->Text().startsWith("Packing list"));
    EXPECT_EQ(ui<QComboBox>("cbSelectModified")->currentText(), dialogs.nextFile);
    EXPECT_EQ(viewer->Options().sFileModified.Data(), dialogs.nextFile);

    // Cancelled: nothing changes.
    dialogs.nextFile.clear();
    viewer->PickFileForEditor(frmCompareFiles::kModified);
    EXPECT_TRUE(box(frmCompareFiles::kModified)->Text().startsWith("Packing list"));
    EXPECT_EQ(dialogs.filePicks[1].filterIndex, 2) << "the last filter is offered again";
}

} // namespace
