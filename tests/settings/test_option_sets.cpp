// The two option sets: keys, defaults and order as the INI file sees them,
// round trips, and a load broken off by a bad number.

#include "settings/IniStore.h"
#include "settings/clsCompareFileOptions.h"
#include "settings/clsCompareFolderOptions.h"
#include "support/testsupport.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

QString report(const clsOptionSet& set)
{
    QString text;
    QTextStream out(&text);
    set.CreateReport_ActiveData(out);
    out.flush();
    return text;
}

QStringList reportLines(const char* const* rows, size_t n)
{
    QStringList lines;
    for (size_t i = 0; i < n; ++i)
        lines << QString("   ") + rows[i];
    return lines;
}

// Keys and first-start values in load order, as a report prints them.
const char* const kFileDefaults[] = {
    "sFileOriginal = Uninitialized", "sFileModified = Uninitialized",
    "bIgnoreCase = False", "bIgnoreWhitespace = False", "bIgnoreEmptyLines = False",
    "bBeepWhenDone = False", "bQuickCompare = False", "bShowReportOnly = False",
    "bRefreshGUI = False", "bReloadOnRefresh = True", "lSliderRefreshRate = 10",
    "bRemoveFormatting = False", "bShowSimilarContent = True",
    "bShowChangesInLargerSections = False", "bCompareFaster = False", "bUseLineBracket = False",
    "lLineBracket = 1", "bSelectTextInDiffViewer = False", "bShowChanges = True",
    "bShowAdditions = True", "bShowDeletions = True",
    "bViewChangeUnderlineOriginal = False", "bViewChangeStrikeoutOriginal = True",
    "bViewChangeBoldOriginal = True", "bViewChangeItalicOriginal = False",
    "lViewChangeBackColorOriginal = 16777215", "lViewChangeForeColorOriginal = 255",
    "bViewChangeBoldModified = True", "bViewChangeItalicModified = False",
    "bViewChangeUnderlineModified = True", "bViewChangeStrikeoutModified = False",
    "lViewChangeBackColorModified = 16777215", "lViewChangeForeColorModified = 255",
    "bViewAdditionUnderline = True", "bViewAdditionStrikeout = False",
    "bViewAdditionBold = True", "bViewAdditionItalic = False",
    "lViewAdditionBackColor = 16777215", "lViewAdditionForeColor = 32768",
    "bViewDeletionUnderline = False", "bViewDeletionStrikeout = True",
    "bViewDeletionBold = True", "bViewDeletionItalic = False",
    "lViewDeletionBackColor = 16777215", "lViewDeletionForeColor = 16711680",
    "bExcelCompareFormulas = False", "sExcelSheetNumberMaster = 1",
    "bExcelUseRowsMaster = False", "sExcelRowsMaster = 1", "bExcelUseColsMaster = False",
    "sExcelColsMaster = 1", "sExcelSheetNumberSource = 1", "bExcelUseRowsSource = False",
    "sExcelRowsSource = 1", "bExcelUseColsSource = False", "sExcelColsSource = 1",
    "bRemoveBlankLines = False", "bHTMLCompareSource = False",
};

const char* const kFolderDefaults[] = {
    "sFolderOriginal = /", "sFolderModified = /", "sExtension = *.*",
    "bBeepWhenDone = False", "bStreamFindings = True", "bContentCompare = True",
    "bShowOnlyInMaster = True", "bShowOnlyInSource = True", "bShowSameInBothPlaces = True",
    "bShowDifferentInBothPlaces = True", "bIgnoreDateDifferences = False",
    "bDoSubDirectories = True", "bShowDateOnlyDifferent = True",
};

// Gives every value of a set something other than its default.
void scramble(clsOptionSet& set, int seed)
{
    int n = seed;
    for (clsVarBase* item : set.Items()) {
        ++n;
        if (auto* b = dynamic_cast<clsVarBoolean*>(item))
            *b = !b->DataDefault();
        else if (auto* l = dynamic_cast<clsVarLong*>(item))
            *l = 1000 + n;
        else if (auto* s = dynamic_cast<clsVarString*>(item))
            *s = QString("value %1 of %2").arg(n).arg(item->Name());
    }
}

class OptionSetTest : public ::testing::Test {
protected:
    tvtest::TempDir dir;
    QString ini = dir.qpath() + "/Tallyvane.INI";
};

TEST_F(OptionSetTest, FileOptionsFirstStartKeysDefaultsAndOrder)
{
    clsCompareFileOptions opts;
    EXPECT_EQ(opts.Section(), "CompareFileOptions");
    ASSERT_EQ(opts.Items().size(), 58u);
    opts.setSection("1_CompareFile");
    opts.LoadStateFromFile(ini);
    EXPECT_EQ(report(opts).split('\n', Qt::SkipEmptyParts),
              reportLines(kFileDefaults, std::size(kFileDefaults)));
    EXPECT_EQ(opts.sFileOriginal.Data(), "Uninitialized");
    EXPECT_TRUE(opts.bShowSimilarContent.Data());
    EXPECT_EQ(opts.lViewDeletionForeColor.Data(), 0xFF0000);
}

TEST_F(OptionSetTest, FolderOptionsFirstStartKeysDefaultsAndOrder)
{
    clsCompareFolderOptions opts;
    EXPECT_EQ(opts.Section(), "CompareFolderOptions");
    ASSERT_EQ(opts.Items().size(), 13u);
    opts.setSection("1_CompareDir");
    opts.LoadStateFromFile(ini);
    EXPECT_EQ(report(opts).split('\n', Qt::SkipEmptyParts),
              reportLines(kFolderDefaults, std::size(kFolderDefaults)));
}

TEST_F(OptionSetTest, SaveWritesEveryKeyOnceInOrderAndLoadBringsItBack)
{
    clsCompareFileOptions saved;
    saved.setSection("1_CompareFile");
    scramble(saved, 0);
    saved.SaveStateToFile(ini);

    const QString text = QString::fromStdString(readFile(ini.toStdString()));
    QStringList keys;
    for (const QString& line : text.split('\n', Qt::SkipEmptyParts))
        if (!line.startsWith('['))
            keys << line.section('=', 0, 0);
    QStringList expected;
    for (const clsVarBase* item : std::as_const(saved).Items())
        expected << item->Name();
    EXPECT_EQ(keys, expected);
    EXPECT_TRUE(text.startsWith("[1_CompareFile]\nsFileOriginal=value 1 of sFileOriginal\n"));

    clsCompareFileOptions loaded;
    loaded.setSection("1_compareFILE");
    loaded.LoadStateFromFile(ini);
    EXPECT_EQ(report(loaded), report(saved));

    // Another viewer's section knows nothing of viewer 1.
    clsCompareFileOptions other;
    other.setSection("2_CompareFile");
    other.LoadStateFromFile(ini);
    EXPECT_EQ(report(other).split('\n', Qt::SkipEmptyParts),
              reportLines(kFileDefaults, std::size(kFileDefaults)));
}

TEST_F(OptionSetTest, BadNumberBreaksOffTheRestOfTheLoad)
{
    writeFile(ini.toStdString(),
              "[1_CompareFile]\n"
              "sFileOriginal=/home/me/a.txt\n"
              "bIgnoreEmptyLines=TRUE\n"
              "lSliderRefreshRate=ten\n"
              "bRemoveFormatting=TRUE\n"
              "lLineBracket=4\n");
    clsCompareFileOptions opts;
    opts.setSection("1_CompareFile");
    EXPECT_THROW(opts.LoadStateFromFile(ini), SettingTypeError);
    // Before the bad value: loaded, the stored empty-lines choice included.
    EXPECT_EQ(opts.sFileOriginal.Data(), "/home/me/a.txt");
    EXPECT_TRUE(opts.bIgnoreEmptyLines.Data());
    EXPECT_TRUE(opts.bReloadOnRefresh.Data());
    // From it on: initial values, not defaults and not what is stored.
    EXPECT_EQ(opts.lSliderRefreshRate.Data(), 0);
    EXPECT_FALSE(opts.bRemoveFormatting.Data());
    EXPECT_FALSE(opts.bShowSimilarContent.Data());
    EXPECT_EQ(opts.lLineBracket.Data(), 0);
    EXPECT_EQ(opts.sFileModified.Data(), "Uninitialized");
    EXPECT_EQ(opts.sExcelColsSource.Data(), "Not Initialized");
}

} // namespace
