// The about box: version caption, the six-step animation, its buttons, and
// how the frame's Help menu shows it.

#include "settings/IniStore.h"
#include "shell/core/modGlobal.h"
#include "shell/frmAbout.h"
#include "shell/frmMainMDI.h"
#include "shell/modModalDialog.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/recordinglauncher.h"
#include "support/testsupport.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// Which of the six pictures show, as "100000".
QString shown(const frmAbout& about)
{
    QString s;
    for (int i = 1; i <= 6; ++i)
        s += about.Image[size_t(i)]->isVisibleTo(const_cast<frmAbout*>(&about)) ? '1' : '0';
    return s;
}

TEST(About, VersionReadsMajorDotMinorAndRevisionTogether)
{
    EXPECT_EQ(frmAbout::VersionCaption("2.3.6"), "2.36");
    EXPECT_EQ(frmAbout::VersionCaption("1.0.0"), "1.00");
    EXPECT_EQ(frmAbout::VersionCaption("3"), "3.00");
    frmAbout about;
    EXPECT_EQ(about.lblVersion->text(), "Version " + frmAbout::VersionCaption(TALLYVANE_VERSION));
}

TEST(About, TheVaneTurnsInSixStepsAndStartsOver)
{
    frmAbout about;
    about.show();
    EXPECT_TRUE(about.Timer1->isActive());
    QStringList steps;
    for (int tick = 0; tick < 7; ++tick) {
        about.Timer1_Timer();
        steps << shown(about);
    }
    // Each tick shows its step and hides the one before; one picture at a time.
    EXPECT_EQ(steps, QStringList({"100000", "010000", "001000", "000100", "000010", "000001", "100000"}));
    about.cmdDone->click();
    EXPECT_FALSE(about.isVisible());
    EXPECT_FALSE(about.Timer1->isActive());
}

TEST(About, ButtonsOpenTheMakersPages)
{
    tvtest::RecordingLauncher launched;
    frmAbout about;
    about.cmdWWWMerrowgate->click();
    about.cmdMailToProductName->click();
    EXPECT_EQ(launched.requests, QStringList({"url:https://www.merrowgate.example/tallyvane",
                                              "url:mailto:support@merrowgate.example"}));
}

TEST(About, TheHelpMenuShowsTheBoxModally)
{
    tvtest::TempDir dir;
    tvtest::RecordingDialogs dialogs;
    const QString savedIni = gsIniFile;
    gsIniFile = dir.qpath() + "/Tallyvane.INI";
    QString title;
    bool modal = false;
    const ModalRunner previous = setModalRunner([&](QDialog& d) {
        title = d.windowTitle();
        modal = d.isModal();
    });
    {
        frmMainMDI frame;
        frame.mnuAbout_Click();
    }
    setModalRunner(previous);
    gsIniFile = savedIni;
    EXPECT_EQ(title, "About Tallyvane");
    EXPECT_TRUE(modal);
}

} // namespace
