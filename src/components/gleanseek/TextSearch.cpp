#include "components/gleanseek/TextSearch.h"

#include "components/gleanseek/TextEncoding.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace gleanseek {
namespace {

// How much of a long line is kept before the hit.
constexpr std::size_t kItemLead = 200;

std::int32_t clamp32(std::int64_t v)
{
    return v > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(v);
}

bool continuationByte(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

std::string MakeItem(const char* line, std::size_t len, std::size_t hitOffset)
{
    std::size_t start = 0, end = len;
    if (len > kMaxItemBytes) {
        start = hitOffset > kItemLead ? hitOffset - kItemLead : 0;
        if (len - start < kMaxItemBytes)
            start = len - kMaxItemBytes;
        end = start + kMaxItemBytes;
        while (start > 0 && continuationByte(line[start]))
            --start;
        while (end > start && end < len && continuationByte(line[end]))
            --end;
    }
    std::string out;
    out.reserve(end - start + 8);
    if (start > 0)
        out += "...";
    if (IsValidUtf8(line + start, end - start))
        out.append(line + start, end - start);
    else
        AppendWindows1252AsUtf8(out, line + start, end - start);
    if (end < len)
        out += "...";
    for (char& c : out)
        if (c == '\t' || c == '\r')
            c = ' ';
    return out;
}

std::int64_t CountLineFeeds(const char* data, std::size_t len)
{
    std::int64_t n = 0;
    const char* p = data;
    const char* const stop = data + len;
    while (p < stop) {
        const void* nl = std::memchr(p, '\n', static_cast<std::size_t>(stop - p));
        if (!nl)
            break;
        ++n;
        p = static_cast<const char*>(nl) + 1;
    }
    return n;
}

bool SearchLines(const TextMatcher& matcher, TextMatcher::Scratch& scratch, const char* data, std::size_t len,
                 std::int64_t firstLine, const std::string& file, std::vector<Hit>& hits, std::string& error)
{
    std::int64_t line = firstLine;
    std::size_t lineStart = 0;
    std::size_t from = 0;
    while (from <= len) {
        std::size_t at = 0;
        if (!matcher.Find(data, len, from, at, scratch, error))
            return error.empty();
        // An empty match after the last line end is not on any line.
        if (at >= len && (len == 0 || data[len - 1] == '\n'))
            break;
        for (;;) {
            const void* nl = std::memchr(data + lineStart, '\n', at - lineStart);
            if (!nl)
                break;
            lineStart = static_cast<std::size_t>(static_cast<const char*>(nl) - data) + 1;
            ++line;
        }
        const void* nl = std::memchr(data + at, '\n', len - at);
        const std::size_t lineEnd = nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - data) : len;
        std::size_t contentEnd = lineEnd;
        if (contentEnd > lineStart && data[contentEnd - 1] == '\r')
            --contentEnd;
        const std::size_t offset = std::min(at, contentEnd) - lineStart;
        const std::size_t lineLen = contentEnd - lineStart;
        Hit hit;
        hit.sFile = file;
        hit.lLine = clamp32(line);
        hit.lCol = clamp32(static_cast<std::int64_t>(
                       IsValidUtf8(data + lineStart, lineLen) ? CharacterCount(data + lineStart, offset) : offset) +
                   1);
        hit.sItem = MakeItem(data + lineStart, lineLen, offset);
        hits.push_back(std::move(hit));
        if (!nl)
            break;
        from = lineEnd + 1;
        lineStart = from;
        ++line;
    }
    return true;
}

} // namespace gleanseek
