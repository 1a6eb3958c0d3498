// The printable form of a line in the hit viewer.

#include "components/gleanseek/StringToCode.h"

#include <gtest/gtest.h>

using gleanseek::StringToCode;

namespace {

std::string code(const std::string& in)
{
    std::string out = "untouched";
    StringToCode(in, out);
    return out;
}

} // namespace

TEST(StringToCode, QuotesRunsAndNamesControlCharacters)
{
    EXPECT_EQ(code(""), "\"\"");
    EXPECT_EQ(code("plain text"), "\"plain text\"");
    EXPECT_EQ(code("A\tB"), "\"A\" &   \"B\"");
    EXPECT_EQ(code(std::string(1, '\x07')), "Chr$(7)");
    EXPECT_EQ(code("ring\x07"), "\"ring\" & Chr$(7)");
    EXPECT_EQ(code("\r\n"), "<CR>& <LF>");
    EXPECT_EQ(code("end\r\n"), "\"end\" & <CR>& <LF>");
    EXPECT_EQ(code(std::string("a\0b", 3)), "\"a\" & vbNullChar & \"b\"");
    EXPECT_EQ(code("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(code("\t"), "  ");
    EXPECT_EQ(code("\x1b[0m"), "Chr$(27) & \"[0m\"");
    // Characters beyond ASCII are ordinary text.
    EXPECT_EQ(code("café"), "\"café\"");
}

TEST(StringToCode, TheLastPassNeverFindsTheJoinedPair)
{
    const std::string out = code("\r\n\r\n");
    EXPECT_EQ(out, "<CR>& <LF> & <CR>& <LF>");
    EXPECT_EQ(out.find("vbCrLf"), std::string::npos);
    // The pass works on the whole result, quoted text included.
    EXPECT_EQ(code("vbCr & vbLf"), "\"vbCrLf\"");
}
