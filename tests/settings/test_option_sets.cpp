// The two option sets: every key saved once and in order, round trips, and
// a load broken off by a bad number.

#include "settings/IniStore.h"
#include "settings/clsCompareFileOptions.h"
#include "support/testsupport.h"

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
    EXPECT_EQ(other.sFileOriginal.Data(), "Uninitialized");
    EXPECT_EQ(other.lLineBracket.Data(), 1);
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
