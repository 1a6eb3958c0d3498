#pragma once
// What makes two lines "the same" under the compare options, and the dense
// integer ids that the matching works on.
//
// With no option a line's key is its bytes. IgnoreWhitespace leaves out
// space, tab, CR, FF, VT and the no-break space (U+00A0); IgnoreCase folds
// letters through their Unicode simple case mappings, so Latin, Greek and
// Cyrillic letters that differ only in case are equal. Bytes that are not
// valid UTF-8 stay as they are and compare as bytes.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skeinmatch {

struct KeyOptions {
    bool ignoreCase = false;
    bool ignoreWhitespace = false;

    bool any() const { return ignoreCase || ignoreWhitespace; }
};

// Builds normalised keys into a buffer of its own; one per thread.
class KeyMaker {
public:
    explicit KeyMaker(KeyOptions options) : options_(options) {}

    // The key of a line. The view is valid until the next call.
    std::string_view key(std::string_view line);

    // A 32-bit hash of the key.
    std::uint32_t hash(std::string_view line);

    // True when the key is empty (an empty line, or with IgnoreWhitespace
    // one of blanks only).
    bool isEmpty(std::string_view line);

    const KeyOptions& options() const { return options_; }

private:
    KeyOptions options_;
    std::string buffer_;
};

// Equality of two lines under the options, without interning.
class KeyComparer {
public:
    explicit KeyComparer(KeyOptions options) : a_(options), b_(options) {}
    bool equal(std::string_view x, std::string_view y);

private:
    KeyMaker a_, b_;
};

std::uint32_t hashBytes(std::string_view bytes);

// Gives each distinct key a dense id, and counts per id how often it occurs
// on side 0 (Original) and side 1 (Modified).
class LineInterner {
public:
    // `expected` is the number of lines that will be interned; it only sizes
    // the table.
    LineInterner(KeyOptions options, std::size_t expected);

    // `hash` must be KeyMaker::hash of the line. `line` must stay valid
    // while the interner lives (it is the class's representative).
    std::uint32_t intern(std::uint32_t hash, std::string_view line, int side);

    // Starts loading the table slot of a hash that will be interned soon.
    void prefetch(std::uint32_t hash) const { __builtin_prefetch(&slots_[hash & mask_]); }

    std::uint32_t idCount() const { return static_cast<std::uint32_t>(classes_.size()); }
    std::uint32_t count(std::uint32_t id, int side) const
    {
        return side == 0 ? classes_[id].countA : classes_[id].countB;
    }

private:
    struct Class {
        const char* text;
        std::uint32_t length;
        std::uint32_t hash;
        std::uint32_t countA;
        std::uint32_t countB;
    };
    void grow();

    KeyOptions options_;
    KeyComparer comparer_;
    std::vector<Class> classes_;
    std::vector<std::uint32_t> slots_;  // id + 1, 0 when free
    std::uint32_t mask_ = 0;
};

} // namespace skeinmatch
