#include "biff/sheet_index.h"

#include "book/mapped_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace tabrix {

namespace {

const size_t kPageBytes = size_t(SheetIndex::kCols) * sizeof(uint32_t);
// The row pointers, then a byte a row for the last column asked for.
const size_t kTableBytes = size_t(SheetIndex::kRows) * (sizeof(uint32_t *) + 1);

} // namespace

SheetIndex::SheetIndex()
    : _rows(static_cast<uint32_t **>(mapZeroed(kTableBytes))),
      _lastCol(reinterpret_cast<uint8_t *>(_rows + kRows)) {}

SheetIndex::~SheetIndex() {
    clear();
    unmapRegion(_rows, kTableBytes);
}

SheetIndex::SheetIndex(const SheetIndex &other)
    : _rows(static_cast<uint32_t **>(mapZeroed(kTableBytes))),
      _lastCol(reinterpret_cast<uint8_t *>(_rows + kRows)) {
    *this = other;
}

SheetIndex &SheetIndex::operator=(const SheetIndex &other) {
    if (this == &other) return *this;
    clear();
    for (int r = 0; r < kRows; ++r)
        if (other._rows[r])
            std::memcpy(newPage(unsigned(r)), other._rows[r], kCols * sizeof(uint32_t));
    std::memcpy(_lastCol, other._lastCol, kRows);
    return *this;
}

uint32_t *SheetIndex::newPage(unsigned row) {
    if (_slabFree == 0) {
        // Each slab twice the one before, up to a huge page: a small sheet
        // stays small, a large one is filled with few faults.
        int pages =
            _slabs.empty() ? kFirstSlabPages : std::min(2 * _slabs.back().pages, kMaxSlabPages);
        size_t bytes = size_t(pages) * kPageBytes;
        _slabs.reserve(_slabs.size() + 1);
        void *p = mapZeroed(bytes);
        _slabs.push_back(Slab{static_cast<uint32_t *>(p), pages});
        _slabFree = pages;
    }
    const Slab &slab = _slabs.back();
    uint32_t *page = slab.base + size_t(slab.pages - _slabFree) * kCols;
    --_slabFree;
    _rows[row] = page;
    ++_pages;
    return page;
}

// Row pages are moved as pointers: the pages of the rows that fall off the
// end are rotated into the vacated rows and emptied there, so no page is
// lost and nothing is copied but the table.
void SheetIndex::insertRows(unsigned first, unsigned n) {
    if (first >= unsigned(kRows) || n == 0) return;
    n = std::min(n, unsigned(kRows) - first);
    std::rotate(_rows + first, _rows + (kRows - n), _rows + kRows);
    std::rotate(_lastCol + first, _lastCol + (kRows - n), _lastCol + kRows);
    emptyRows(first, first + n);
}

void SheetIndex::removeRows(unsigned first, unsigned n) {
    if (first >= unsigned(kRows) || n == 0) return;
    n = std::min(n, unsigned(kRows) - first);
    std::rotate(_rows + first, _rows + first + n, _rows + kRows);
    std::rotate(_lastCol + first, _lastCol + first + n, _lastCol + kRows);
    emptyRows(unsigned(kRows) - n, unsigned(kRows));
}

void SheetIndex::insertCols(unsigned first, unsigned n) {
    if (first >= unsigned(kCols) || n == 0) return;
    n = std::min(n, unsigned(kCols) - first);
    for (int r = 0; r < kRows; ++r) {
        uint32_t *page = _rows[r];
        if (!page || _lastCol[r] < first) continue;
        std::memmove(page + first + n, page + first, (kCols - first - n) * sizeof(uint32_t));
        std::memset(page + first, 0, n * sizeof(uint32_t));
        _lastCol[r] = uint8_t(std::min(unsigned(_lastCol[r]) + n, unsigned(kCols) - 1));
    }
}

void SheetIndex::removeCols(unsigned first, unsigned n) {
    if (first >= unsigned(kCols) || n == 0) return;
    n = std::min(n, unsigned(kCols) - first);
    for (int r = 0; r < kRows; ++r) {
        uint32_t *page = _rows[r];
        if (!page || _lastCol[r] < first) continue;
        std::memmove(page + first, page + first + n, (kCols - first - n) * sizeof(uint32_t));
        std::memset(page + (kCols - n), 0, n * sizeof(uint32_t));
    }
}

void SheetIndex::emptyRows(unsigned first, unsigned last) {
    for (unsigned r = first; r < last; ++r) {
        if (_rows[r]) std::memset(_rows[r], 0, kPageBytes);
        _lastCol[r] = 0;
    }
}

void SheetIndex::clear() {
    for (const Slab &slab : _slabs) unmapRegion(slab.base, size_t(slab.pages) * kPageBytes);
    _slabs.clear();
    _slabFree = 0;
    if (_pages) std::memset(_rows, 0, kTableBytes);
    _pages = 0;
}

} // namespace tabrix
