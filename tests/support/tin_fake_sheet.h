// A small in-memory book served through SheetOps, for testing range labels
// and cell conversion without a real store.  Header-only so that the label
// fuzz target can use it too.
#ifndef TIN_FAKE_SHEET_H
#define TIN_FAKE_SHEET_H

#include "sheetfile.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tin {

struct FakeCell {
    int kind = CELL_EMPTY;
    double number = 0;
    std::string text;
    bool date = false;
};

struct FakeName {
    std::string name;
    int rowFirst, rowLast, colFirst, colLast;
};

struct FakeSheet {
    std::string name;
    std::map<std::pair<int, int>, FakeCell> cells;
    std::vector<FakeName> names;

    void number(int r, int c, double v, bool date = false) {
        cells[{r, c}] = FakeCell{CELL_NUMBER, v, "", date};
    }
    void text(int r, int c, const std::string &v) { cells[{r, c}] = FakeCell{CELL_STRING, 0, v}; }
    void boolean(int r, int c, bool v) { cells[{r, c}] = FakeCell{CELL_BOOL, v ? 1.0 : 0.0, ""}; }
    void kind(int r, int c, int k) { cells[{r, c}].kind = k; }
    const FakeCell *at(int r, int c) const {
        auto it = cells.find({r, c});
        return it == cells.end() ? nullptr : &it->second;
    }
    // Inclusive extents of the cells, 0 for an empty sheet.
    int extent(bool row, bool last) const {
        if (cells.empty()) return 0;
        int v = last ? -1 : 0x7FFFFFFF;
        for (const auto &c : cells) {
            int x = row ? c.first.first : c.first.second;
            v = last ? std::max(v, x) : std::min(v, x);
        }
        return v;
    }
};

struct FakeBook {
    std::vector<std::unique_ptr<FakeSheet>> sheets;
    bool canAdd = true;
    size_t maxSheets = 1000; // addSheet fails beyond this many
    FakeSheet &add(const std::string &name) {
        sheets.push_back(std::make_unique<FakeSheet>());
        sheets.back()->name = name;
        return *sheets.back();
    }
};

inline FakeSheet *S(void *sheet) { return static_cast<FakeSheet *>(sheet); }
inline FakeBook *B(void *book) { return static_cast<FakeBook *>(book); }
// The cell at (r, c), an empty one where none is stored.
inline const FakeCell &C(void *sheet, int r, int c) {
    static const FakeCell none;
    const FakeCell *x = S(sheet)->at(r, c);
    return x ? *x : none;
}

inline const SheetOps fakeOps = {
    [](void *book) { return (int)B(book)->sheets.size(); },
    [](void *book, int index) -> void * {
        if (index < 0 || index >= (int)B(book)->sheets.size()) return nullptr;
        return B(book)->sheets[index].get();
    },
    [](void *book, const char *name) -> void * {
        if (!B(book)->canAdd || B(book)->sheets.size() >= B(book)->maxSheets) return nullptr;
        return &B(book)->add(name);
    },
    [](void *sheet) -> const char * { return S(sheet)->name.c_str(); },
    [](void *sheet) { return (int)S(sheet)->names.size(); },
    [](void *sheet, int index, int *r1, int *r2, int *c1, int *c2) -> const char * {
        if (index < 0 || index >= (int)S(sheet)->names.size()) return nullptr;
        const FakeName &n = S(sheet)->names[index];
        *r1 = n.rowFirst, *r2 = n.rowLast, *c1 = n.colFirst, *c2 = n.colLast;
        return n.name.c_str();
    },
    [](void *sheet) { return S(sheet)->extent(true, false); },
    [](void *sheet) { return S(sheet)->extent(true, true); },
    [](void *sheet) { return S(sheet)->extent(false, false); },
    [](void *sheet) { return S(sheet)->extent(false, true); },
    [](void *sheet, int r, int c) { return C(sheet, r, c).kind; },
    [](void *sheet, int r, int c) { return C(sheet, r, c).date ? 1 : 0; },
    [](void *sheet, int r, int c) { return C(sheet, r, c).number != 0 ? 1 : 0; },
    [](void *sheet, int r, int c) -> const char * {
        return C(sheet, r, c).number > 0 ? "TRUE" : "FALSE";
    },
    [](void *sheet, int r, int c) { return C(sheet, r, c).number; },
    [](void *sheet, int r, int c) { return C(sheet, r, c).text.c_str(); },
    [](void *sheet, int r, int c, int v) { return S(sheet)->boolean(r, c, v != 0), 1; },
    [](void *sheet, int r, int c, double v) { return S(sheet)->number(r, c, v), 1; },
    [](void *sheet, int r, int c, const char *v) { return S(sheet)->text(r, c, v), 1; },
};

// A SheetFile over a fake book, with its own scratch buffer.
struct FakeFile {
    SheetFile file{};
    char buffer[256] = {};
    explicit FakeFile(FakeBook *book, unsigned flags = 0) {
        file.ops = &fakeOps;
        file.handle = book;
        file.flags = flags;
        file.references = 1;
        file.buffer = buffer;
        file.bufferSize = sizeof buffer;
        file.path = const_cast<char *>("fake");
    }
};

// The book most label tests use: "Sheet1" (A1:B2), "Sheet10", and "Data"
// with a header row id/name/price over three rows and two named ranges
// "table" and "prices" (twice: the last one counts).
inline void fillStandardBook(FakeBook &book) {
    FakeSheet &one = book.add("Sheet1");
    one.number(0, 0, 1);
    one.number(1, 1, 2);
    FakeSheet &ten = book.add("Sheet10");
    ten.text(0, 0, "ten");
    ten.names.push_back({"other", 0, 0, 0, 0});
    FakeSheet &data = book.add("Data");
    data.text(0, 0, "id");
    data.text(0, 1, "name");
    data.text(0, 2, "price");
    for (int r = 1; r <= 3; r++) {
        data.number(r, 0, r);
        data.text(r, 1, "item" + std::to_string(r));
        data.number(r, 2, r * 1.5);
    }
    data.names.push_back({"table", 0, 3, 0, 2});
    data.names.push_back({"PRICES", 0, 1, 2, 2});
    data.names.push_back({"prices", 1, 3, 2, 2});
}

} // namespace tin

#endif
