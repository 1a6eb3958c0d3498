#include "components/skeinmatch/LineKeys.h"

#include <cstring>
#include <utf8proc.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace skeinmatch {

namespace {

bool isBlankByte(unsigned char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

// Decodes one well-formed UTF-8 sequence at s[i]; 0 when there is none.
std::size_t decodeUtf8(const unsigned char* s, std::size_t n, std::size_t i, char32_t& cp)
{
    unsigned char c = s[i];
    auto cont = [&](std::size_t k) { return i + k < n && (s[i + k] & 0xC0) == 0x80; };
    if (c >= 0xC2 && c <= 0xDF) {
        if (!cont(1))
            return 0;
        cp = (char32_t(c & 0x1F) << 6) | (s[i + 1] & 0x3F);
        return 2;
    }
    if (c >= 0xE0 && c <= 0xEF) {
        if (!cont(1) || !cont(2))
            return 0;
        cp = (char32_t(c & 0x0F) << 12) | (char32_t(s[i + 1] & 0x3F) << 6) | (s[i + 2] & 0x3F);
        if (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))
            return 0;
        return 3;
    }
    if (c >= 0xF0 && c <= 0xF4) {
        if (!cont(1) || !cont(2) || !cont(3))
            return 0;
        cp = (char32_t(c & 0x07) << 18) | (char32_t(s[i + 1] & 0x3F) << 12)
            | (char32_t(s[i + 2] & 0x3F) << 6) | (s[i + 3] & 0x3F);
        if (cp < 0x10000 || cp > 0x10FFFF)
            return 0;
        return 4;
    }
    return 0;
}

void appendUtf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out += char(cp);
    } else if (cp < 0x800) {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    } else {
        out += char(0xF0 | (cp >> 18));
        out += char(0x80 | ((cp >> 12) & 0x3F));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

// Folding through the upper case first joins forms that lower-casing alone
// keeps apart, such as the Greek final sigma and sigma.
char32_t foldCase(char32_t cp)
{
    return static_cast<char32_t>(utf8proc_tolower(utf8proc_toupper(static_cast<utf8proc_int32_t>(cp))));
}

} // namespace

std::uint32_t hashBytes(std::string_view bytes)
{
    std::uint64_t h = XXH3_64bits(bytes.data(), bytes.size());
    return static_cast<std::uint32_t>(h ^ (h >> 32));
}

std::string_view KeyMaker::key(std::string_view line)
{
    if (!options_.any())
        return line;
    buffer_.clear();
    const auto* s = reinterpret_cast<const unsigned char*>(line.data());
    const std::size_t n = line.size();
    for (std::size_t i = 0; i < n;) {
        unsigned char c = s[i];
        if (c < 0x80) {
            ++i;
            if (options_.ignoreWhitespace && isBlankByte(c))
                continue;
            if (options_.ignoreCase && c >= 'A' && c <= 'Z')
                c = static_cast<unsigned char>(c + 32);
            buffer_ += char(c);
            continue;
        }
        char32_t cp = 0;
        std::size_t len = decodeUtf8(s, n, i, cp);
        if (len == 0) {
            buffer_ += char(c);
            ++i;
            continue;
        }
        i += len;
        if (options_.ignoreWhitespace && cp == 0xA0)
            continue;
        if (options_.ignoreCase)
            appendUtf8(buffer_, foldCase(cp));
        else
            buffer_.append(reinterpret_cast<const char*>(s + i - len), len);
    }
    return buffer_;
}

std::uint32_t KeyMaker::hash(std::string_view line)
{
    return hashBytes(key(line));
}

bool KeyMaker::isEmpty(std::string_view line)
{
    if (line.empty())
        return true;
    if (!options_.ignoreWhitespace)
        return false;
    return key(line).empty();
}

bool KeyComparer::equal(std::string_view x, std::string_view y)
{
    if (x == y)
        return true;
    if (!a_.options().any())
        return false;
    return a_.key(x) == b_.key(y);
}

LineInterner::LineInterner(KeyOptions options, std::size_t expected)
    : options_(options), comparer_(options)
{
    std::size_t cap = 64;
    while (cap < expected * 2)
        cap <<= 1;
    slots_.assign(cap, 0);
    mask_ = static_cast<std::uint32_t>(cap - 1);
    classes_.reserve(expected / 2 + 16);
}

void LineInterner::grow()
{
    std::size_t cap = slots_.size() * 2;
    slots_.assign(cap, 0);
    mask_ = static_cast<std::uint32_t>(cap - 1);
    for (std::uint32_t id = 0; id < classes_.size(); ++id) {
        std::uint32_t s = classes_[id].hash & mask_;
        while (slots_[s])
            s = (s + 1) & mask_;
        slots_[s] = id + 1;
    }
}

std::uint32_t LineInterner::intern(std::uint32_t hash, std::string_view line, int side)
{
    std::uint32_t s = hash & mask_;
    for (;;) {
        std::uint32_t slot = slots_[s];
        if (!slot)
            break;
        Class& c = classes_[slot - 1];
        if (c.hash == hash) {
            std::string_view rep(c.text, c.length);
            bool same = options_.any() ? comparer_.equal(rep, line)
                                       : (rep.size() == line.size()
                                          && std::memcmp(rep.data(), line.data(), rep.size()) == 0);
            if (same) {
                (side == 0 ? c.countA : c.countB) += 1;
                return slot - 1;
            }
        }
        s = (s + 1) & mask_;
    }
    auto id = static_cast<std::uint32_t>(classes_.size());
    classes_.push_back({line.data(), static_cast<std::uint32_t>(line.size()), hash,
                        side == 0 ? 1u : 0u, side == 0 ? 0u : 1u});
    slots_[s] = id + 1;
    if (classes_.size() * 2 > slots_.size())
        grow();
    return id;
}

} // namespace skeinmatch
