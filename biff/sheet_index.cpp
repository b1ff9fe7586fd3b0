#include "biff/sheet_index.h"

#include <cstring>

namespace tabrix {

SheetIndex::SheetIndex() : _rows(new uint32_t *[kRows]()) {}

SheetIndex::~SheetIndex() {
    clear();
    delete[] _rows;
}

SheetIndex::SheetIndex(const SheetIndex &other) : _rows(new uint32_t *[kRows]()) { *this = other; }

SheetIndex &SheetIndex::operator=(const SheetIndex &other) {
    if (this == &other) return *this;
    clear();
    for (int r = 0; r < kRows; ++r)
        if (other._rows[r])
            std::memcpy(newPage(unsigned(r)), other._rows[r], kCols * sizeof(uint32_t));
    return *this;
}

uint32_t *SheetIndex::newPage(unsigned row) {
    int inSlab = _pages % kPagesPerSlab;
    if (inSlab == 0) _slabs.push_back(new uint32_t[size_t(kCols) * kPagesPerSlab]());
    uint32_t *page = _slabs.back() + size_t(inSlab) * kCols;
    _rows[row] = page;
    ++_pages;
    return page;
}

void SheetIndex::clear() {
    for (uint32_t *slab : _slabs) delete[] slab;
    _slabs.clear();
    for (int r = 0; r < kRows; ++r) _rows[r] = nullptr;
    _pages = 0;
}

} // namespace tabrix
