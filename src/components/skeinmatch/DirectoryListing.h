#pragma once
// One folder's entries, read once and put in the order in which the folder
// and find walks report them.

#include <cstdint>
#include <string>
#include <vector>

namespace skeinmatch {

enum class EntryType : std::uint8_t { File, Link, Folder, Other };

struct DirEntry {
    std::string name;
    std::string key;  // FoldCase(name): the sort key
    EntryType type = EntryType::Other;
};

// Lists `path` (which may or may not end in '/'), without "." and "..",
// sorted by NameOrder. Symbolic links are reported as links, never followed.
// Returns false with errno's value in `error` when the folder cannot be read.
bool ListDirectory(const std::string& path, std::vector<DirEntry>& entries, int& error);

// "path" with exactly one '/' at its end ("/" stays "/", "" stays "").
std::string WithTrailingSlash(std::string path);

// The last component of a path, trailing slashes ignored.
std::string LastComponent(const std::string& path);

} // namespace skeinmatch
