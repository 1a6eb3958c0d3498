#pragma once
// The two renderings of a comparison result, side by side and all in one,
// behind one small interface. A renderer colours copies of the editors'
// documents into its panes (never the editors themselves), fills the
// filtered views, and selects a difference when navigation asks.

#include "filecompare/ComparisonResult.h"
#include "filecompare/WordBounds.h"

#include <QString>

#include <functional>
#include <initializer_list>
#include <vector>

class RichTextBox;
class clsRTBDocument;
class clsCompareFileOptions;

namespace filecompare {

// The boxes a renderer works on; the form owns them.
struct RenderPanes {
    RichTextBox* original = nullptr;
    RichTextBox* modified = nullptr;
    clsRTBDocument* docOriginal = nullptr;
    clsRTBDocument* docModified = nullptr;
    // Filtered views.
    RichTextBox* deletions = nullptr;
    RichTextBox* additions = nullptr;
    RichTextBox* changes = nullptr;
    // Work boxes, never shown: the editors' copies and one section at a time.
    RichTextBox* originalWork = nullptr;
    RichTextBox* modifiedWork = nullptr;
    clsRTBDocument* docOriginalWork = nullptr;
    clsRTBDocument* docModifiedWork = nullptr;
    RichTextBox* originalSection = nullptr;
    RichTextBox* modifiedSection = nullptr;
    RichTextBox* mergedSection = nullptr;
    clsRTBDocument* docMergedSection = nullptr;
    // Shown panes.
    RichTextBox* originalPane = nullptr;
    RichTextBox* modifiedPane = nullptr;
    clsRTBDocument* docOriginalPane = nullptr;
    clsRTBDocument* docModifiedPane = nullptr;
    RichTextBox* merged = nullptr;
    clsRTBDocument* docMerged = nullptr;
};

// What a render needs from the run besides the boxes.
struct RenderRun {
    const clsCompareFileOptions* options = nullptr;
    // A status panel text of a stage.
    std::function<void(int panel, const QString& text)> progress;
    // Lets events through and says whether the run was asked to stop.
    std::function<bool()> stopRequested;
    // Set while a renderer scrolls a pane, for the scroll coupling to leave
    // alone.
    bool* coupling = nullptr;
};

// Walks records from the last to the first, letting events through and
// showing "caption<percent>tail" in a status panel before each; false when
// an abort ended it early.
bool WalkFromLast(const ComparisonResult& result, const RenderRun& run, int panel, const QString& caption,
                  const QString& tail, const std::function<void(int i, const Difference&)>& step);

class DiffRenderer {
public:
    DiffRenderer(const RenderPanes& panes, const RenderRun& run)
        : p_(panes)
        , run_(run)
    {
    }
    virtual ~DiffRenderer() = default;
    DiffRenderer(const DiffRenderer&) = delete;
    DiffRenderer& operator=(const DiffRenderer&) = delete;

    // Renders the result into this view's panes and the filtered views (the
    // filtered views must be empty); false when an abort ended it, with what
    // was rendered so far on view.
    virtual bool render(const ComparisonResult& result) = 0;
    // Selects a difference in the editors and this view's panes.
    virtual void showDifference(const Difference& d) = 0;
    // Moves this view's panes one paragraph (the editors move themselves).
    virtual void scroll(bool up) = 0;
    // The shown panes of this view.
    virtual std::vector<RichTextBox*> panes() const = 0;

protected:
    RenderPanes p_;
    RenderRun run_;
    WordIndexCache words_;
};

class SideBySideRenderer final : public DiffRenderer {
public:
    using DiffRenderer::DiffRenderer;
    bool render(const ComparisonResult& result) override;
    void showDifference(const Difference& d) override;
    void scroll(bool up) override;
    std::vector<RichTextBox*> panes() const override;

private:
    // False when a section did not bring back the characters it replaced.
    bool renderChange(const Difference& d);
};

class AllInOneRenderer final : public DiffRenderer {
public:
    using DiffRenderer::DiffRenderer;
    bool render(const ComparisonResult& result) override;
    void showDifference(const Difference& d) override;
    void scroll(bool up) override;
    std::vector<RichTextBox*> panes() const override;

private:
    void renderAddition(const Difference& d);
    void renderChange(const Difference& d);
    QString wordRangeText(const RichTextBox* rtb, qint32 lFromWord, qint32 lToWord);
    void insertFormattedText(RichTextBox* rtb, qint32 lWord, const QString& sText, const DiffFormat& f);
};

// Text without fonts of its own is shown in the document's default font;
// a copy of it is shown as its source is.
void TakeLook(RichTextBox* to, const RichTextBox* from);

// Boxes that a render edits many times: off their views until it is done.
class BulkEdit {
public:
    explicit BulkEdit(std::initializer_list<RichTextBox*> boxes);
    ~BulkEdit();
    BulkEdit(const BulkEdit&) = delete;
    BulkEdit& operator=(const BulkEdit&) = delete;

private:
    std::vector<RichTextBox*> boxes_;
};

// Puts the selection of a shown box a third down its view when scrolling
// had left it at an edge, so that what comes before it is in sight too.
void BringSelectionToThird(RichTextBox* box, bool& coupling);

} // namespace filecompare
