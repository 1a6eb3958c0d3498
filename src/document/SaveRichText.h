#pragma once
// Saving what an editor shows under a new name, in one of the formats the
// save dialog offers. The file is written whole through the safe write or
// not at all, so a full disk or a crash leaves the old file as it was.

#include <QString>

class QTextDocument;

namespace tv {

// In the order of the save dialog's filter, which numbers them from 1.
enum class SaveFormat : int { RichText = 1, PlainText = 2, Word = 3, Html = 4 };

// The save dialog's filter index (1 to 4) as a format; anything else is
// rich text, the first entry.
SaveFormat SaveFormatOfFilterIndex(int index);

struct SaveOutcome {
    // A conversion result code as the document converter answers: 0 saved,
    // -2 no target named, -4 the file could not be written.
    int result = 0;
    // Why it could not be written, in words for the user; empty when saved.
    QString reason;
    explicit operator bool() const { return result == 0; }
};

// True when the file exists and its owner may not write it. Renaming a new
// file over it would succeed all the same, so the save has to ask this
// itself: a file the user has made read-only is one they meant to keep.
bool IsReadOnlyFile(const QString& path);

// Writes the document's characters and character formats to `target`. A
// read-only target is refused and left alone.
SaveOutcome SaveDocumentAs(const QTextDocument& document, const QString& target, SaveFormat format);

} // namespace tv
