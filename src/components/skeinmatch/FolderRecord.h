#pragma once
// One finding of a folder comparison, field for field as the folder viewer
// reads it.

#include <cstdint>
#include <string>

namespace skeinmatch {

// For a file, sPathOriginal + sName is its full path in the Original tree.
// For a folder, sPathOriginal is the folder's own path (what a folder row
// shows) and sName its last component. Paths end in '/' and are given for
// both trees even when the entry exists in one only.
struct FolderRecord {
    std::string sName;
    std::string sPathOriginal;
    std::string sPathModified;
    std::int32_t lIsFile = 0;           // 1 file, 0 folder
    std::int32_t lOnlyInModified = 0;   // nonzero: exists only in the Modified tree
    std::int32_t lOnlyInOriginal = 0;   // nonzero: exists only in the Original tree
    std::int32_t lSizeCompare = 0;      // >0 Original larger, <0 Modified larger
    std::int32_t lDateCompare = 0;      // >0 Original later, <0 Modified later
    std::int32_t lContentStatus = 0;    // 0 same, 1 differs, 2 could not be compared

    bool operator==(const FolderRecord&) const = default;
};

// lContentStatus values.
enum : std::int32_t {
    kContentSame = 0,
    kContentDiffers = 1,
    kContentUnreadable = 2,
};

} // namespace skeinmatch
