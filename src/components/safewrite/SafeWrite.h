#pragma once
// The one way a user-visible file is written: into a new file beside the
// target, every write, the flush to disk and the close checked, then renamed
// over the target. A full disk, a quota or a crash half-way leaves the old
// file as it was and no stray temporary behind. Plain C++ and POSIX, so that
// the engines without Qt write through it as well.

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace safewrite {

class SafeFile {
public:
    explicit SafeFile(std::string target);
    ~SafeFile(); // a file never committed is discarded
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    bool open();
    bool write(std::string_view bytes);
    // Makes the new content the target's, or leaves the target untouched.
    bool commit();
    void discard();

    bool failed() const { return errorCode_ != 0; }
    // errno of the first failure, 0 when none.
    int errorCode() const { return errorCode_; }
    // The first failure in words, such as "No space left on device".
    std::string reason() const;

private:
    bool fail(int code);

    std::string target_;
    std::string temp_;
    int fd_ = -1;
    int errorCode_ = 0;
    bool direct_ = false;
};

// A SafeFile behind a std::ostream, for writers that stream with <<.
class SafeOStream : private std::streambuf, public std::ostream {
public:
    explicit SafeOStream(std::string target);
    bool isOpen() const { return open_; }
    // Flushes what is buffered and commits; false when anything failed.
    bool commit();
    std::string reason() const { return file_.reason(); }

private:
    int overflow(int c) override;
    int sync() override;
    bool drain();

    SafeFile file_;
    bool open_ = false;
    char buf_[1 << 16];
};

// The whole content at once; on failure `reason` (when given) says why.
bool writeWholeFile(const std::string& path, std::string_view bytes, std::string* reason = nullptr);

// True when both paths name one file: the same device and inode for files
// that exist (links and other spellings included), else the same resolved
// folder and name.
bool sameFile(const std::string& a, const std::string& b);

// Regular files only, and the two harmless others: /dev/null and a pipe a
// shell hands over as /dev/fd/N. A device such as /dev/zero never ends and a
// named pipe may block its reader forever. Empty when `path` may be read (or
// does not exist, which the caller's open reports), else why it is refused.
std::string notRegularFileReason(const std::string& path);

} // namespace safewrite
