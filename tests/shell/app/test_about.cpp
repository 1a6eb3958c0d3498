// The about box: version caption and the six-step animation.

#include "shell/frmAbout.h"
#include "support/qstring_print.h"

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

} // namespace
