// SheetIndex: where each cell of a sheet lives.  A fixed table of 65536 row
// pointers, each null or a page of 256 cell codes; a page is allocated,
// zero-filled, the first time a code of its row is asked for by `at`.
//
// Pages are cut from slabs, so that rows filled one after the other lie
// next to each other in memory.  Slabs and the row table are mapped
// zero-filled from the kernel: no page is cleared by hand, and the memory of
// a slab is only taken as its rows are written.  Slabs grow from
// kFirstSlabPages to kMaxSlabPages (2 MiB, backed by huge pages where the
// system offers them).
//
// A cell code holds: bit 0 set when the cell exists, bits 1-3 the cell kind,
// bits 4-31 the position of the cell in the vector of its kind.
#ifndef TABRIX_BIFF_SHEET_INDEX_H
#define TABRIX_BIFF_SHEET_INDEX_H

#include <cstdint>
#include <vector>

namespace tabrix {

class SheetIndex {
public:
    static constexpr int kRows = 65536;
    static constexpr int kCols = 256;
    static constexpr int kFirstSlabPages = 64;
    static constexpr int kMaxSlabPages = 2048;

    // Cell kinds, bits 1-3 of a code.
    enum Kind : uint32_t {
        kNone = 0,
        kRK = 1,
        kNumber = 2,
        kLabelSst = 3,
        kBlank = 4,
        kBoolErr = 5,
        kFormula = 6,
        kLabel = 7
    };

    static uint32_t code(Kind kind, uint32_t position) {
        return (position << 4) | (uint32_t(kind) << 1) | 1u;
    }
    static bool exists(uint32_t code) { return (code & 1u) != 0; }
    static Kind kind(uint32_t code) { return Kind((code >> 1) & 7u); }
    static uint32_t position(uint32_t code) { return code >> 4; }

    SheetIndex();
    ~SheetIndex();
    SheetIndex(const SheetIndex &other);
    SheetIndex &operator=(const SheetIndex &other);

    bool hasRow(unsigned row) const { return _rows[row] != nullptr; }
    // Only after hasRow(row).
    uint32_t get(unsigned row, unsigned col) const { return _rows[row][col]; }
    // 0 for a row without a page; never allocates.
    uint32_t find(unsigned row, unsigned col) const {
        const uint32_t *page = _rows[row];
        return page ? page[col] : 0;
    }
    // find() for reads that walk the sheet row by row: the same column of
    // the next row is fetched into the cache meanwhile, as its page lies
    // 1 KiB further on and would otherwise miss.
    uint32_t findAhead(unsigned row, unsigned col) const {
        if (row + 1 < unsigned(kRows))
            if (const uint32_t *next = _rows[row + 1]) __builtin_prefetch(next + col);
        return find(row, col);
    }
    // The code at (row, col), allocating the row's page first.
    uint32_t &at(unsigned row, unsigned col) {
        uint32_t *page = _rows[row];
        if (!page) page = newPage(row);
        if (col > _lastCol[row]) _lastCol[row] = uint8_t(col);
        return page[col];
    }
    // No column beyond this one of a row with a page was ever asked for by
    // `at`, so none holds a cell: scans of the row may stop there.
    unsigned lastColBound(unsigned row) const { return _lastCol[row]; }
    // Rows [first, kRows - n) move n rows down; the last n rows are
    // dropped and rows [first, first + n) are left empty.
    void insertRows(unsigned first, unsigned n);
    // Rows [first, first + n) are dropped and the rows below move up; the
    // last n rows are left empty.
    void removeRows(unsigned first, unsigned n);
    // The same for the columns of every row: cells pushed past the last
    // column are dropped, vacated columns are left empty.
    void insertCols(unsigned first, unsigned n);
    void removeCols(unsigned first, unsigned n);
    // Frees every page.
    void clear();
    // Pages allocated now.
    int pageCount() const { return _pages; }

private:
    uint32_t *newPage(unsigned row);
    // Empties the pages of rows [first, last), keeping them allocated.
    void emptyRows(unsigned first, unsigned last);

    uint32_t **_rows;
    uint8_t *_lastCol; // per row; lives behind the row table
    struct Slab {
        uint32_t *base;
        int pages;
    };
    std::vector<Slab> _slabs;
    int _slabFree = 0;
    int _pages = 0;
};

} // namespace tabrix

#endif
