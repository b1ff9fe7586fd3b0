// Rows and columns inserted and removed, and rows and columns grouped, in
// books written by us, by LibreOffice and by xlwt: after the edits and a
// save, xlrd and LibreOffice find every cell, merge, group and note where
// our own view of the book puts them.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "support/interop_tools.h"
#include "support/oracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using namespace tabrix;
using namespace bifftest;

namespace {

const char *kCommentBook = TABRIX_CORPUS_DIR "/public/libxlsxwriter/comment02.xlsx";

bool exists(const std::string &path) { return std::ifstream(path).good(); }

// Numbers 100 r + c + 1 in rows 0-7 and columns 0-4, B3:C5 merged.
std::string ourBook(const std::string &path) {
    std::unique_ptr<BookImplT<char>> b(new BinaryBookT<char>());
    ISheetT<char> *s = b->addSheet("S", nullptr);
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 5; ++c) s->writeNum(r, c, 100 * r + c + 1, nullptr);
    s->setMerge(2, 4, 1, 2);
    s->setRow(3, 30, nullptr, false);
    return b->save(path.c_str()) ? path : "";
}

// `source` saved again by LibreOffice as a binary book.
std::string viaLibreOffice(const std::string &source, const std::string &name) {
    return convertWithLibreOffice(source, freshDir(name + "_lo"), "xls", "xls");
}

// The structure lines of our view, in the oracle's form and order.
oracle::Lines structureLines(SheetImplT<wchar_t> &s) {
    std::vector<std::string> lines;
    auto line = [&](const std::string &what, int i, int level, bool hidden) {
        lines.push_back(what + " " + std::to_string(i) + " level " + std::to_string(level) +
                        " hidden " + std::to_string(int(hidden)));
    };
    for (const MergeCells &m : s.mergeCells())
        for (const MergeCells::Area &a : m.areas)
            lines.push_back("merge " + std::to_string(a.ref.rwFirst) + " " +
                            std::to_string(a.ref.rwLast) + " " + std::to_string(a.ref.colFirst) +
                            " " + std::to_string(a.ref.colLast));
    for (const Row &r : s.rows())
        if ((r.flags & 7) || (r.flags & 0x20)) line("row", r.row, r.flags & 7, r.flags & 0x20);
    for (const ColInfo &ci : s.colInfos())
        if ((ci.flags & 0x700) || ci.hidden())
            for (int c = ci.colFirst; c <= std::min(int(ci.colLast), 255); ++c)
                line("col", c, (ci.flags >> 8) & 7, ci.hidden());
    return lines;
}

// `lines` without the cells that a merge covers beyond its first cell:
// LibreOffice drops their contents.
oracle::Lines withoutCovered(const oracle::Lines &lines, SheetImplT<wchar_t> &s) {
    oracle::Lines out;
    for (const std::string &l : lines) {
        int r = -1, c = -1;
        bool covered = false;
        if (std::sscanf(l.c_str(), "%d %d", &r, &c) == 2)
            for (const MergeCells &m : s.mergeCells())
                for (const MergeCells::Area &a : m.areas)
                    covered =
                        covered || (a.holds(r, c) && (r != a.ref.rwFirst || c != a.ref.colFirst));
        if (!covered) out.push_back(l);
    }
    return out;
}

struct Source {
    const char *name;
    std::string (*make)(const std::string &path);
    // Where the notes of the book end up after the edits (the last of
    // which clears D18).
    std::vector<std::string> notes;
};

TEST(StructureInterop, ReadersFindWhatMoved) {
    if (!oracle::has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    const bool lo = oracle::has("soffice") && oracle::has("openpyxl");
    const std::vector<Source> sources = {
        {"ours", ourBook, {}},
        {"libreoffice",
         [](const std::string &p) { return viaLibreOffice(ourBook(p), "ours"); },
         {}},
        {"xlwt",
         [](const std::string &p) {
             if (!oracle::has("xlwt")) return std::string();
             oracle::Lines out = oracle::dump("make-xlwt", p);
             return out.empty() ? p : std::string();
         },
         {}},
        // Notes at B2 and D17.
        {"libreoffice notes",
         [](const std::string &) {
             return exists(kCommentBook) ? viaLibreOffice(kCommentBook, "notes") : std::string();
         },
         {"note 0 2"}},
    };
    for (const Source &src : sources) {
        SCOPED_TRACE(src.name);
        if (!lo && std::string(src.name).find("libreoffice") == 0) continue;
        const std::string made =
            src.make(tmpPath(std::string("structure_src_") + src.name + ".xls"));
        if (made.empty()) {
            ADD_FAILURE() << "no source book";
            continue;
        }
        std::unique_ptr<BookImplT<wchar_t>> b(new BinaryBookT<wchar_t>());
        ASSERT_TRUE(b->load(std::wstring(made.begin(), made.end()).c_str())) << b->errorMessage();
        ISheetT<wchar_t> *s = b->getSheet(0);
        ASSERT_TRUE(s->insertRow(3, 4) && s->removeRow(0, 0) && s->insertCol(1, 1) &&
                    s->removeCol(4, 4) && s->groupRows(12, 13, true) &&
                    s->groupRows(20, 22, false) && s->groupCols(7, 8, true) &&
                    s->clear(17, 17, 3, 3))
            << b->errorMessage();
        const std::string path = tmpPath(std::string("structure_") + src.name + ".xls");
        ASSERT_TRUE(b->save(std::wstring(path.begin(), path.end()).c_str())) << b->errorMessage();

        std::unique_ptr<BookImplT<wchar_t>> back(new BinaryBookT<wchar_t>());
        ASSERT_TRUE(back->load(std::wstring(path.begin(), path.end()).c_str()));
        auto *sheet = dynamic_cast<SheetImplT<wchar_t> *>(back->getSheet(0));
        ASSERT_TRUE(sheet);
        oracle::Lines ours = oracle::bookLines(*back);
        oracle::Lines shape = structureLines(*sheet);
        shape.insert(shape.end(), src.notes.begin(), src.notes.end());
        std::sort(shape.begin(), shape.end());
        ours.insert(ours.end(), shape.begin(), shape.end());
        ASSERT_NE(std::find(ours.begin(), ours.end(), "row 12 level 1 hidden 1"), ours.end());

        oracle::Lines xlrd = oracle::dump("xlrd-structure", path);
        EXPECT_EQ(xlrd, ours) << oracle::firstDifference(xlrd, ours);
        if (!lo) continue;
        oracle::Lines office = oracle::dump("libreoffice-structure", path);
        ours = withoutCovered(ours, *sheet);
        EXPECT_EQ(office, ours) << oracle::firstDifference(office, ours);
    }
}

} // namespace
