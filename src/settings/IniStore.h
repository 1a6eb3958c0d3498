#pragma once
// The INI file store. Behaves like the classic private-profile calls the
// settings were designed around:
//  - sections and keys are matched without regard to case, first occurrence
//    wins, blanks around names and values are ignored;
//  - a read returns at most 499 characters, cut at the first NUL, and the
//    default when the file, the section or the key is missing;
//  - a write creates the folder, the file, the section and the key as needed
//    and replaces an existing value; every other line of the file, including
//    ones it cannot make sense of, is kept byte for byte;
//  - a write that cannot be done (unwritable place, unreadable file) is lost
//    without a message.
// A write replaces the file atomically (temporary file, then rename), so a
// crash or a full disk leaves the old file or the new one, never half of one.
// Values go to disk as UTF-8; a value that is not valid UTF-8 is read as
// Latin-1. A value with blanks at either end, or that is itself wrapped in a
// pair of quotes, is written in double quotes so it reads back unchanged.
// Line breaks cannot be stored: a value is cut at its first CR or LF.

#include <QString>
#include <QtGlobal>

// The longest value a read returns.
inline constexpr qsizetype kIniValueMax = 499;

QString IniReadString(const QString& file, const QString& section, const QString& key,
                      const QString& defaultValue);

// The value as an unsigned number (leading digits, a leading "-" wraps as
// unsigned); the default when the key is missing or empty, 0 for text that
// does not start with a number.
quint32 IniReadInt(const QString& file, const QString& section, const QString& key,
                   quint32 defaultValue);

// False when the value could not be stored.
bool IniWriteString(const QString& file, const QString& section, const QString& key,
                    const QString& value);

// While an IniBatch for a file lives, reads and writes of that file work on
// one copy in memory, and the file is written once when the (outermost) batch
// ends. Option sets and recent lists use it so that saving 58 values costs one
// file replacement, not 58. Batches are not shared between threads.
class IniBatch {
public:
    explicit IniBatch(const QString& file);
    ~IniBatch();
    IniBatch(const IniBatch&) = delete;
    IniBatch& operator=(const IniBatch&) = delete;

private:
    QString file_;
};
