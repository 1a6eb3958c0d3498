// The compare options page and the advanced dialog: what each control writes,
// which changes make the view stale, and the samples of the formats.

#include "filecompare/CompareOptionsPage.h"
#include "filecompare/frmCompareFilesAdvanced.h"
#include "settings/clsCompareFileOptions.h"
#include "support/qstring_print.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <gtest/gtest.h>

using filecompare::CompareOptionsPage;

namespace {

class OptionsPageTest : public ::testing::Test {
protected:
    OptionsPageTest()
    {
        page.RefreshCompareOptionsGUI();
    }
    template <class T>
    T* child(const char* name)
    {
        T* w = page.findChild<T*>(QLatin1String(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }

    clsCompareFileOptions options;
    CompareOptionsPage page{options};
    QSignalSpy stale{&page, &CompareOptionsPage::diffViewStale};
};

TEST_F(OptionsPageTest, EachControlWritesItsOptionAndOnlyCompareOptionsMakeTheViewStale)
{
    using B = clsVarBoolean clsCompareFileOptions::*;
    const struct {
        const char* box;
        B member;
        bool stale;
    } boxes[] = {
        {"cbIgnoreCase", &clsCompareFileOptions::bIgnoreCase, true},
        {"cbIgnoreWhiteSpace", &clsCompareFileOptions::bIgnoreWhitespace, true},
        {"cbIgnoreEmptyLines", &clsCompareFileOptions::bIgnoreEmptyLines, true},
        {"cbShowSimilarContent", &clsCompareFileOptions::bShowSimilarContent, true},
        {"cbShowChanges", &clsCompareFileOptions::bShowChanges, true},
        {"cbShowAdditions", &clsCompareFileOptions::bShowAdditions, true},
        {"cbShowDeletions", &clsCompareFileOptions::bShowDeletions, true},
        {"cbCompareFormulas", &clsCompareFileOptions::bExcelCompareFormulas, true},
        {"cbHTMLCompareSource", &clsCompareFileOptions::bHTMLCompareSource, true},
        {"cbQuickCompare", &clsCompareFileOptions::bQuickCompare, false},
        {"cbBeepWhenDone", &clsCompareFileOptions::bBeepWhenDone, false},
        {"cbRemoveFormatting", &clsCompareFileOptions::bRemoveFormatting, false},
        {"cbSelectTextInDiffViewer", &clsCompareFileOptions::bSelectTextInDiffViewer, false},
        {"cbShowReportOnly", &clsCompareFileOptions::bShowReportOnly, false},
        {"cbViewAdditionItalic", &clsCompareFileOptions::bViewAdditionItalic, false},
        {"cbViewChangeStrikeoutModified", &clsCompareFileOptions::bViewChangeStrikeoutModified, false},
        // The use boxes count only at the next load.
        {"cbUseSpecifiedRowsMaster", &clsCompareFileOptions::bExcelUseRowsMaster, false},
        {"cbUseSpecifiedColsSource", &clsCompareFileOptions::bExcelUseColsSource, false},
    };
    for (const auto& c : boxes) {
        SCOPED_TRACE(c.box);
        auto* cb = child<QCheckBox>(c.box);
        ASSERT_NE(cb, nullptr);
        const bool before = (options.*c.member).Data();
        stale.clear();
        cb->click();
        EXPECT_EQ((options.*c.member).Data(), !before);
        EXPECT_EQ(stale.count(), c.stale ? 1 : 0);
    }

    using S = clsVarString clsCompareFileOptions::*;
    const struct {
        const char* text;
        S member;
    } texts[] = {
        {"txtMasterExcelSheetNumber", &clsCompareFileOptions::sExcelSheetNumberMaster},
        {"txtSourceExcelSheetNumber", &clsCompareFileOptions::sExcelSheetNumberSource},
        {"txtRowNumbersMaster", &clsCompareFileOptions::sExcelRowsMaster},
        {"txtColumnNumbersMaster", &clsCompareFileOptions::sExcelColsMaster},
        {"txtRowNumbersSource", &clsCompareFileOptions::sExcelRowsSource},
        {"txtColumnNumbersSource", &clsCompareFileOptions::sExcelColsSource},
    };
    // Row and column lists take input only while their use box is ticked.
    child<QCheckBox>("cbUseSpecifiedColsMaster")->click();
    child<QCheckBox>("cbUseSpecifiedRowsSource")->click();
    for (const auto& c : texts) {
        SCOPED_TRACE(c.text);
        auto* t = child<QLineEdit>(c.text);
        ASSERT_NE(t, nullptr);
        t->clear();
        stale.clear();
        // Every keystroke writes and marks, and nothing checks the text.
        QTest::keyClicks(t, QStringLiteral("2-x"));
        EXPECT_EQ((options.*c.member).Data(), "2-x");
        EXPECT_EQ(stale.count(), 3);
    }

    stale.clear();
    child<QRadioButton>("rbNoReloadOnRefresh")->click();
    EXPECT_FALSE(options.bReloadOnRefresh.Data());
    child<QRadioButton>("rbReloadOnRefresh")->click();
    EXPECT_TRUE(options.bReloadOnRefresh.Data());
    EXPECT_EQ(stale.count(), 0);
}

TEST_F(OptionsPageTest, FillingThePageWritesNothingBackAndMarksNothing)
{
    options.bIgnoreCase = true;
    options.sExcelRowsMaster = QStringLiteral("3-9");
    options.bExcelUseRowsMaster = true;
    options.bReloadOnRefresh = false;
    stale.clear();
    page.RefreshCompareOptionsGUI();
    EXPECT_EQ(stale.count(), 0);
    EXPECT_TRUE(child<QCheckBox>("cbIgnoreCase")->isChecked());
    EXPECT_EQ(child<QLineEdit>("txtRowNumbersMaster")->text(), "3-9");
    EXPECT_TRUE(child<QWidget>("frameRowNumbersMaster")->isEnabled());
    EXPECT_FALSE(child<QWidget>("frameColNumbersMaster")->isEnabled());
    EXPECT_TRUE(child<QRadioButton>("rbNoReloadOnRefresh")->isChecked());
    EXPECT_TRUE(options.bIgnoreCase.Data());
    EXPECT_FALSE(options.bReloadOnRefresh.Data());
}

TEST_F(OptionsPageTest, StylesAndColoursShowOnTheirSampleAndACancelledPickChangesNothing)
{
    auto* sample = child<QLabel>("lblDeletionText");
    child<QCheckBox>("cbViewDeletionItalic")->click();
    child<QCheckBox>("cbViewDeletionUnderline")->click();
    EXPECT_TRUE(sample->font().italic());
    EXPECT_TRUE(sample->font().underline());
    EXPECT_EQ(sample->font().bold(), options.bViewDeletionBold.Data());

    QColor answer(0, 0, 255);
    QStringList titles;
    page.setColorPicker([&](QWidget*, const QColor&, const QString& title) {
        titles << title;
        return answer;
    });
    child<QPushButton>("cmdViewDeletionBackgroundColor")->click();
    EXPECT_EQ(options.lViewDeletionBackColor.Data(), 0xFF0000);  // blue, red in the low byte
    EXPECT_EQ(sample->palette().color(QPalette::Window), QColor(0, 0, 255));

    answer = QColor(0x12, 0x34, 0x56);
    child<QPushButton>("cmdViewChangeFontColorModified")->click();
    EXPECT_EQ(options.lViewChangeForeColorModified.Data(), 0x563412);
    EXPECT_EQ(child<QLabel>("lblChangedTextModified")->palette().color(QPalette::WindowText), answer);
    EXPECT_EQ(titles.size(), 2);

    answer = QColor();
    child<QPushButton>("cmdViewDeletionBackgroundColor")->click();
    EXPECT_EQ(options.lViewDeletionBackColor.Data(), 0xFF0000);
    EXPECT_EQ(sample->palette().color(QPalette::Window), QColor(0, 0, 255));
    EXPECT_EQ(stale.count(), 0);
}

TEST_F(OptionsPageTest, AutomaticRefreshLocksTheReloadChoiceAndFollowsTheSlider)
{
    QSignalSpy refresh(&page, &CompareOptionsPage::autoRefreshChanged);
    auto* reload = child<QRadioButton>("rbReloadOnRefresh");
    reload->click();
    child<QSlider>("sliderRefreshRate")->setValue(25);
    EXPECT_EQ(options.lSliderRefreshRate.Data(), 25);
    EXPECT_EQ(child<QLabel>("lblRefreshPeriod")->text(), "25 Seconds");

    stale.clear();
    child<QCheckBox>("cbRefresh")->click();
    EXPECT_TRUE(options.bRefreshGUI.Data());
    EXPECT_FALSE(options.bReloadOnRefresh.Data());
    EXPECT_FALSE(reload->isEnabled());
    EXPECT_TRUE(child<QWidget>("frameRefreshRate")->isEnabled());
    EXPECT_EQ(stale.count(), 1);
    ASSERT_FALSE(refresh.isEmpty());
    EXPECT_EQ(refresh.last(), (QList<QVariant>{true, 25}));

    // A load by hand takes it off; the reload button comes back unselected.
    page.SetAutoRefresh(false);
    EXPECT_FALSE(options.bRefreshGUI.Data());
    EXPECT_TRUE(reload->isEnabled());
    EXPECT_FALSE(reload->isChecked());
    EXPECT_FALSE(child<QCheckBox>("cbRefresh")->isChecked());
    EXPECT_EQ(refresh.last(), (QList<QVariant>{false, 25}));
}

TEST(AdvancedDialog, DoneWritesTheSwitchesAndAHorizonOfAtLeastOneCancelWritesNothing)
{
    for (const char* bad : {"", "0", "-4", "x", " "})
        EXPECT_EQ(frmCompareFilesAdvanced::HorizonFromText(QString::fromLatin1(bad)), 1) << bad;
    EXPECT_EQ(frmCompareFilesAdvanced::HorizonFromText(QStringLiteral(" 12 ")), 12);
    EXPECT_EQ(frmCompareFilesAdvanced::HorizonFromText(QStringLiteral("99999999999")), 2147483647);

    clsCompareFileOptions o;
    o.bUseLineBracket = true;
    o.lLineBracket = 7;
    frmCompareFilesAdvanced d;
    d.Load(o);
    auto* horizon = d.findChild<QLineEdit*>(QStringLiteral("txtHorizon"));
    auto* bracket = d.findChild<QCheckBox*>(QStringLiteral("cbUseLineBracket"));
    EXPECT_EQ(horizon->text(), "7");
    EXPECT_TRUE(horizon->isEnabled());
    bracket->click();
    EXPECT_FALSE(horizon->isEnabled());
    d.findChild<QCheckBox*>(QStringLiteral("cbCompareFaster"))->click();
    horizon->setText(QStringLiteral("-2"));
    d.cmdDone_Click();
    ASSERT_FALSE(d.bCancel());
    d.Save(o);
    EXPECT_FALSE(o.bUseLineBracket.Data());
    EXPECT_TRUE(o.bCompareFaster.Data());
    EXPECT_EQ(o.lLineBracket.Data(), 1);

    frmCompareFilesAdvanced e;
    e.Load(o);
    e.show();
    QTest::keyClick(&e, Qt::Key_Escape);
    EXPECT_TRUE(e.bCancel());
}

} // namespace
