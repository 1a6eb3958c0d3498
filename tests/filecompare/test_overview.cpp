// The overview bar beside the diff panes: strokes where the differences are
// in the levelled documents, and a click that names the difference under it.

#include "document/LevelSpacing.h"
#include "filecompare/DifferenceOverviewBar.h"
#include "filecompare/ParagraphGutter.h"

#include "support/qstring_print.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <gtest/gtest.h>

using filecompare::DifferenceOverviewBar;

namespace {

QString numbered(const QString& prefix, int n)
{
    QStringList out;
    for (int i = 1; i <= n; ++i)
        out << prefix + QString::number(i);
    return out.join('\n');
}

TEST(OverviewBar, AClickOnAStrokeGoesToItsDifference)
{
    // 100 paragraphs against 99: changes at 10 and 50, paragraph 90 deleted.
    QTextDocument left, right;
    left.setPlainText(numbered("L", 100));
    right.setPlainText(numbered("L", 99));
    const std::vector<tv::DifferenceSpan> records{{'c', 10, 10, 10, 10}, {'c', 50, 51, 50, 51}, {'d', 90, 90, 89, 89}};
    tv::LevelDocuments(left, right, records);

    DifferenceOverviewBar bar;
    bar.resize(14, 401);
    bar.setMarks(DifferenceOverviewBar::MarksOf(left, right, records));
    ASSERT_EQ(bar.marks().size(), 3u);
    EXPECT_NEAR(bar.marks()[1].top, 0.49, 0.005);
    EXPECT_NEAR(bar.marks()[2].top, 0.89, 0.005);

    QSignalSpy went(&bar, &DifferenceOverviewBar::differenceClicked);
    QSignalSpy scrolled(&bar, &DifferenceOverviewBar::positionClicked);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(7, int(0.49 * 400) + 1));
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(7, int(0.89 * 400) - 2));
    ASSERT_EQ(went.size(), 2);
    EXPECT_EQ(went[0][0].toInt(), 1);
    EXPECT_EQ(went[1][0].toInt(), 2);

    // Between strokes the click scrolls to that share of the document.
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(7, 300));
    ASSERT_EQ(scrolled.size(), 1);
    EXPECT_NEAR(scrolled[0][0].toDouble(), 0.75, 0.01);
}

TEST(ParagraphGutter, NumbersStandBesideTheirParagraphsWithTheSpacingBetween)
{
    QTextEdit left, right;
    left.setPlainText(numbered("L", 30));
    right.setPlainText(numbered("L", 30));
    for (QTextEdit* e : {&left, &right}) {
        e->resize(300, 400);
        e->show();
    }
    auto* gutter = filecompare::ParagraphGutter::attach(&left);
    tv::LevelDocuments(*left.document(), *right.document(), {{'a', 3, 3, 4, 8}});
    QCoreApplication::processEvents();
    const auto labels = gutter->visibleLabels();
    ASSERT_GE(labels.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(labels[i].paragraph, int(i) + 1) << "one number for each paragraph, none for the space";
    // Paragraph 4 stands below the space left for the five added lines, and
    // its number beside it.
    const int lineY = left.cursorRect(QTextCursor(left.document()->findBlockByNumber(3))).top();
    EXPECT_EQ(labels[3].y, lineY);
    EXPECT_GT(labels[3].y - labels[2].y, 4 * (labels[2].y - labels[1].y));
    EXPECT_GT(left.viewport()->x(), gutter->x()) << "the text starts right of the gutter";
}

} // namespace
