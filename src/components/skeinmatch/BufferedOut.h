#pragma once
// Buffered output to a C stream that remembers whether any write failed:
// reports and listings of large compares must not cost more than the
// compare, as a write per line would.

#include <cstdio>
#include <string>
#include <string_view>

namespace skeinmatch {

class BufferedOut {
public:
    explicit BufferedOut(std::FILE* f) : f_(f) {}
    ~BufferedOut() { flush(); }
    BufferedOut(const BufferedOut&) = delete;
    BufferedOut& operator=(const BufferedOut&) = delete;

    void put(std::string_view s)
    {
        buf_.append(s);
        if (buf_.size() >= (1u << 20))
            flush();
    }
    void put(char c) { buf_ += c; }
    void number(long n) { buf_ += std::to_string(n); }
    bool flush()
    {
        if (!buf_.empty() && std::fwrite(buf_.data(), 1, buf_.size(), f_) != buf_.size())
            failed_ = true;
        buf_.clear();
        return !failed_;
    }
    // Everything written so far reached the stream.
    bool ok() { return flush() && !std::ferror(f_); }

private:
    std::FILE* f_;
    std::string buf_;
    bool failed_ = false;
};

} // namespace skeinmatch
