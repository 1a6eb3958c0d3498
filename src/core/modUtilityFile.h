#pragma once
// File tests and the copy used when a document is staged for an editor or a
// saved file replaces the user's.

#include <QString>
#include <QtGlobal>

// True if path, with blanks around it ignored, names an existing regular file
// (not a folder, device or pipe). Hidden files and files the user cannot read
// count; the empty string is false without looking at the disk.
bool FileExistsOnDisk(const QString& path);

// True if path names a folder whose entries can be listed; a trailing "/" is
// allowed. The empty string is false.
bool FolderExistsOnDisk(const QString& path);

// Copies source over target. A target without write permission is made
// writable for the copy and gets its permission bits back afterwards, so a
// read-only file stays read-only. On failure errorNumber receives the system
// error code (errno) and the result is false; a read-only target whose second
// copy failed is left writable.
bool CopyFileOverReadOnly(const QString& source, const QString& target, qint16& errorNumber);
