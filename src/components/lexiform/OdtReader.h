#pragma once
// OpenDocument text (.odt, .ott): the running text with its character
// formats, from content.xml and the named styles of styles.xml.
//
// Laid out like the DOCX reader: tables as one paragraph per row with tabs
// between cells, frames and text boxes after their anchoring paragraph,
// notes appended after the body in reference order, headers, footers,
// annotations and deleted tracked changes left out.

#include "components/lexiform/LexiformResult.h"
#include "components/lexiform/RichTextModel.h"

#include <QString>

namespace lexiform {

int readOdt(const QString& path, const ReadLimits& limits, Document& out);

} // namespace lexiform
