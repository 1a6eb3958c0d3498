#include "components/skeinmatch/FileNamePattern.h"

#include "components/skeinmatch/Utf8.h"

#include <locale>

namespace skeinmatch {
namespace {

// Invalid bytes decode to values above the Unicode range so that they still
// compare equal only to themselves.
constexpr char32_t kRawByteBase = 0x110000;

const std::ctype<wchar_t>* unicodeFacet()
{
    // The process locale may be "C", in which case towlower folds ASCII only;
    // a fixed UTF-8 locale gives the same answer everywhere.
    // Kept for the life of the process, since the facet lives in it; held in
    // a static so that a leak checker sees it is still in use.
    static const std::locale* locale = []() -> const std::locale* {
        for (const char* name : {"C.UTF-8", "C.utf8", "en_US.UTF-8"}) {
            try {
                return new std::locale(name);
            } catch (const std::exception&) {
            }
        }
        return nullptr;
    }();
    static const std::ctype<wchar_t>* facet = locale ? &std::use_facet<std::ctype<wchar_t>>(*locale) : nullptr;
    return facet;
}

char32_t fold(char32_t c)
{
    if (c < 0x80)
        return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    if (c >= kRawByteBase)
        return c;
    const std::ctype<wchar_t>* f = unicodeFacet();
    return f ? static_cast<char32_t>(f->tolower(static_cast<wchar_t>(c))) : c;
}

// Decodes one UTF-8 sequence at s[i]; advances i. Overlong forms, surrogates
// and truncated sequences come back as single raw bytes.
char32_t decodeOne(std::string_view s, std::size_t& i)
{
    const auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        ++i;
        return b0;
    }
    int len = 0;
    char32_t cp = 0;
    if ((b0 & 0xE0) == 0xC0) {
        len = 2;
        cp = b0 & 0x1F;
    } else if ((b0 & 0xF0) == 0xE0) {
        len = 3;
        cp = b0 & 0x0F;
    } else if ((b0 & 0xF8) == 0xF0) {
        len = 4;
        cp = b0 & 0x07;
    }
    if (len == 0 || i + len > s.size()) {
        ++i;
        return kRawByteBase + b0;
    }
    for (int k = 1; k < len; ++k) {
        const auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) {
            ++i;
            return kRawByteBase + b0;
        }
        cp = (cp << 6) | (b & 0x3F);
    }
    const bool overlong = (len == 2 && cp < 0x80) || (len == 3 && cp < 0x800) || (len == 4 && cp < 0x10000);
    if (overlong || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ++i;
        return kRawByteBase + b0;
    }
    i += len;
    return cp;
}

std::u32string decodeFolded(std::string_view s)
{
    std::u32string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();)
        out.push_back(fold(decodeOne(s, i)));
    return out;
}

void appendUtf8(std::string& out, char32_t c)
{
    if (c >= kRawByteBase)
        out.push_back(static_cast<char>(c - kRawByteBase));
    else
        AppendUtf8(out, c);
}

// Classic wildcard match with one backtrack point: linear for patterns with
// a single star, and never exponential.
bool wildMatch(const std::u32string& pat, const std::u32string& name)
{
    std::size_t p = 0, n = 0, starP = std::u32string::npos, starN = 0;
    while (n < name.size()) {
        if (p < pat.size() && (pat[p] == U'?' || pat[p] == name[n])) {
            ++p;
            ++n;
        } else if (p < pat.size() && pat[p] == U'*') {
            starP = p++;
            starN = n;
        } else if (starP != std::u32string::npos) {
            p = starP + 1;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pat.size() && pat[p] == U'*')
        ++p;
    return p == pat.size();
}

} // namespace

std::string FoldCase(std::string_view utf8)
{
    bool ascii = true;
    for (char c : utf8)
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
    std::string out;
    out.reserve(utf8.size());
    if (ascii) {
        for (char c : utf8)
            out.push_back((c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c);
        return out;
    }
    for (std::size_t i = 0; i < utf8.size();)
        appendUtf8(out, fold(decodeOne(utf8, i)));
    return out;
}

FileNamePattern::FileNamePattern(std::string_view patterns)
{
    std::size_t i = 0;
    while (i < patterns.size()) {
        while (i < patterns.size() && (patterns[i] == ' ' || patterns[i] == ';' || patterns[i] == '\t'))
            ++i;
        std::size_t j = i;
        while (j < patterns.size() && patterns[j] != ' ' && patterns[j] != ';' && patterns[j] != '\t')
            ++j;
        if (j > i) {
            const std::string_view one = patterns.substr(i, j - i);
            if (one == "*.*" || one == "*")
                matchAll_ = true;
            patterns_.push_back(decodeFolded(one));
        }
        i = j;
    }
}

bool FileNamePattern::Matches(std::string_view name) const
{
    if (matchAll_)
        return true;
    if (patterns_.empty())
        return false;
    const std::u32string folded = decodeFolded(name);
    for (const std::u32string& p : patterns_)
        if (wildMatch(p, folded))
            return true;
    return false;
}

} // namespace skeinmatch
