// The compiled-in manual is there for -? to open, with the anchor it opens at.

#include "forms/Resources.h"
#include "core/Launcher.h"

#include <QFile>
#include <gtest/gtest.h>

TEST(Resources, ManualHasTheCommandLineTopic)
{
    InitProgramResources();
    QFile manual(":/manual/index.html");
    ASSERT_TRUE(manual.open(QIODevice::ReadOnly));
    const QByteArray html = manual.readAll();
    EXPECT_TRUE(html.contains(QByteArray("id=\"") + kManualTopicCommandLine + "\""));
    EXPECT_TRUE(QFile::exists(":/howto.rtf"));
}
