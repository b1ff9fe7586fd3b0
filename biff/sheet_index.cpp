#include "biff/sheet_index.h"

#include <cstring>

namespace tabrix {

SheetIndex::SheetIndex() : _rows(new uint32_t *[kRows]()) {}

SheetIndex::~SheetIndex() {
    clear();
    delete[] _rows;
}

SheetIndex::SheetIndex(const SheetIndex &other) : _rows(new uint32_t *[kRows]()) {
    *this = other;
}

SheetIndex &SheetIndex::operator=(const SheetIndex &other) {
    if (this == &other) return *this;
    clear();
    for (int r = 0; r < kRows; ++r)
        if (other._rows[r]) std::memcpy(newPage(unsigned(r)), other._rows[r], kCols * sizeof(uint32_t));
    return *this;
}

uint32_t *SheetIndex::newPage(unsigned row) {
    uint32_t *page = new uint32_t[kCols]();
    _rows[row] = page;
    ++_pages;
    return page;
}

void SheetIndex::clear() {
    for (int r = 0; r < kRows; ++r) {
        delete[] _rows[r];
        _rows[r] = nullptr;
    }
    _pages = 0;
}

} // namespace tabrix
