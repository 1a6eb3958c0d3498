#pragma once
// What tallyvane-xls-reader writes on its standard output, and what the
// program reads back. FreeXL is not safe on damaged workbooks (it reads past
// its buffers), so it only ever runs in that small process of its own; the
// format is the one thing the two sides share. Plain C++: the reader links
// nothing of ours beyond this header.
//
// A stream of frames, each a tag byte and fixed-width fields in the host's
// byte order (both ends run on the same machine):
//   'B' u32 sheet count                       first, once
//   'S' u32 sheet number (1-based), u32 n, n bytes of UTF-8 name
//   'T' u32 row, u16 column, u32 n, n bytes of UTF-8 text
//   'I' u32 row, u16 column, i64 value
//   'D' u32 row, u16 column, f64 value
//   'N' u32 row, u16 column               a cell FreeXL gives no value for
//   'Z'                                   last: the workbook is complete
// Rows and columns are 0-based. A stream that does not end in 'Z', right
// after a whole frame, is not a workbook.

#include <cstdint>

namespace lexiform::xlsframes {

constexpr char Book = 'B';
constexpr char Sheet = 'S';
constexpr char Text = 'T';
constexpr char Integer = 'I';
constexpr char Double = 'D';
constexpr char NoValue = 'N';
constexpr char End = 'Z';

// Exit statuses of the reader besides 0.
constexpr int ExitInvalid = 1;  // FreeXL refused the file
constexpr int ExitUsage = 2;

// Name of the program, looked for beside the running one and in the
// installed helper folder.
constexpr const char* ReaderName = "tallyvane-xls-reader";

} // namespace lexiform::xlsframes
