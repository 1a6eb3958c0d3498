#pragma once
// The children of the element a reader stands on, one start element at a
// time: the loop every reader of nested office XML is made of. Works over
// QXmlStreamReader and FastXmlReader alike.

namespace lexiform {

template <class Reader>
class XmlChildren {
public:
    explicit XmlChildren(Reader& xml) : xml_(xml) {}

    // Moves to the next start element below the element; false once the
    // element's own end has been read (or the document ended). Each child
    // must be read to its end, skipped, or entered.
    bool next()
    {
        while (depth_ > 0 && !xml_.atEnd()) {
            const auto t = xml_.readNext();
            if (t == Reader::EndElement)
                --depth_;
            else if (t == Reader::StartElement)
                return true;
        }
        return false;
    }

    // The current child is a wrapper: its children are walked as the
    // element's own.
    void enter() { ++depth_; }

private:
    Reader& xml_;
    int depth_ = 1;
};

} // namespace lexiform
