#include "components/gleanseek/StringToCode.h"

#include <algorithm>
#include <cctype>

namespace gleanseek {
namespace {

void replaceAllNoCase(std::string& s, const std::string& from, const std::string& to)
{
    const auto lower = [](std::string t) {
        std::transform(t.begin(), t.end(), t.begin(), [](unsigned char c) { return std::tolower(c); });
        return t;
    };
    const std::string needle = lower(from);
    std::string low = lower(s);
    std::size_t pos = 0;
    while ((pos = low.find(needle, pos)) != std::string::npos) {
        s.replace(pos, from.size(), to);
        low.replace(pos, from.size(), lower(to));
        pos += to.size();
    }
}

} // namespace

void StringToCode(const std::string& sIn, std::string& sOut)
{
    std::string out;
    bool inQuote = false;
    // Byte by byte: every byte of a multi-byte UTF-8 character is above 31,
    // so such characters pass through whole.
    for (const char ch : sIn) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 32) {
            if (inQuote) {
                out += "\" & ";
                inQuote = false;
            }
            switch (c) {
            case 0: out += "vbNullChar & "; break;
            case 9: out += "  "; break;
            case 10: out += "<LF> & "; break;
            case 13: out += "<CR>& "; break;
            default: out += "Chr$(" + std::to_string(c) + ") & "; break;
            }
        } else {
            if (!inQuote) {
                out += '"';
                inQuote = true;
            }
            out += ch;
            if (c == '"')
                out += '"';
        }
    }
    if (inQuote)
        out += '"';
    else if (out.size() >= 3 && out.compare(out.size() - 3, 3, " & ") == 0)
        out.resize(out.size() - 3);
    // The literals above never produce this pair; the step stays so that the
    // routine's output matches its long-standing definition.
    replaceAllNoCase(out, "vbCr & vbLf", "vbCrLf");
    if (out.empty())
        out = "\"\"";
    sOut = std::move(out);
}

} // namespace gleanseek
