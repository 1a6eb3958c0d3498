#pragma once
// One side of a comparison: the bytes of a text and where its lines start.
//
// A line ends at "\n"; a "\r" right before that "\n" is not part of the line,
// and a line end behind the last line adds no line. Everything else is taken
// as bytes, so binary files, invalid UTF-8 and files without any line end
// are all just texts with few or long lines.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace skeinmatch {

class LineText {
public:
    LineText() = default;
    LineText(const LineText&) = delete;
    LineText& operator=(const LineText&) = delete;
    LineText(LineText&&) noexcept = default;
    LineText& operator=(LineText&&) noexcept = default;

    // Reads the whole file and splits it. On failure the text is empty and
    // `error` says why.
    bool load(const std::string& path, std::string& error);

    // Takes a text from memory and splits it. False (and an empty text) only
    // for a text too large to address.
    bool assign(std::string_view bytes);

    void clear();

    std::size_t lineCount() const { return count_; }

    // Line i (0-based) without its line end.
    std::string_view line(std::size_t i) const
    {
        std::size_t b = starts_[i], e = starts_[i + 1];
        if (e > b && data_[e - 1] == '\n') {
            --e;
            if (e > b && data_[e - 1] == '\r')
                --e;
        }
        return {data_.get() + b, e - b};
    }

    // Line i as it stands in the file, with its "\r" if it had one but
    // without the "\n".
    std::string_view rawLine(std::size_t i) const
    {
        std::size_t b = starts_[i], e = starts_[i + 1];
        if (e > b && data_[e - 1] == '\n')
            --e;
        return {data_.get() + b, e - b};
    }

    // Whether line i is followed by "\n" in the file (only the last line
    // can lack one).
    bool hasLineEnd(std::size_t i) const
    {
        std::size_t e = starts_[i + 1];
        return e > starts_[i] && data_[e - 1] == '\n';
    }

    std::string_view bytes() const { return {data_.get(), size_}; }

    // The largest text we address: offsets are kept in 32 bits to keep the
    // per-line record small.
    static constexpr std::size_t maxBytes = 0xFFFFFFF0u;

private:
    bool split();

    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::vector<std::uint32_t> starts_{0};  // lineCount()+1 entries
    std::size_t count_ = 0;
};

} // namespace skeinmatch
