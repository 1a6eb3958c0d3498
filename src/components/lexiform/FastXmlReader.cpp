#include "components/lexiform/FastXmlReader.h"

#include <cstring>
#include <libxml/parser.h>
#include <libxml/xmlreader.h>

namespace lexiform {

namespace {

int readFromDevice(void* context, char* buffer, int len)
{
    auto* device = static_cast<QIODevice*>(context);
    const qint64 n = device->read(buffer, len);
    return n < 0 ? -1 : int(n);
}

int closeNothing(void*)
{
    return 0;
}

void ignoreErrors(void*, const char*, xmlParserSeverities, xmlTextReaderLocatorPtr) {}

const char* localName(xmlTextReader* r)
{
    const xmlChar* n = xmlTextReaderConstLocalName(r);
    return n ? reinterpret_cast<const char*>(n) : "";
}

} // namespace

FastXmlReader::FastXmlReader(QIODevice* device)
{
    static const bool initialised = [] {
        xmlInitParser();
        return true;
    }();
    (void)initialised;
    reader_ = xmlReaderForIO(readFromDevice, closeNothing, device, nullptr, nullptr, XML_PARSE_NONET | XML_PARSE_COMPACT);
    if (reader_) {
        xmlTextReaderSetErrorHandler(reader_, ignoreErrors, nullptr);
        token_ = EndElement;  // anything but the end states until the first read
    }
}

FastXmlReader::~FastXmlReader()
{
    if (reader_)
        xmlFreeTextReader(reader_);
}

FastXmlReader::Token FastXmlReader::readNext()
{
    if (!reader_ || token_ == Invalid || token_ == EndDocument)
        return token_;
    if (pendingEnd_) {
        pendingEnd_ = false;
        return token_ = EndElement;
    }
    for (;;) {
        const int rc = xmlTextReaderRead(reader_);
        if (rc == 0)
            return token_ = (started_ ? EndDocument : Invalid);
        if (rc < 0)
            return token_ = Invalid;
        started_ = true;
        switch (xmlTextReaderNodeType(reader_)) {
        case XML_READER_TYPE_ELEMENT:
            pendingEnd_ = xmlTextReaderIsEmptyElement(reader_) == 1;
            return token_ = StartElement;
        case XML_READER_TYPE_END_ELEMENT:
            return token_ = EndElement;
        case XML_READER_TYPE_TEXT:
        case XML_READER_TYPE_CDATA:
        case XML_READER_TYPE_WHITESPACE:
        case XML_READER_TYPE_SIGNIFICANT_WHITESPACE:
            return token_ = Characters;
        default:
            continue;  // comments, processing instructions, declarations
        }
    }
}

bool FastXmlReader::isName(const char* name) const
{
    return reader_ && std::strcmp(localName(reader_), name) == 0;
}

QString FastXmlReader::attribute(const char* name) const
{
    if (!reader_ || token_ != StartElement || xmlTextReaderHasAttributes(reader_) != 1)
        return QString();
    QString value;
    if (xmlTextReaderMoveToFirstAttribute(reader_) == 1) {
        do {
            if (std::strcmp(localName(reader_), name) == 0) {
                const xmlChar* v = xmlTextReaderConstValue(reader_);
                value = v ? QString::fromUtf8(reinterpret_cast<const char*>(v)) : QString();
                break;
            }
        } while (xmlTextReaderMoveToNextAttribute(reader_) == 1);
        xmlTextReaderMoveToElement(reader_);
    }
    return value;
}

bool FastXmlReader::hasAttribute(const char* name) const
{
    if (!reader_ || token_ != StartElement || xmlTextReaderHasAttributes(reader_) != 1)
        return false;
    bool found = false;
    if (xmlTextReaderMoveToFirstAttribute(reader_) == 1) {
        do {
            if (std::strcmp(localName(reader_), name) == 0) {
                found = true;
                break;
            }
        } while (xmlTextReaderMoveToNextAttribute(reader_) == 1);
        xmlTextReaderMoveToElement(reader_);
    }
    return found;
}

QString FastXmlReader::text() const
{
    if (!reader_ || token_ != Characters)
        return QString();
    const xmlChar* v = xmlTextReaderConstValue(reader_);
    return v ? QString::fromUtf8(reinterpret_cast<const char*>(v)) : QString();
}

QString FastXmlReader::readElementText()
{
    QString result;
    int depth = 1;
    while (depth > 0) {
        switch (readNext()) {
        case StartElement: ++depth; break;
        case EndElement: --depth; break;
        case Characters: result += text(); break;
        default: return result;  // end of input or error
        }
    }
    return result;
}

void FastXmlReader::skipCurrentElement()
{
    int depth = 1;
    while (depth > 0) {
        switch (readNext()) {
        case StartElement: ++depth; break;
        case EndElement: --depth; break;
        case Characters: break;
        default: return;
        }
    }
}

} // namespace lexiform
