#pragma once
// Small text routines shared by the screens and the settings.

#include <QString>
#include <QtGlobal>
#include <string>

// The text up to, not including, its first NUL character.
QString TrimAtNull(const QString& text);
std::string TrimAtNull(const std::string& text);

// The text without the blanks (spaces only, not tabs) at its ends.
QString TrimBlanks(const QString& text);

// A growing prefix of text for a status line that shows work going on: the
// first 2*n characters, where n is a counter shared by every caller that
// counts up on each call and starts over at 0 after 30. Callers pass the same
// text on every timer tick.
QString AnimateStatusText(const QString& text);

// Converts text to a 32-bit integer the way settings and switches have always
// been read: blanks around it are ignored, a decimal fraction or exponent is
// rounded half to even, "&H" and "&O" introduce hexadecimal and octal. Returns
// false, leaving value alone, when the text is no number or out of range.
bool TextToLong(const QString& text, qint32& value);
