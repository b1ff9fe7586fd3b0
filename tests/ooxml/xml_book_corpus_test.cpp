// Every xlsx and xlsm of the public corpus loads, every cell of its
// worksheets within their extents reads as its type says without a
// failure, and the book saves and loads again with every part it had:
// parts the book does not model byte for byte, the calculation chain alone
// left out.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "support/packages.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

// Files that are not packages a book can read, each with the reason.
const std::map<std::string, std::string> kKnownBad = {
    {"pass_protected.xlsx", "an encrypted compound file, not a zip"},
    {"issue252.xlsx", "a damaged deflate stream"},
};

// The read of a cell by its type, and of its formula; the message, "ok"
// when it went well.
std::string readCell(IBookT<char> &book, ISheetT<char> &sheet, int r, int c) {
    IFormatT<char> *format = nullptr;
    switch (sheet.cellType(r, c)) {
    case CELLTYPE_NUMBER: sheet.readNum(r, c, &format); break;
    case CELLTYPE_STRING: sheet.readStr(r, c, &format); break;
    case CELLTYPE_BOOLEAN: sheet.readBool(r, c, &format); break;
    case CELLTYPE_BLANK: sheet.readBlank(r, c, &format); break;
    case CELLTYPE_ERROR: sheet.readError(r, c); break;
    default: return "ok";
    }
    std::string m = book.errorMessage();
    if (m == "ok" && sheet.isFormula(r, c)) {
        sheet.readFormula(r, c, &format);
        m = book.errorMessage();
    }
    return m;
}

TEST(XMLBookCorpus, EveryCellReadsAndEveryPartSurvivesASave) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    int checked = 0, sheets = 0;
    long cells = 0;
    for (const auto &e : fs::recursive_directory_iterator(corpus)) {
        const std::string ext = e.path().extension().string();
        if (ext != ".xlsx" && ext != ".xlsm") continue;
        const std::string name = e.path().filename().string();
        std::string firstBad;
        auto readAll = [&](IBookT<char> &book) {
            for (int i = 0; i < book.sheetCount(); ++i) {
                ISheetT<char> *s = book.sheetType(i) == SHEETTYPE_SHEET ? book.getSheet(i) : nullptr;
                if (!s) continue;
                ++sheets;
                const long area =
                    long(s->lastRow() - s->firstRow()) * long(s->lastCol() - s->firstCol());
                if (area > 4000000) continue;
                for (int r = s->firstRow(); r < s->lastRow(); ++r)
                    for (int c = s->firstCol(); c < s->lastCol(); ++c, ++cells) {
                        const std::string m = readCell(book, *s, r, c);
                        if (m != "ok" && firstBad.empty())
                            firstBad = std::to_string(i) + "!" + std::to_string(r) + "," +
                                       std::to_string(c) + ": " + m;
                    }
            }
            return std::string();
        };
        const std::string problem = packages::packageRoundTrip(e.path(), {}, readAll);
        const auto bad = kKnownBad.find(name);
        if (bad != kKnownBad.end()) {
            EXPECT_EQ(problem.substr(0, 5), "load:") << name << " now loads: " << bad->second;
            continue;
        }
        EXPECT_EQ(problem, "") << e.path();
        EXPECT_EQ(firstBad, "") << e.path();
        ++checked;
    }
    std::printf("books %d, worksheets %d, cells read %ld\n", checked, sheets, cells);
    EXPECT_GT(checked, 0);
    EXPECT_GT(sheets, 700);
}

} // namespace
