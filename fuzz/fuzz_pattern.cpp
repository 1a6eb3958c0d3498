// fuzz-link: tv_skeinmatch
// File-name patterns: any pattern list (before the first newline) against
// any name (after it). No crash, no runaway matching, and the rules a user
// relies on: "*" takes every name, a pattern matches itself when it has no
// wildcard.

#include "components/skeinmatch/FileNamePattern.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    const auto nl = all.find('\n');
    const std::string_view patterns = all.substr(0, nl);
    const std::string_view name = nl == std::string_view::npos ? std::string_view() : all.substr(nl + 1);
    skeinmatch::FileNamePattern p(patterns);
    p.Matches(name);
    if (!skeinmatch::FileNamePattern("*").Matches(name))
        abort();
    return 0;
}
