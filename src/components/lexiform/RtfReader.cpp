#include "components/lexiform/RtfReader.h"

#include "components/lexiform/RtfCodePages.h"

#include <QHash>
#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <string_view>
#include <unordered_set>

namespace lexiform {

namespace {

enum class Dest : unsigned char { Body, FontTable, ColorTable, Skip };

// Everything a group carries; a '{' copies it, the matching '}' restores it.
struct GroupState {
    Dest dest = Dest::Body;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool hidden = false;
    bool inTable = false;
    int font = -1;  // -1: the default font
    int halfPoints = 0;
    int fore = -1;  // colour table indices; -1: none given
    int back = -1;
    int highlight = -1;
    int shading = -1;
    int uc = 1;
};

struct FontEntry {
    QString name;
    int codePage = -1;  // -1: the document's
};

// Deeper groups than this share their parent's state: real documents nest a
// few dozen levels, and a flood of '{' must not cost memory per brace.
constexpr int kMaxDepth = 512;

// Destinations whose content is never shown, even without a \* in front.
const std::unordered_set<std::string_view>& skippedDestinations()
{
    static const std::unordered_set<std::string_view> names = {
        "stylesheet", "info", "pict", "header", "headerl", "headerr", "headerf",
        "footer", "footerl", "footerr", "footerf", "footnote", "annotation",
        "fldinst", "xe", "tc", "txe", "rxe", "bkmkstart", "bkmkend",
        "nonshppict", "shp", "shpinst", "listtable", "listoverridetable",
        "revtbl", "rsidtbl", "generator", "xmlnstbl", "mmathPr", "themedata",
        "colorschememapping", "datastore", "latentstyles", "pgdsctbl", "filetbl",
        "template", "userprops", "ftnsep", "ftnsepc", "aftnsep", "aftnsepc",
        "atnid", "atnauthor", "atrfstart", "atrfend", "objdata", "objclass",
        "objname", "pn", "pntxta", "pntxtb", "docvar", "protusertbl",
        "wgrffmtfilter", "fchars", "lchars", "passwordhash", "background",
        "listpicture", "panose", "falt", "fontemb", "fontfile", "keywords",
        "comment", "title", "subject", "author", "operator", "doccomm",
        "company", "category", "manager", "hlinkbase", "buptim", "creatim",
        "printim", "revtim",
    };
    return names;
}

bool isUnderlineWord(std::string_view w)
{
    static const std::unordered_set<std::string_view> names = {
        "ul", "uld", "uldash", "uldashd", "uldashdd", "uldb", "ulhwave",
        "ulldash", "ulth", "ulthd", "ulthdash", "ulthdashd", "ulthdashdd",
        "ulthldash", "ululdbwave", "ulw", "ulwave",
    };
    return names.count(w) != 0;
}

char16_t specialCharacter(std::string_view w)
{
    static const std::map<std::string_view, char16_t> chars = {
        {"tab", u'\t'},       {"line", u'\x2028'},   {"bullet", u'\x2022'},
        {"emdash", u'\x2014'}, {"endash", u'\x2013'}, {"emspace", u'\x2003'},
        {"enspace", u'\x2002'}, {"qmspace", u'\x2005'}, {"lquote", u'\x2018'},
        {"rquote", u'\x2019'}, {"ldblquote", u'\x201C'}, {"rdblquote", u'\x201D'},
        {"zwj", u'\x200D'},   {"zwnj", u'\x200C'},   {"zwbo", u'\x200B'},
        {"ltrmark", u'\x200E'}, {"rtlmark", u'\x200F'},
    };
    auto it = chars.find(w);
    return it == chars.end() ? 0 : it->second;
}

class Reader {
public:
    explicit Reader(const QByteArray& in)
        : p_(in.constData()), end_(in.constData() + in.size())
    {
        stack_.reserve(64);
    }

    Document run()
    {
        while (p_ < end_) {
            const char c = *p_++;
            switch (c) {
            case '{':
                openGroup();
                break;
            case '}':
                closeGroup();
                break;
            case '\\':
                controlSequence();
                break;
            case '\r':
            case '\n':
            case '\0':
                break;
            case '\t':
                flushBytes();
                character(u'\t');
                break;
            default:
                textByte(static_cast<unsigned char>(c));
                break;
            }
        }
        flushBytes();
        if (st_.dest == Dest::FontTable)
            finishFontEntry();
        // A trailing \par ends the last paragraph rather than opening an empty one.
        if (!(para_.runs.empty() && !doc_.paragraphs.empty()))
            doc_.paragraphs.push_back(std::move(para_));
        return std::move(doc_);
    }

private:
    // --- groups --------------------------------------------------------------

    void openGroup()
    {
        flushBytes();
        skip_ = 0;
        if (int(stack_.size()) >= kMaxDepth) {
            ++overflow_;
            return;
        }
        stack_.push_back(st_);
    }

    void closeGroup()
    {
        flushBytes();
        skip_ = 0;
        if (overflow_ > 0) {
            --overflow_;
            return;
        }
        if (stack_.empty())
            return;  // a stray '}': ignored
        if (st_.dest == Dest::FontTable)
            finishFontEntry();
        if (st_.dest == Dest::ColorTable && colorHasValue_)
            finishColor();
        st_ = stack_.back();
        stack_.pop_back();
    }

    // --- tokens ----------------------------------------------------------------

    void controlSequence()
    {
        if (p_ >= end_)
            return;
        const char c = *p_;
        if (isLetter(c)) {
            controlWord();
            return;
        }
        ++p_;
        if (c == '\'') {
            hexByte();
            return;
        }
        if (consumeSkipped())
            return;
        switch (c) {
        case '\\':
        case '{':
        case '}':
            textByte(static_cast<unsigned char>(c));
            break;
        case '~':
            flushBytes();
            character(u'\x00A0');
            break;
        case '_':
            flushBytes();
            character(u'\x2011');
            break;
        case '*':
            // An ignorable destination: skipped whole unless the group is
            // already one we read.
            flushBytes();
            if (st_.dest == Dest::Body || st_.dest == Dest::FontTable)
                st_.dest = Dest::Skip;
            break;
        case '\r':
        case '\n':
            flushBytes();
            paragraphBreak();
            break;
        default:
            break;  // \- optional hyphen, \| \: and unknown symbols
        }
    }

    void hexByte()
    {
        int value = 0;
        int digits = 0;
        while (digits < 2 && p_ < end_) {
            const int h = hexValue(*p_);
            if (h < 0)
                break;
            value = value * 16 + h;
            ++p_;
            ++digits;
        }
        if (consumeSkipped())
            return;
        if (digits > 0)
            textByte(static_cast<unsigned char>(value));
    }

    void controlWord()
    {
        char name[33];
        int len = 0;
        while (p_ < end_ && isLetter(*p_)) {
            if (len < 32)
                name[len++] = *p_;
            ++p_;
        }
        const std::string_view word(name, len);
        bool hasParam = false;
        bool negative = false;
        long long param = 0;
        if (p_ < end_ && *p_ == '-' && p_ + 1 < end_ && isDigit(p_[1])) {
            negative = true;
            ++p_;
        }
        while (p_ < end_ && isDigit(*p_)) {
            hasParam = true;
            if (param < 100000000000LL)
                param = param * 10 + (*p_ - '0');
            ++p_;
        }
        if (p_ < end_ && *p_ == ' ')
            ++p_;
        if (negative)
            param = -param;
        const int value = int(std::clamp<long long>(param, std::numeric_limits<int>::min(),
                                                    std::numeric_limits<int>::max()));
        // Binary data is skipped in any state, fallback included.
        if (word == "bin") {
            flushBytes();
            const long long n = std::max<long long>(0, param);
            p_ += std::min<long long>(n, end_ - p_);
            consumeSkipped();
            return;
        }
        if (consumeSkipped())
            return;
        flushBytes();
        handleWord(word, hasParam, value);
    }

    void handleWord(std::string_view w, bool hasParam, int value)
    {
        const bool on = !hasParam || value != 0;
        if (st_.dest == Dest::Skip)
            return;

        if (st_.dest == Dest::ColorTable) {
            const int v = std::clamp(value, 0, 255);
            if (w == "red") {
                color_ = (color_ & 0x00FFFF) | Rgb(v) << 16;
                colorHasValue_ = true;
            } else if (w == "green") {
                color_ = (color_ & 0xFF00FF) | Rgb(v) << 8;
                colorHasValue_ = true;
            } else if (w == "blue") {
                color_ = (color_ & 0xFFFF00) | Rgb(v);
                colorHasValue_ = true;
            }
            return;
        }
        if (st_.dest == Dest::FontTable) {
            if (w == "f") {
                finishFontEntry();
                fontNumber_ = value;
            } else if (w == "fcharset") {
                fontCodePage_ = rtf::codePageOfCharset(value);
            } else if (w == "cpg") {
                fontCodePage_ = value;
            } else if (w == "u") {
                fontName_ += QChar(char16_t(value));
                skip_ = st_.uc;
            } else if (w == "uc") {
                st_.uc = std::clamp(value, 0, 64);
            } else if (skippedDestinations().count(w)) {
                st_.dest = Dest::Skip;
            }
            return;
        }

        // Body.
        if (w == "par") {
            paragraphBreak();
        } else if (w == "u") {
            character(char16_t(value));  // negative numbers wrap to the upper half
            skip_ = st_.uc;
        } else if (w == "uc") {
            st_.uc = std::clamp(value, 0, 64);
        } else if (w == "f") {
            st_.font = value;
        } else if (w == "fs") {
            st_.halfPoints = std::clamp(value, 0, 3276);
        } else if (w == "b") {
            st_.bold = on;
        } else if (w == "i") {
            st_.italic = on;
        } else if (w == "strike" || w == "striked") {
            st_.strike = on;
        } else if (isUnderlineWord(w)) {
            st_.underline = on;
        } else if (w == "ulnone") {
            st_.underline = false;
        } else if (w == "v") {
            st_.hidden = on;
        } else if (w == "cf") {
            st_.fore = value;
        } else if (w == "cb") {
            st_.back = value;
        } else if (w == "highlight") {
            st_.highlight = value;
        } else if (w == "chcbpat") {
            st_.shading = value;
        } else if (w == "plain") {
            const GroupState keep = st_;
            st_ = GroupState{};
            st_.dest = keep.dest;
            st_.inTable = keep.inTable;
            st_.uc = keep.uc;
        } else if (w == "pard") {
            st_.inTable = false;
        } else if (w == "intbl") {
            st_.inTable = true;
        } else if (w == "itap") {
            st_.inTable = value > 0;
        } else if (w == "cell" || w == "nestcell") {
            ++pendingCells_;
        } else if (w == "row") {
            pendingCells_ = 0;
            endParagraph();
        } else if (w == "fonttbl") {
            st_.dest = Dest::FontTable;
            fontNumber_ = -1;
        } else if (w == "colortbl") {
            st_.dest = Dest::ColorTable;
            colors_.clear();
            color_ = 0;
            colorHasValue_ = false;
        } else if (w == "deff") {
            defaultFont_ = value;
        } else if (w == "ansicpg") {
            docCodePage_ = value > 0 ? value : 1252;
        } else if (w == "mac") {
            docCodePage_ = 10000;
        } else if (w == "pc") {
            docCodePage_ = 437;
        } else if (w == "pca") {
            docCodePage_ = 850;
        } else if (skippedDestinations().count(w)) {
            st_.dest = Dest::Skip;
        } else if (char16_t ch = specialCharacter(w)) {
            character(ch);
        }
        // Every other word (paragraph layout, sections, document settings)
        // does not change the text or the formats the model carries.
    }

    // --- text --------------------------------------------------------------------

    // Counts one unit of a \uN fallback; true when the unit is to be dropped.
    bool consumeSkipped()
    {
        if (skip_ <= 0)
            return false;
        --skip_;
        return true;
    }

    void textByte(unsigned char b)
    {
        if (consumeSkipped())
            return;
        if (st_.dest == Dest::ColorTable) {
            if (b == ';')
                finishColor();
            return;
        }
        if (st_.dest == Dest::FontTable) {
            if (b == ';')
                finishFontEntry();
            else if (fontNumber_ >= 0)
                fontNameBytes_ += char(b);
            return;
        }
        if (st_.dest != Dest::Body || st_.hidden)
            return;
        if (!bytes_.isEmpty() && bytesFormat_ != currentFormatKey())
            flushBytes();
        if (bytes_.isEmpty())
            bytesFormat_ = currentFormatKey();
        bytes_ += char(b);
    }

    // Pending 8-bit text is decoded in one go, so that a double-byte
    // character written as two \'hh escapes stays whole.
    void flushBytes()
    {
        if (bytes_.isEmpty())
            return;
        const QString s = rtf::decodeCodePage(codePageOf(bytesFormat_.font), bytes_);
        bytes_.clear();
        const GroupState saved = st_;
        st_.font = bytesFormat_.font;
        emitText(s);
        st_ = saved;
    }

    void character(char16_t c)
    {
        if (st_.dest == Dest::Body && !st_.hidden)
            emitText(QString(QChar(c)));
    }

    void emitText(QString s)
    {
        if (s.isEmpty())
            return;
        // Line ends smuggled in as \'0d, \u10 and the like cannot end a
        // paragraph here (only \par does); they stay as line breaks.
        for (QChar& c : s)
            if (c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator)
                c = QChar::LineSeparator;
        if (pendingCells_ > 0) {
            const int cells = pendingCells_;
            pendingCells_ = 0;
            emitText(QString(cells, QChar(u'\t')));
        }
        const CharFormat f = resolveFormat();
        if (!para_.runs.empty() && para_.runs.back().format == f)
            para_.runs.back().text += s;
        else
            para_.runs.push_back(Run{s, f});
    }

    void paragraphBreak()
    {
        if (st_.dest != Dest::Body)
            return;
        // A paragraph inside a table cell stays in the row's paragraph.
        if (st_.inTable) {
            emitText(QStringLiteral(" "));
            return;
        }
        pendingCells_ = 0;
        endParagraph();
    }

    void endParagraph()
    {
        doc_.paragraphs.push_back(std::move(para_));
        para_ = Paragraph{};
    }

    // --- formats -----------------------------------------------------------------

    struct FormatKey {
        bool bold, italic, underline, strike;
        int font, halfPoints, fore, back, highlight, shading;
        bool operator==(const FormatKey&) const = default;
    };

    FormatKey currentFormatKey() const
    {
        return {st_.bold, st_.italic, st_.underline, st_.strike, st_.font,
                st_.halfPoints, st_.fore, st_.back, st_.highlight, st_.shading};
    }

    std::optional<Rgb> color(int index) const
    {
        if (index < 0 || index >= int(colors_.size()))
            return std::nullopt;
        return colors_[index];
    }

    CharFormat resolveFormat() const
    {
        CharFormat f;
        f.bold = st_.bold;
        f.italic = st_.italic;
        f.underline = st_.underline;
        f.strike = st_.strike;
        f.foreColor = color(st_.fore);
        // Highlighting is painted over shading, and shading over the old \cb.
        if (st_.highlight > 0)
            f.backColor = color(st_.highlight);
        if (!f.backColor && st_.shading >= 0)
            f.backColor = color(st_.shading);
        if (!f.backColor && st_.back >= 0)
            f.backColor = color(st_.back);
        if (st_.font >= 0 && st_.font != defaultFont_) {
            auto it = fonts_.find(st_.font);
            if (it != fonts_.end())
                f.fontName = it->name;
        }
        f.fontSize = st_.halfPoints / 2.0;
        return f;
    }

    int codePageOf(int font) const
    {
        auto it = fonts_.find(font >= 0 ? font : defaultFont_);
        if (it != fonts_.end() && it->codePage > 0)
            return it->codePage;
        return docCodePage_;
    }

    void finishFontEntry()
    {
        if (fontNumber_ >= 0) {
            FontEntry e;
            const int cp = fontCodePage_ > 0 ? fontCodePage_ : docCodePage_;
            e.name = (rtf::decodeCodePage(cp, fontNameBytes_) + fontName_).trimmed();
            e.codePage = fontCodePage_;
            fonts_.insert(fontNumber_, e);
        }
        fontNumber_ = -1;
        fontCodePage_ = -1;
        fontNameBytes_.clear();
        fontName_.clear();
    }

    void finishColor()
    {
        if (colors_.size() < 65536)
            colors_.push_back(colorHasValue_ ? std::optional<Rgb>(color_) : std::nullopt);
        color_ = 0;
        colorHasValue_ = false;
    }

    static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static int hexValue(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    }

    const char* p_;
    const char* end_;
    GroupState st_;
    std::vector<GroupState> stack_;
    int overflow_ = 0;
    int skip_ = 0;  // \uN fallback units still to drop
    int pendingCells_ = 0;

    int docCodePage_ = 1252;
    int defaultFont_ = 0;
    QHash<int, FontEntry> fonts_;
    int fontNumber_ = -1;
    int fontCodePage_ = -1;
    QByteArray fontNameBytes_;
    QString fontName_;

    std::vector<std::optional<Rgb>> colors_;
    Rgb color_ = 0;
    bool colorHasValue_ = false;

    QByteArray bytes_;
    FormatKey bytesFormat_{};

    Document doc_;
    Paragraph para_;
};

} // namespace

bool looksLikeRtf(const QByteArray& bytes)
{
    qsizetype i = 0;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        i = 3;
    while (i < bytes.size() && (bytes[i] == ' ' || bytes[i] == '\t' || bytes[i] == '\r' || bytes[i] == '\n'))
        ++i;
    return QByteArrayView(bytes).sliced(i).startsWith("{\\rtf");
}

Document readRtf(const QByteArray& rtf)
{
    return Reader(rtf).run();
}

} // namespace lexiform
