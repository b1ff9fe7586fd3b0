// Structure edits on books other programs made: the corpus's files and books
// written by the producers installed here get rows and columns inserted and
// removed, a merge, a name and a new sheet name; every part the book keeps
// opaque comes back byte for byte, and openpyxl and LibreOffice open the result.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"
#include "support/oracle.h"
#include "support/xml_parts.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

std::map<std::wstring, std::string> entries(ZipReader &zip) {
    std::map<std::wstring, std::string> out;
    for (size_t i = 0; i < zip.size(); ++i) {
        char *data = nullptr;
        size_t size = 0;
        zip.data(i, data, size);
        out[zip.name(i)] = std::string(data ? data : "", size);
        std::free(data);
    }
    return out;
}

// Edits the first sheet of `file`, saves it as `saved`; what went wrong, or "".
std::string editAndSave(const fs::path &file, const fs::path &saved) {
    XMLBookProxy<char> book;
    if (!book.load(file.string().c_str())) return std::string("load: ") + book.errorMessage();
    ISheetT<char> *s = book.getSheet(0);
    if (!s) return "no first sheet";
    const bool ok = s->insertRow(1, 2) && s->insertCol(1, 1) && s->removeRow(6, 6) &&
                    s->removeCol(4, 4) && s->setMerge(30, 31, 0, 1) &&
                    s->setNamedRange("added", 0, 1, 0, 1, -2);
    if (!ok) return std::string("edit: ") + book.errorMessage();
    s->setName("Edited sheet");
    auto *impl = dynamic_cast<XMLBookImplT<char> *>(book.impl());
    std::set<std::wstring> opaque;
    for (const auto &p : impl->parts())
        if (dynamic_cast<BinaryFile *>(p.second)) opaque.insert(p.first);
    if (!book.save(saved.string().c_str())) return std::string("save: ") + book.errorMessage();
    ZipReader before(file.wstring()), after(saved.wstring());
    const auto a = entries(before), b = entries(after);
    size_t compared = 0;
    for (const auto &e : a) {
        const bool kept = opaque.count(L"/" + e.first) || opaque.count(e.first);
        // The book drops the calculation chain on every save.
        if (!kept || e.first.find(L"calcChain") != std::wstring::npos) continue;
        const auto it = b.find(e.first);
        if (it == b.end() || it->second != e.second)
            return "changed " + std::string(e.first.begin(), e.first.end());
        ++compared;
    }
    return compared == 0 && opaque.size() > 1 ? "no opaque part compared" : "";
}

TEST(XMLSheetCorpusInterop, EditedBooksKeepTheirPartsAndOpen) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "python3-openpyxl is not installed";
    const fs::path tmp = fs::path(TABRIX_TEST_TMP) / "xml_sheet_corpus";
    fs::remove_all(tmp);
    fs::create_directories(tmp / "made");
    std::vector<fs::path> files;
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    for (const char *name :
         {"libxlsxwriter/merge_range01.xlsx", "libxlsxwriter/defined_name01.xlsx",
          "libxlsxwriter/outline01.xlsx", "libxlsxwriter/panes01.xlsx",
          "libxlsxwriter/print_area01.xlsx", "libxlsxwriter/row_col_format01.xlsx",
          "calamine/column_row_ranges.xlsx"})
        if (fs::exists(corpus / name)) files.push_back(corpus / name);
    xmlparts::makeProducerBooks(tmp / "made");
    for (const auto &e : fs::directory_iterator(tmp / "made"))
        if (e.path().extension() == ".xlsx") files.push_back(e.path());
    if (files.empty()) GTEST_SKIP() << "no corpus and no producers";

    const bool office = oracle::has("soffice");
    int n = 0;
    for (const fs::path &file : files) {
        SCOPED_TRACE(file.string());
        const fs::path saved = tmp / ("edited" + std::to_string(n++) + ".xlsx");
        const std::string problem = editAndSave(file, saved);
        EXPECT_EQ(problem, "");
        if (!problem.empty()) continue;
        const std::string first = "SHEET " + oracle::hex(L"Edited sheet") + " visible";
        oracle::Lines lines = oracle::dump("openpyxl-sheets", saved.string());
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.front(), first);
        if (!office) continue;
        lines = oracle::dump("libreoffice-sheets", saved.string());
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.front(), first);
    }
}

} // namespace
