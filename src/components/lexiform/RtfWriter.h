#pragma once
// Writing the rich text model as RTF that word processors and rich edit
// controls read with the same text and character formats.

#include "components/lexiform/RichTextModel.h"

#include <QByteArray>

namespace lexiform {

// The document as RTF 1 in code page 1252: characters outside it as \uN with
// a '?' fallback, every paragraph ended by \par, a run's formats in a group of
// its own. A background colour is written as \highlight, \chcbpat and \cb at
// once, so that readers that know only one of them still show it. Runs with
// an empty font name use the default font \f0.
QByteArray writeRtf(const Document& doc);

} // namespace lexiform
