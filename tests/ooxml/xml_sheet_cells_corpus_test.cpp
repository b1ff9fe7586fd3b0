// Every worksheet of the public corpus's xlsx files loads into the cell
// store, and every cell within its extents reads as its type says, without
// a failure.  Skips when the corpus is absent.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cwctype>
#include <filesystem>
#include <memory>
#include <string>

#include "ooxml/package/zip_package.h"
#include "support/xml_sheet_fake.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

struct Tally {
    int books = 0, sheets = 0, unbound = 0, sstUnbound = 0, cells = 0, bad = 0;
    std::string firstBad;
};

std::string entry(ZipReader &zip, size_t i) {
    char *bytes = nullptr;
    size_t length = 0;
    zip.data(i, bytes, length);
    std::string out(bytes ? bytes : "", length);
    std::free(bytes);
    return out;
}

// Part names compare without case, as the package format says.
std::wstring lower(std::wstring s) {
    for (wchar_t &c : s) c = wchar_t(std::towlower(wint_t(c)));
    return s;
}

// The read of a cell by its type; its message, "ok" when it went well.
std::string readCell(xmlfake::Sheet<char> &sheet, xmlfake::Book<char> &book, int r, int c) {
    const CellType type = sheet.cellType(r, c);
    IFormatT<char> *format = nullptr;
    switch (type) {
    case CELLTYPE_NUMBER: sheet.readNum(r, c, &format); break;
    case CELLTYPE_STRING: sheet.readStr(r, c, &format); break;
    case CELLTYPE_BOOLEAN: sheet.readBool(r, c, &format); break;
    case CELLTYPE_BLANK: sheet.readBlank(r, c, &format); break;
    case CELLTYPE_ERROR: sheet.readError(r, c); break;
    default: return "ok";
    }
    std::string m = xmlfake::message(book);
    if (m == "ok" && sheet.isFormula(r, c)) {
        sheet.readFormula(r, c, &format);
        m = xmlfake::message(book);
    }
    return m;
}

void readBook(const fs::path &path, Tally &t) {
    std::unique_ptr<ZipReader> zip;
    try {
        zip = std::make_unique<ZipReader>(path.wstring());
    } catch (const std::exception &) {
        return; // the corpus's broken archives
    }
    ++t.books;
    int bound = 0, unbound = 0;
    for (binding::e_edition edition : {binding::TRANSITIONAL, binding::STRICT}) {
        xmlfake::Book<char> book(edition);
        for (size_t i = 0; i < zip->size(); ++i)
            if (lower(zip->name(i)) == L"/xl/sharedstrings.xml") {
                const std::string bytes = entry(*zip, i);
                try {
                    book.sst = std::make_unique<SharedStrings>(edition, bytes.data(), bytes.size());
                } catch (const std::exception &) {
                    ++t.sstUnbound; // its string cells then say "sharedStrings not found"
                }
            }
        for (size_t i = 0; i < zip->size(); ++i) {
            const std::wstring name = lower(zip->name(i));
            if (name.rfind(L"/xl/worksheets/sheet", 0) != 0 ||
                name.find(L".xml") == std::wstring::npos)
                continue;
            const std::string bytes = entry(*zip, i);
            std::unique_ptr<xmlfake::Sheet<char>> sheet;
            try {
                sheet = std::make_unique<xmlfake::Sheet<char>>(book, bytes);
            } catch (const std::exception &) {
                ++unbound;
                continue;
            }
            ++bound;
            const long area = long(sheet->lastRow() - sheet->firstRow()) *
                              long(sheet->lastCol() - sheet->firstCol());
            if (area > 4000000) continue;
            for (int r = sheet->firstRow(); r < sheet->lastRow(); ++r)
                for (int c = sheet->firstCol(); c < sheet->lastCol(); ++c) {
                    const std::string m = readCell(*sheet, book, r, c);
                    ++t.cells;
                    const bool noTable = m == "sharedStrings not found" && !book.sst;
                    if (m != "ok" && !noTable && ++t.bad == 1)
                        t.firstBad = path.filename().string() + " " + std::to_string(r) + "," +
                                     std::to_string(c) + ": " + m;
                }
        }
        // A Strict book binds in the second pass only.
        if (edition == binding::TRANSITIONAL && bound) unbound = 0;
        if (bound) break;
        unbound = edition == binding::STRICT ? unbound : 0;
    }
    t.sheets += bound;
    t.unbound += unbound;
}

TEST(XmlSheetCellsCorpus, EveryWorksheetLoadsAndEveryCellReads) {
    const fs::path root = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(root)) GTEST_SKIP() << "no corpus";
    Tally t;
    for (const auto &e : fs::recursive_directory_iterator(root)) {
        const std::string ext = e.path().extension().string();
        if (ext == ".xlsx" || ext == ".xlsm") readBook(e.path(), t);
    }
    std::printf("books %d, worksheets %d, not bound %d, string tables not bound %d, cells read %d, "
                "failed %d\n",
                t.books, t.sheets, t.unbound, t.sstUnbound, t.cells, t.bad);
    EXPECT_GT(t.sheets, 700);
    EXPECT_EQ(t.bad, 0) << t.firstBad;
}

} // namespace
