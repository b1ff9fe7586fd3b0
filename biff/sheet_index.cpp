#include "biff/sheet_index.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace tabrix {

namespace {

const size_t kPageBytes = size_t(SheetIndex::kCols) * sizeof(uint32_t);
const size_t kTableBytes = size_t(SheetIndex::kRows) * sizeof(uint32_t *);
const size_t kHugePage = size_t(2) << 20;

// Zero-filled memory straight from the kernel: nothing is written before a
// cell is, and the parts of a slab never touched take no memory at all.
void *zeroedMap(size_t bytes) {
    void *p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::bad_alloc();
    return p;
}

// A slab of whole huge pages, aligned so that the kernel can back it with
// them: one fault then fills 2048 rows instead of 4.
void *hugeMap(size_t bytes) {
    char *raw = static_cast<char *>(zeroedMap(bytes + kHugePage));
    char *start = raw + (kHugePage - reinterpret_cast<uintptr_t>(raw) % kHugePage) % kHugePage;
    if (start > raw) munmap(raw, size_t(start - raw));
    size_t tail = kHugePage - size_t(start - raw);
    if (tail) munmap(start + bytes, tail);
    madvise(start, bytes, MADV_HUGEPAGE);
    return start;
}

} // namespace

SheetIndex::SheetIndex() : _rows(static_cast<uint32_t **>(zeroedMap(kTableBytes))) {}

SheetIndex::~SheetIndex() {
    clear();
    munmap(_rows, kTableBytes);
}

SheetIndex::SheetIndex(const SheetIndex &other)
    : _rows(static_cast<uint32_t **>(zeroedMap(kTableBytes))) {
    *this = other;
}

SheetIndex &SheetIndex::operator=(const SheetIndex &other) {
    if (this == &other) return *this;
    clear();
    for (int r = 0; r < kRows; ++r)
        if (other._rows[r])
            std::memcpy(newPage(unsigned(r)), other._rows[r], kCols * sizeof(uint32_t));
    return *this;
}

uint32_t *SheetIndex::newPage(unsigned row) {
    if (_slabFree == 0) {
        // Each slab twice the one before, up to a huge page: a small sheet
        // stays small, a large one is filled with few faults.
        int pages = _slabs.empty() ? kFirstSlabPages
                                   : std::min(2 * _slabs.back().pages, kMaxSlabPages);
        size_t bytes = size_t(pages) * kPageBytes;
        _slabs.reserve(_slabs.size() + 1);
        void *p = bytes >= kHugePage ? hugeMap(bytes) : zeroedMap(bytes);
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

void SheetIndex::clear() {
    for (const Slab &slab : _slabs) munmap(slab.base, size_t(slab.pages) * kPageBytes);
    _slabs.clear();
    _slabFree = 0;
    if (_pages) std::memset(_rows, 0, kTableBytes);
    _pages = 0;
}

} // namespace tabrix
