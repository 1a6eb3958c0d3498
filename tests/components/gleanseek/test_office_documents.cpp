// Searching real Word, OpenDocument, Excel and PDF files through the
// program's document readers.

#include "components/gleanseek/Gleanseek.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <mutex>
#include <sstream>

using namespace gleanseek;
namespace fs = std::filesystem;

namespace {

struct Errors : GleanseekEvents {
    std::mutex m;
    std::vector<std::string> list;
    void SearchError(std::int32_t code, const std::string& message) override
    {
        std::lock_guard l(m);
        list.push_back(std::to_string(code) + " " + message);
    }
};

void runSearch(Gleanseek& g)
{
    g.StartSearch();
    ASSERT_TRUE(tvtest::waitIdle(g, 120));
}

// The viewer shows a hit's line from the same extracted text.
void expectViewerShowsTheHit(Gleanseek& g, const Hit& hit)
{
    tvtest::TempDir viewer;
    const std::string demo = viewer.file("DemoTemp.TXT");
    ASSERT_TRUE(g.ExtractText(hit.sFile, demo));
    std::istringstream in(tvtest::readFile(demo));
    std::string line;
    for (int n = 1; n <= hit.lLine; ++n)
        std::getline(in, line);
    EXPECT_EQ(line, hit.sItem);
}

struct Folder {
    tvtest::TempDir tmp;
    explicit Folder(const std::vector<std::string>& fixtures)
    {
        for (const std::string& f : fixtures)
            fs::copy_file(tvtest::dataPath(f), tmp.file(f));
    }
};

} // namespace

TEST(OfficeDocuments, WordProcessorFilesAndPdfAreSearchedInTheirText)
{
    const std::vector<std::string> kinds = {"docx", "odt", "rtf", "pdf", "doc"};
    std::vector<std::string> files;
    for (const std::string& k : kinds)
        files.push_back("letter-original." + k);
    Folder f(files);
    Errors errors;
    Gleanseek g;
    g.setEvents(&errors);
    g.setSearchFolder(f.tmp.path());
    g.setSearchText("wh-2024-117");
    g.setSupportOfficeDocs(true);
    runSearch(g);
    std::map<std::string, Hit> byFile;
    Hit h;
    for (std::int32_t i = 0; g.GetHit(i, h); ++i)
        byFile[fs::path(h.sFile).extension().string().substr(1)] = h;
    EXPECT_TRUE(errors.list.empty()) << errors.list.front();
    for (const std::string& k : kinds) {
        SCOPED_TRACE(k);
        ASSERT_EQ(byFile.count(k), 1u);
        EXPECT_EQ(byFile[k].sItem.rfind("Important: all invoices", 0), 0u);
        EXPECT_EQ(byFile[k].lCol, static_cast<std::int32_t>(byFile[k].sItem.find("WH-2024-117")) + 1);
        expectViewerShowsTheHit(g, byFile[k]);
    }

    // Without the option the same files give nothing: zipped, compressed or
    // binary, the phrase is not in their bytes.
    g.setSupportOfficeDocs(false);
    runSearch(g);
    for (std::int32_t i = 0; g.GetHit(i, h); ++i)
        EXPECT_EQ(fs::path(h.sFile).extension(), ".rtf");
}

TEST(OfficeDocuments, WorkbooksAreSearchedRowByRow)
{
    Folder f({"book-original.xlsx", "book-original.ods", "book-original.xls"});
    Gleanseek g;
    g.setSearchFolder(f.tmp.path());
    g.setSearchText("café lumière");
    g.setSupportOfficeDocs(true);
    runSearch(g);
    ASSERT_EQ(g.HitCount(), 3);
    Hit h;
    for (std::int32_t i = 0; g.GetHit(i, h); ++i) {
        SCOPED_TRACE(h.sFile);
        // Number formats differ between the readers; the text does not.
        EXPECT_EQ(h.sItem.rfind("O-1003,Café Lumière,2024-02-02,3,120", 0), 0u);
        EXPECT_EQ(h.lCol, 8);
        expectViewerShowsTheHit(g, h);
    }
}

TEST(OfficeDocuments, UnreadableDocumentsAreReportedAndSkipped)
{
    Folder f({"letter-nocopy.pdf", "letter-password.pdf"});
    tvtest::writeFile(f.tmp.file("fake.docx"), std::string("PK\x03\x04 a broken package, WH-2024-117"));
    Errors errors;
    Gleanseek g;
    g.setEvents(&errors);
    g.setSearchFolder(f.tmp.path());
    g.setSearchText("WH-2024-117");
    g.setSupportOfficeDocs(true);
    runSearch(g);
    EXPECT_EQ(g.HitCount(), 0);
    std::sort(errors.list.begin(), errors.list.end());
    EXPECT_EQ(errors.list,
              (std::vector<std::string>{
                  "512 Cannot read the text of " + f.tmp.file("fake.docx") + ": not a readable document",
                  "512 Cannot read the text of " + f.tmp.file("letter-nocopy.pdf") +
                      ": the document does not allow copying its text",
                  "512 Cannot read the text of " + f.tmp.file("letter-password.pdf") +
                      ": the document is protected by a password"}));
    EXPECT_FALSE(g.ExtractText(f.tmp.file("letter-password.pdf"), f.tmp.file("DemoTemp.TXT")));
    EXPECT_FALSE(fs::exists(f.tmp.file("DemoTemp.TXT")));
}
