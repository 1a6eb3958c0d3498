#pragma once
// One entry of a paragraph index: where a paragraph starts and where the
// position just behind its line feed lies. Plain values, no checks.

#include <cstdint>

class clsParagraph {
public:
    std::int32_t FirstChar = 0;
    std::int32_t LastChar = 0;

    bool operator==(const clsParagraph&) const = default;
};
