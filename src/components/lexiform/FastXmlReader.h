#pragma once
// A pull reader for the large XML members of office packages (sheet data,
// document bodies), on libxml2's streaming reader: several times faster than
// QXmlStreamReader on tens of megabytes of cells. It offers the few calls
// the readers need, with element and attribute names compared by local name
// so that whatever prefixes a file uses do not matter. Entities other than
// the predefined ones are never expanded and no network is touched.

#include <QIODevice>
#include <QString>

typedef struct _xmlTextReader xmlTextReader;

namespace lexiform {

class FastXmlReader {
public:
    enum Token { StartElement, EndElement, Characters, EndDocument, Invalid };

    // Reads from the device (a zip member) as the parse goes.
    explicit FastXmlReader(QIODevice* device);
    ~FastXmlReader();
    FastXmlReader(const FastXmlReader&) = delete;
    FastXmlReader& operator=(const FastXmlReader&) = delete;

    Token readNext();
    bool atEnd() const { return token_ == EndDocument || token_ == Invalid; }
    bool hasError() const { return token_ == Invalid; }

    // Local name of the current start or end element.
    bool isName(const char* localName) const;
    // An attribute of the current start element by local name; empty if absent.
    QString attribute(const char* localName) const;
    bool hasAttribute(const char* localName) const;
    // The current character data.
    QString text() const;

    // From a start element: the text of it and its descendants, ending on
    // its end element.
    QString readElementText();
    // From a start element: moves past its end element.
    void skipCurrentElement();

private:
    xmlTextReader* reader_ = nullptr;
    Token token_ = Invalid;
    bool pendingEnd_ = false;  // an empty element owes its end element
    bool started_ = false;
};

} // namespace lexiform
