#pragma once
// Background colour of a rich text box's selection, and a few named colours.
// Each use is short-lived: create, assign the box, highlight, drop.

#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>

class RichTextBox;

class ClsAPIHighlight {
public:
    // The window background, as a system colour number.
    static constexpr std::int32_t kSystemWindowColor = std::int32_t(0x80000005u);

    // The dialog is kept for callers that pick colours; it may be null.
    void AssignControls(RichTextBox* richText, QObject* dialog = nullptr);

    // Sets the background of the selection (at the caret when it is empty).
    // Without an assigned box it does nothing.
    void APIHighlightHard(std::int32_t lColor);
    // The same, then the text colour.
    void APIHighlightHardHard(std::int32_t lColor, std::int32_t lFontColor);
    // Back to the window's own background colour.
    void APIHighlightRemove();

    // COLORREF of a colour name, case-insensitive; unknown names give 0.
    static std::int32_t NamedColour(const QString& name);

private:
    QPointer<RichTextBox> rtb_;
    QPointer<QObject> dialog_;
};
