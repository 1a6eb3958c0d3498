// Range lists as users type them, and spreadsheet numbers as cells show them.

#include "LexiformTestUtil.h"
#include "components/lexiform/NumberFormat.h"
#include "components/lexiform/OdsReader.h"
#include "components/lexiform/RangeList.h"
#include "components/lexiform/XlsxReader.h"

#include <gtest/gtest.h>

using namespace lexiform;

TEST(RangeList, ParsesCaptionsForms)
{
    auto l = parseRangeList(" 1-2, 12, 20,30-50 ", false);
    ASSERT_TRUE(l);
    EXPECT_EQ(l->select(35), (std::vector<long long>{1, 2, 12, 20, 30, 31, 32, 33, 34, 35}));
    EXPECT_TRUE(l->contains(50));
    EXPECT_FALSE(l->contains(51));
    auto star = parseRangeList("2, *", true);
    ASSERT_TRUE(star);
    EXPECT_EQ(star->select(3), (std::vector<long long>{1, 2, 3}));
    EXPECT_EQ(parseRangeList("3,1,3", false)->select(9), (std::vector<long long>{1, 3}));
    for (const char* bad : {"", "*", "a", "1-", "-1", "2-1", "0", "1.5", "1 2", "99999999999999"})
        EXPECT_FALSE(parseRangeList(bad, false)) << bad;
}

TEST(NumberFormat, GeneralForm)
{
    EXPECT_EQ(formatGeneral(14.6), "14.6");
    EXPECT_EQ(formatGeneral(41.0 / 3.0), "13.6666666666667");
    EXPECT_EQ(formatGeneral(940.1), "940.1");
    EXPECT_EQ(formatGeneral(-0.000125), "-0.000125");
    EXPECT_EQ(formatGeneral(1e20), "1E+20");
    EXPECT_EQ(formatGeneral(0.1 + 0.2), "0.3");
    EXPECT_EQ(formatGeneral(123456789012.0), "123456789012");
}

TEST(NumberFormat, SimpleFormatsAndDates)
{
    EXPECT_EQ(formatNumber(42.5, "0.00", false), "42.50");
    EXPECT_EQ(formatNumber(2.675, "0.00", false), "2.68");
    EXPECT_EQ(formatNumber(-1234.5, "#,##0.00", false), "-1,234.50");
    EXPECT_EQ(formatNumber(-1234.5, "#,##0.00;(#,##0.00)", false), "(1,234.50)");
    EXPECT_EQ(formatNumber(0.5, "0%", false), "50%");
    EXPECT_EQ(formatNumber(12345.678, "0.00E+00", false), "1.23E+04");
    EXPECT_EQ(formatNumber(3.1, "#.##", false), "3.1");
    EXPECT_EQ(formatNumber(5, "[$€-407] #,##0.00", false), "€ 5.00");
    EXPECT_EQ(formatNumber(5, "0.0 \"kg\"", false), "5.0 kg");
    EXPECT_EQ(formatNumber(45299, "mm-dd-yy", false), "2024-01-08");
    EXPECT_EQ(formatNumber(45299.75, "d/m/yyyy h:mm", false), "2024-01-08 18:00:00");
    EXPECT_EQ(formatNumber(0.25, "h:mm:ss", false), "06:00:00");
    EXPECT_EQ(formatNumber(1.5, "[h]:mm:ss", false), "36:00:00");
    EXPECT_EQ(formatNumber(0, "yyyy-mm-dd", true), "1904-01-01");
    EXPECT_EQ(formatNumber(60, "yyyy-mm-dd", false), "1900-02-29");
    EXPECT_EQ(formatNumber(61, "yyyy-mm-dd", false), "1900-03-01");
    EXPECT_EQ(formatNumber(1, "yyyy-mm-dd", false), "1900-01-01");
    EXPECT_EQ(formatNumber(7, "# ?/?", false), "7");
}

TEST(Formulas, SharedFormulasMoveTheirRelativeReferences)
{
    EXPECT_EQ(shiftFormula("D2*E2", 1, 0), "D3*E3");
    EXPECT_EQ(shiftFormula("SUM($A$1:A1)+B$2+$C3", 2, 1), "SUM($A$1:B3)+C$2+$C5");
    EXPECT_EQ(shiftFormula("IF(A1=\"B2\",'My Sheet'!C3,LOG10(D4))", 1, 1), "IF(B2=\"B2\",'My Sheet'!D4,LOG10(E5))");
    EXPECT_EQ(shiftFormula("A1", -1, 0), "#REF!");
}

TEST(Formulas, OpenDocumentNotationAsUsersTypeIt)
{
    EXPECT_EQ(odfFormulaText("of:=[.D2]*[.E2]"), "=D2*E2");
    EXPECT_EQ(odfFormulaText("of:=COUNTA([$Orders.A2:.A50])"), "=COUNTA($Orders.A2:A50)");
    EXPECT_EQ(odfFormulaText("of:=IF([.A1]=\"[x]\";1;0)"), "=IF(A1=\"[x]\";1;0)");
}
