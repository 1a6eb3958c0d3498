#pragma once
// Whole-file reads and all-or-nothing writes: a target is replaced only once
// its new content is complete, so a failed step never leaves half a file.

#include <QByteArray>
#include <QString>

namespace lexiform {

bool readFileBytes(const QString& path, QByteArray& out, long long maxBytes = 1LL << 31);
bool writeFileBytes(const QString& path, const QByteArray& bytes);

// True when the two paths name one file: one inode however it is reached
// (links, other spellings), or one resolved place for a file not there yet.
bool sameFile(const QString& a, const QString& b);

} // namespace lexiform
