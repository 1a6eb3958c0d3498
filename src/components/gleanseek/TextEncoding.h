#pragma once
// The few encoding steps a text search needs on raw file bytes: files are
// taken as UTF-8 when they are valid UTF-8 and as Windows-1252 otherwise,
// the same rule the viewers use when they open a plain text file.

#include <cstddef>
#include <string>

namespace gleanseek {

bool IsValidUtf8(const char* data, std::size_t len);

// Appends `data`, read as Windows-1252, to `out` as UTF-8. The five bytes
// that code page leaves undefined become U+FFFD.
void AppendWindows1252AsUtf8(std::string& out, const char* data, std::size_t len);

// Appends UTF-16 text (no byte order mark) as UTF-8; unpaired surrogates
// become U+FFFD. A trailing odd byte is dropped.
void AppendUtf16AsUtf8(std::string& out, const char* data, std::size_t len, bool bigEndian);

// Number of characters in a piece of text: code points when it is valid
// UTF-8, bytes otherwise (one byte is one Windows-1252 character).
std::size_t CharacterCount(const char* data, std::size_t len);

} // namespace gleanseek
