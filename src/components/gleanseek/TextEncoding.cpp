#include "components/gleanseek/TextEncoding.h"

#include "components/skeinmatch/Utf8.h"

#include <cstdint>
#include <cstring>

namespace gleanseek {
namespace {

using skeinmatch::AppendUtf8;

// 0x80..0x9F of Windows-1252; 0 marks the undefined positions.
constexpr std::uint16_t kHigh1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

} // namespace

bool IsValidUtf8(const char* data, std::size_t len)
{
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    std::size_t i = 0;
    while (i < len) {
        // Runs of ASCII are the common case; skip them eight bytes at a time.
        if (i + 8 <= len) {
            std::uint64_t w;
            std::memcpy(&w, s + i, 8);
            if ((w & 0x8080808080808080ULL) == 0) {
                i += 8;
                continue;
            }
        }
        const unsigned char b = s[i];
        if (b < 0x80) {
            ++i;
            continue;
        }
        std::size_t n;
        std::uint32_t cp;
        if (b >= 0xC2 && b <= 0xDF) {
            n = 2;
            cp = b & 0x1F;
        } else if (b >= 0xE0 && b <= 0xEF) {
            n = 3;
            cp = b & 0x0F;
        } else if (b >= 0xF0 && b <= 0xF4) {
            n = 4;
            cp = b & 0x07;
        } else {
            return false;
        }
        if (i + n > len)
            return false;
        for (std::size_t k = 1; k < n; ++k) {
            if ((s[i + k] & 0xC0) != 0x80)
                return false;
            cp = (cp << 6) | (s[i + k] & 0x3F);
        }
        if ((n == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
            return false;
        i += n;
    }
    return true;
}

void AppendWindows1252AsUtf8(std::string& out, const char* data, std::size_t len)
{
    out.reserve(out.size() + len + len / 8);
    for (std::size_t i = 0; i < len; ++i) {
        const auto b = static_cast<unsigned char>(data[i]);
        if (b < 0x80) {
            out.push_back(static_cast<char>(b));
        } else if (b < 0xA0) {
            const std::uint16_t c = kHigh1252[b - 0x80];
            AppendUtf8(out, c ? c : 0xFFFD);
        } else {
            AppendUtf8(out, b);
        }
    }
}

void AppendUtf16AsUtf8(std::string& out, const char* data, std::size_t len, bool bigEndian)
{
    const auto* s = reinterpret_cast<const unsigned char*>(data);
    const auto unit = [&](std::size_t i) -> std::uint32_t {
        return bigEndian ? (s[i] << 8 | s[i + 1]) : (s[i + 1] << 8 | s[i]);
    };
    out.reserve(out.size() + len / 2);
    for (std::size_t i = 0; i + 1 < len; i += 2) {
        const std::uint32_t u = unit(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 3 < len) {
            const std::uint32_t v = unit(i + 2);
            if (v >= 0xDC00 && v <= 0xDFFF) {
                AppendUtf8(out, 0x10000 + ((u - 0xD800) << 10) + (v - 0xDC00));
                i += 2;
                continue;
            }
        }
        AppendUtf8(out, (u >= 0xD800 && u <= 0xDFFF) ? 0xFFFD : u);
    }
}

std::size_t CharacterCount(const char* data, std::size_t len)
{
    if (!IsValidUtf8(data, len))
        return len;
    std::size_t n = 0;
    for (std::size_t i = 0; i < len; ++i)
        if ((static_cast<unsigned char>(data[i]) & 0xC0) != 0x80)
            ++n;
    return n;
}

} // namespace gleanseek
