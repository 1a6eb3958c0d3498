#pragma once
// Printing a whole rich text document with margins given in twips (1440 to
// the inch), measured from the paper's edge. The printer's unprintable strip
// is part of the margin, not added to it; a margin smaller than that strip is
// passed on as it is and the printer cuts what it cannot reach.

#include <QString>
#include <QtGlobal>

class QPrinter;
class QTextDocument;

namespace tv {

// A margin box's text in inches as twips: a number times 1440, rounded;
// anything that is not a number gives half an inch.
qint32 MarginTwips(const QString& inches);

// Prints every page of the document on the printer, which must be set up
// (a QPrintDialog, or an output file for PDF). The document itself is not
// touched: it is laid out anew for the printer's page. Returns an empty text
// when printed, else why nothing was printed.
QString PrintRTF(const QTextDocument& document, QPrinter& printer, qint32 lLeftMargin, qint32 lTopMargin,
                 qint32 lRightMargin, qint32 lBottomMargin);

} // namespace tv
