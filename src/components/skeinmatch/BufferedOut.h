#pragma once
// Buffered output to a C stream that remembers whether any write failed:
// reports and listings of large compares must not cost more than the
// compare, as a write per line would.

#include "components/safewrite/SafeWrite.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace skeinmatch {

class BufferedOut {
public:
    explicit BufferedOut(std::FILE* f) : f_(f) {}
    // A user's file: written whole through the safe route, or not at all.
    explicit BufferedOut(safewrite::SafeFile& file) : file_(&file) {}
    ~BufferedOut() { flush(); }
    BufferedOut(const BufferedOut&) = delete;
    BufferedOut& operator=(const BufferedOut&) = delete;

    void put(std::string_view s)
    {
        // A line of hundreds of megabytes goes out as it stands: copying it
        // into the buffer first would double the memory it costs.
        if (s.size() >= kChunk) {
            flush();
            write(s);
            return;
        }
        buf_.append(s);
        if (buf_.size() >= kChunk)
            flush();
    }
    void put(char c) { buf_ += c; }
    void number(long n) { buf_ += std::to_string(n); }
    bool flush()
    {
        write(buf_);
        buf_.clear();
        return !failed_;
    }
    // Everything written so far reached the stream.
    bool ok() { return flush() && (file_ || !std::ferror(f_)); }

private:
    static constexpr std::size_t kChunk = 1u << 20;

    void write(std::string_view s)
    {
        if (s.empty() || failed_)
            return;
        if (file_)
            failed_ = !file_->write(s);
        else if (std::fwrite(s.data(), 1, s.size(), f_) != s.size())
            failed_ = true;
    }

    std::FILE* f_ = nullptr;
    safewrite::SafeFile* file_ = nullptr;
    std::string buf_;
    bool failed_ = false;
};

} // namespace skeinmatch
